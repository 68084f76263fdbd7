// SPDX-License-Identifier: Apache-2.0
#include <optional>
#include <vector>

#include "platform/CSS/CSSMediumReader.hpp"
#include "platform/CSS/CSSSelector.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace detail {

namespace {

bool takeWord(CSSValueReader &reader, std::string_view lower) {
  if (reader.peek().type != CSSTokenType::kIdent || !equalsASCIINoCase(reader.text(reader.peek()), lower))
    return false;
  reader.advance();
  return true;
}

bool isSupportedDeclaration(std::u16string_view text) {
  CSSArena arena;
  std::vector<CSSDeclaration> declarations;
  readDeclarations(text, CSSMode::kStandard, arena, declarations);
  return !declarations.empty();
}

bool isSupportedSelector(std::u16string_view text) {
  CSSNames names;
  CSSArena arena;
  return readSelectors(text, {.names = &names}, arena).has_value();
}

bool part(CSSValueReader &reader) {
  if (reader.peek().type == CSSTokenType::kLeftParenthesis) {
    std::optional<CSSValueReader> content = reader.block();
    return content && isSupportedDeclarationOrCondition(*content);
  }
  std::u16string_view name;
  std::optional<CSSValueReader> arguments = reader.anyFunction(name);
  return arguments && equalsASCIINoCase(name, "selector") && isSupportedSelector(arguments->source());
}

}  // namespace

bool isSupportedDeclarationOrCondition(CSSValueReader &content) {
  const std::size_t start = content.position();
  if (content.take(CSSTokenType::kIdent) && content.take(CSSTokenType::kColon))
    return isSupportedDeclaration(content.source());
  content.setPosition(start);
  return isSupported(content);
}

bool isSupported(CSSValueReader &reader) {
  if (takeWord(reader, "not")) return !reader.isAtEnd() && !part(reader) && reader.isAtEnd();
  bool holds = part(reader);
  const bool isOr = takeWord(reader, "or");
  if (isOr || takeWord(reader, "and")) {
    do {
      const bool next = part(reader);
      holds = isOr ? holds || next : holds && next;
    } while (takeWord(reader, isOr ? "or" : "and"));
  }
  return holds && reader.isAtEnd();
}

}  // namespace detail

bool isSupportedByCSS(std::u16string_view condition) {
  const CSSTokenizer tokenizer(condition);
  const std::vector<CSSToken> tokens = detail::tokensOf(tokenizer);
  CSSArena arena;
  detail::CSSValueReader reader(tokenizer, tokens, CSSMode::kStandard, arena);
  return detail::isSupported(reader);
}

}  // namespace nimbo
