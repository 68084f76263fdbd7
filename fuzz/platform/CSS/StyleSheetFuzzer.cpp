// SPDX-License-Identifier: Apache-2.0
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/FuzzedText.hpp"
#include "platform/CSS/CSSCustomProperties.hpp"
#include "platform/CSS/CSSRuleIndex.hpp"
#include "platform/CSS/CSSStyleSheet.hpp"

using namespace nimbo;

namespace {

void check(bool good) {
  if (!good) std::abort();
}

/// Tokens stand one behind the other up to the end.
void readTokens(std::u16string_view text) {
  CSSTokenizer tokenizer(text);
  CSSArena arena;
  std::uint32_t end = 0;
  for (;;) {
    const CSSToken token = tokenizer.next();
    check(token.location >= end && token.end <= text.size());
    check(token.contentLocation <= token.contentEnd && token.contentEnd <= token.end);
    (void)tokenizer.text(token, arena);
    if (token.type == CSSTokenType::kEnd) break;
    check(token.end > token.location);
    end = token.end;
  }
}

/// A small page with the names that sheets often ask for.
void fillPage(CSSElements &elements) {
  const CSSAttribute attributes[] = {{u"class", u"a b"}, {u"id", u"i"}, {u"lang", u"en"}, {u"href", u"x"}};
  const std::u16string_view types[] = {u"html", u"body", u"div", u"p", u"a", u"b"};
  for (const std::u16string_view type : types) {
    elements.begin(type, {}, CSSElements::Kind::kHTML);
    elements.begin(type, attributes, CSSElements::Kind::kHTML);
    elements.end();
  }
  for (std::size_t i = 0; i < std::size(types); ++i) elements.end();
}

/// What matches with all names known must match with those of the page alone.
std::size_t countMatches(const NSString &text, CSSMode mode, bool onlyKnownNames) {
  CSSNames names;
  CSSElements elements(names, mode);
  fillPage(elements);
  CSSSheetReading reading;
  reading.selectors = {.names = &names, .mode = mode, .onlyKnownNames = onlyKnownNames};
  const CSSStyleSheet sheet(text, reading);
  CSSRuleIndex index;
  index.add(sheet);
  index.finish();
  CSSSelectorMatcher matcher(elements);
  std::vector<CSSMatch> matches;
  CSSVariableBudget budget{1 << 18};
  for (CSSElementIndex i = 0; i < elements.size(); ++i) index.match(matcher, i, matches);
  std::vector<CSSDeclaration> declarations;
  for (const CSSMatch &match : matches)
    declarations.insert(declarations.end(), match.declarations.begin(), match.declarations.end());
  const SharedPointer<CSSCustomProperties> properties = CSSCustomProperties::make({}, declarations, budget);
  CSSArena arena;
  std::vector<CSSDeclaration> values;
  for (const CSSDeclaration &declaration : declarations) {
    check(declaration.value || declaration.property == CSSProperty::kCustom);
    (void)resolvedNumber(declaration.value, {});
    if (declaration.value.kind() != CSSValueKind::kTokens || declaration.property == CSSProperty::kCustom)
      continue;
    const auto replaced = replacedVariables(declaration.value.text(), properties.get(), budget);
    if (replaced) readValue(declaration.property, *replaced, mode, arena, values);
  }
  return matches.size();
}

}  // namespace

/// A sheet, which is also read as declarations, as a colour, as media queries and as conditions.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::u16string text = fuzzedText(data, size);
  const CSSMode mode = size > 0 && data[0] & 2 ? CSSMode::kQuirks : CSSMode::kStandard;
  const NSString sheet = NSString::stringWithCharacters(text);
  readTokens(text);
  check(countMatches(sheet, mode, false) == countMatches(sheet, mode, true));
  CSSArena arena;
  std::vector<CSSDeclaration> declarations;
  readDeclarations(text, mode, arena, declarations);
  CSSRawDeclarations raw(text);
  while (raw.next()) continue;
  (void)readColor(text, mode);
  (void)matchesMedium(text, {});
  (void)isSupportedByCSS(text);
  return 0;
}
