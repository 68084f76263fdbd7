// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/Quotes.hpp"

#include <algorithm>
#include <array>
#include <iterator>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/RichText/CSSTexts.hpp"

namespace nimbo::detail {

namespace {

/// The outer marks, then the inner ones.
using Marks = std::array<std::u16string_view, 4>;

constexpr Marks kEnglish = {u"“", u"”", u"‘", u"’"};

/// What languages have in place of the English marks, by the beginnings of their names; longer ones come first.
constexpr struct {
  std::string_view language;
  Marks marks;
} kMarksOfLanguages[] = {
    {"de-ch", {u"«", u"»", u"‹", u"›"}},     {"de-li", {u"«", u"»", u"‹", u"›"}},
    {"fr-ca", {u"«", u"»", u"”", u"“"}},     {"fr-ch", {u"«", u"»", u"‹", u"›"}},
    {"pt-pt", {u"«", u"»", u"“", u"”"}},     {"zh-hant", {u"「", u"」", u"『", u"』"}},
    {"zh-tw", {u"「", u"」", u"『", u"』"}}, {"zh-hk", {u"「", u"」", u"『", u"』"}},
    {"ar", {u"”", u"“", u"’", u"‘"}},        {"be", {u"«", u"»", u"“", u"„"}},
    {"bg", {u"„", u"“", u"„", u"“"}},        {"ca", {u"«", u"»", u"“", u"”"}},
    {"cs", {u"„", u"“", u"‚", u"‘"}},        {"da", {u"“", u"”", u"‘", u"’"}},
    {"de", {u"„", u"“", u"‚", u"‘"}},        {"el", {u"«", u"»", u"“", u"”"}},
    {"es", {u"«", u"»", u"“", u"”"}},        {"et", {u"„", u"“", u"‚", u"‘"}},
    {"eu", {u"“", u"”", u"‘", u"’"}},        {"fa", {u"«", u"»", u"‹", u"›"}},
    {"fi", {u"”", u"”", u"’", u"’"}},        {"fr", {u"«", u"»", u"«", u"»"}},
    {"he", {u"”", u"”", u"’", u"’"}},        {"hr", {u"„", u"“", u"‚", u"‘"}},
    {"hu", {u"„", u"”", u"»", u"«"}},        {"is", {u"„", u"“", u"‚", u"‘"}},
    {"it", {u"«", u"»", u"“", u"”"}},        {"ja", {u"「", u"」", u"『", u"』"}},
    {"lt", {u"„", u"“", u"„", u"“"}},        {"nb", {u"«", u"»", u"‘", u"’"}},
    {"nn", {u"«", u"»", u"‘", u"’"}},        {"no", {u"«", u"»", u"‘", u"’"}},
    {"pl", {u"„", u"”", u"«", u"»"}},        {"ro", {u"„", u"”", u"«", u"»"}},
    {"ru", {u"«", u"»", u"„", u"“"}},        {"sk", {u"„", u"“", u"‚", u"‘"}},
    {"sl", {u"„", u"“", u"‚", u"‘"}},        {"sr", {u"„", u"“", u"‘", u"‘"}},
    {"sv", {u"”", u"”", u"’", u"’"}},        {"uk", {u"«", u"»", u"„", u"“"}},
};

bool isLanguage(std::u16string_view language, std::string_view prefix) {
  return startsWithASCIINoCase(language, prefix) &&
         (language.size() == prefix.size() || language[prefix.size()] == u'-');
}

const Marks &marksOf(std::u16string_view language) {
  const auto *const found = std::ranges::find_if(
      kMarksOfLanguages, [&](const auto &entry) { return isLanguage(language, entry.language); });
  return found == std::end(kMarksOfLanguages) ? kEnglish : found->marks;
}

}  // namespace

std::u16string_view quotationMark(const CSSValue &quotes, std::u16string_view language, std::size_t depth,
                                  bool isClosing) {
  const std::size_t side = isClosing ? 1 : 0;
  if (quotes.is(CSSKeyword::kNone)) return {};
  if (quotes.kind() == CSSValueKind::kList) {
    const auto values = quotes.values();
    const std::size_t pairs = values.size() / 2;
    return pairs == 0 ? std::u16string_view() : values[2 * std::min(depth, pairs - 1) + side].text();
  }
  return marksOf(language)[2 * std::min<std::size_t>(depth, 1) + side];
}

}  // namespace nimbo::detail
