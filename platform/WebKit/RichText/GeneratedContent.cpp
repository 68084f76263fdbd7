// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/GeneratedContent.hpp"

#include <algorithm>
#include <utility>

#include "platform/WebKit/RichText/CSSTexts.hpp"
#include "platform/WebKit/RichText/CounterStyles.hpp"
#include "platform/WebKit/RichText/Quotes.hpp"

namespace nimbo::detail {

namespace {

/// Appends text without private characters, which are pictures of fonts that the reader does not have.
void appendReadable(std::u16string_view units, std::u16string *text) {
  std::ranges::copy_if(units, std::back_inserter(*text), [](unichar c) { return c < 0xe000 || c >= 0xf900; });
}

/// The style of a counter that is an argument, or decimal digits.
CSSValue styleArgument(std::span<const CSSValue> arguments, std::size_t index) {
  return index < arguments.size() ? arguments[index] : CSSValue(CSSKeyword::kDecimal);
}

}  // namespace

std::u16string GeneratedContent::text(
    const ComputedStyle &style, const Source &source,
    const std::function<void(std::u16string text, std::u16string_view URL)> &onImage) {
  std::u16string text;
  for (const CSSValue &part : valuesOf(style.content)) {
    if (partsLeft_ == 0 || unitsLeft_ == 0) break;
    --partsLeft_;
    switch (part.kind()) {
      case CSSValueKind::kString:
        appendReadable(counted(part.text()), &text);
        break;
      case CSSValueKind::kURL:
        onImage(std::exchange(text, {}), part.text());
        break;
      case CSSValueKind::kFunction: {
        std::u16string value;
        appendFunction(part, source, &value);
        appendReadable(counted(value), &text);
        break;
      }
      case CSSValueKind::kKeyword:
        appendQuote(part.keyword(), style, source, &text);
        break;
      default:
        break;
    }
  }
  return text;
}

std::u16string_view GeneratedContent::counted(std::u16string_view text) {
  text = text.substr(0, unitsLeft_);
  unitsLeft_ -= text.size();
  return text;
}

void GeneratedContent::appendFunction(const CSSValue &function, const Source &source,
                                      std::u16string *text) const {
  const auto arguments = function.values();
  if (arguments.empty()) return;
  const std::u16string name = nameOf(arguments[0]);
  if (function.keyword() == CSSKeyword::kAttr) {
    const HTMLAtom atom = source.document.atoms().existingAtomOf(name);
    if (const auto value = source.document.attribute(source.element, atom)) *text += *value;
  } else if (function.keyword() == CSSKeyword::kCounter) {
    *text += textOfCounter(source.counters.value(name), styleArgument(arguments, 1));
  } else if (function.keyword() == CSSKeyword::kCounters && arguments.size() > 1) {
    std::u16string_view separator;
    for (const std::int32_t value : source.counters.values(name)) {
      *text += separator;
      *text += textOfCounter(value, styleArgument(arguments, 2));
      separator = arguments[1].text();
      if (text->size() > unitsLeft_) break;
    }
  }
}

void GeneratedContent::appendQuote(CSSKeyword keyword, const ComputedStyle &style, const Source &source,
                                   std::u16string *text) {
  const bool isOpening = keyword == CSSKeyword::kOpenQuote || keyword == CSSKeyword::kNoOpenQuote;
  const bool isClosing = keyword == CSSKeyword::kCloseQuote || keyword == CSSKeyword::kNoCloseQuote;
  if (!isOpening && !isClosing) return;
  const bool isUnmatched = isClosing && quoteDepth_ == 0;
  if (isClosing && !isUnmatched) --quoteDepth_;
  if (keyword == CSSKeyword::kOpenQuote || (keyword == CSSKeyword::kCloseQuote && !isUnmatched))
    *text += counted(quotationMark(style.inherited.quotes, source.language, quoteDepth_, isClosing));
  if (isOpening) ++quoteDepth_;
}

}  // namespace nimbo::detail
