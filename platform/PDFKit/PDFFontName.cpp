// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFFontName.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace nimbo::detail {
namespace {

struct Style {
  std::uint16_t weight = kRegularFontWeight;
  bool isItalic = false;
};

enum class Kind {
  weight,
  italic,
  /// Says no more than that nothing is special.
  plain,
  /// A width, which a font here does not have, a maker's mark, or what differs from font to font.
  other,
};

struct StyleWord {
  std::string_view word;
  Kind kind;
  std::uint16_t weight = kRegularFontWeight;
};

/// Words that begin with another one stand before it.
constexpr StyleWord kStyleWords[] = {
    {"hairline", Kind::weight, 100},
    {"thin", Kind::weight, 100},
    {"extralight", Kind::weight, 200},
    {"ultralight", Kind::weight, 200},
    {"semilight", Kind::weight, 300},
    {"demilight", Kind::weight, 300},
    {"light", Kind::weight, 300},
    {"medium", Kind::weight, 500},
    {"semibold", Kind::weight, 600},
    {"demibold", Kind::weight, 600},
    {"semi", Kind::weight, 600},
    {"demi", Kind::weight, 600},
    {"extrabold", Kind::weight, 800},
    {"ultrabold", Kind::weight, 800},
    {"bold", Kind::weight, kBoldFontWeight},
    {"bd", Kind::weight, kBoldFontWeight},
    {"heavy", Kind::weight, 900},
    {"black", Kind::weight, 900},
    {"italic", Kind::italic},
    {"ital", Kind::italic},
    {"it", Kind::italic},
    {"oblique", Kind::italic},
    {"obl", Kind::italic},
    {"slanted", Kind::italic},
    {"slant", Kind::italic},
    {"inclined", Kind::italic},
    {"regular", Kind::plain},
    {"regu", Kind::plain},
    {"normal", Kind::plain},
    {"roman", Kind::plain},
    {"book", Kind::plain},
    {"condensed", Kind::other},
    {"cond", Kind::other},
    {"narrow", Kind::other},
    {"extended", Kind::other},
    {"extend", Kind::other},
    {"medi", Kind::other},
    {"mt", Kind::other},
    {"ps", Kind::other},
};

constexpr std::size_t kSubsetMarkLength = 7;

bool isUpper(char character) {
  return character >= 'A' && character <= 'Z';
}

bool isLower(char character) {
  return character >= 'a' && character <= 'z';
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isSeparator(char character) {
  return character == '-' || character == ',' || character == ' ' || character == '_';
}

/// Whether `text` begins with `word`, which is lower case.
bool beginsWithWord(std::string_view text, std::string_view word) {
  return text.size() >= word.size() && std::equal(word.begin(), word.end(), text.begin(), [](char a, char b) {
           return a == (isUpper(b) ? static_cast<char>(b + ('a' - 'A')) : b);
         });
}

/// The style that `text` names; nothing when there are words of something else, or the first one is none of
/// those that `mayBeFirst` allows.
std::optional<Style> styleOfWords(std::string_view text, bool (*mayBeFirst)(Kind)) {
  Style style;
  bool isFirst = true;
  while (!text.empty()) {
    if (isSeparator(text.front()) || (!isFirst && isDigit(text.front()))) {
      text.remove_prefix(1);
      continue;
    }
    const auto found = std::find_if(std::begin(kStyleWords), std::end(kStyleWords),
                                    [text](const StyleWord &word) { return beginsWithWord(text, word.word); });
    if (found == std::end(kStyleWords) || (isFirst && !mayBeFirst(found->kind))) return {};
    if (found->kind == Kind::weight) style.weight = found->weight;
    if (found->kind == Kind::italic) style.isItalic = true;
    isFirst = false;
    text.remove_prefix(found->word.size());
  }
  return isFirst ? std::nullopt : std::optional(style);
}

/// Takes the words of style off the end of `name`.
Style takeStyle(std::string_view &name) {
  const auto any = [](Kind) { return true; };
  // "Times-Roman" is Times, but "Times New Roman" and "ArialNarrow" are themselves.
  const auto special = [](Kind kind) { return kind == Kind::weight || kind == Kind::italic; };
  for (std::size_t i = 1; i + 1 < name.size(); ++i) {
    const bool isHyphen = name[i] == '-' || name[i] == ',';
    const bool isCapital = isLower(name[i - 1]) && isUpper(name[i]);
    if (!isSeparator(name[i]) && !isCapital) continue;
    const std::optional<Style> style =
        isHyphen ? styleOfWords(name.substr(i), any) : styleOfWords(name.substr(i), special);
    if (!style) continue;
    name = name.substr(0, i);
    return *style;
  }
  return {};
}

}  // namespace

NSFont fontWithPDFFontName(std::string_view name) {
  if (name.size() > kSubsetMarkLength && name[kSubsetMarkLength - 1] == '+' &&
      std::all_of(name.begin(), name.begin() + kSubsetMarkLength - 1, isUpper))
    name.remove_prefix(kSubsetMarkLength);
  NSFont font;
  const Style style = takeStyle(name);
  font.weight = style.weight;
  font.isItalic = style.isItalic;
  for (const std::string_view mark : {"PSMT", "MT", "PS"}) {
    if (name.size() > mark.size() && name.ends_with(mark) && isLower(name[name.size() - mark.size() - 1]))
      name.remove_suffix(mark.size());
  }
  if (!name.empty()) font.familyName = NSString::stringWithUTF8String(name);
  return font;
}

}  // namespace nimbo::detail
