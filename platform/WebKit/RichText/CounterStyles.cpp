// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/CounterStyles.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/WebKit/RichText/CSSTexts.hpp"

namespace nimbo::detail {

namespace {

/// Styles that count with other digits, by the digit zero.
constexpr struct {
  std::u16string_view name;
  char16_t zero;
} kDigits[] = {
    {u"arabic-indic", 0x660}, {u"bengali", 0x9e6},   {u"cambodian", 0x17e0}, {u"devanagari", 0x966},
    {u"gujarati", 0xae6},     {u"gurmukhi", 0xa66},  {u"kannada", 0xce6},    {u"khmer", 0x17e0},
    {u"lao", 0xed0},          {u"malayalam", 0xd66}, {u"mongolian", 0x1810}, {u"myanmar", 0x1040},
    {u"oriya", 0xb66},        {u"persian", 0x6f0},   {u"tamil", 0xbe6},      {u"telugu", 0xc66},
    {u"thai", 0xe50},         {u"tibetan", 0xf20},
};

constexpr std::u16string_view kGreekLetters = u"αβγδεζηθικλμνξοπρστυφχψω";

struct Additive {
  std::int32_t value;
  std::u16string_view text;
};

constexpr Additive kRoman[] = {{1000, u"m"}, {900, u"cm"}, {500, u"d"}, {400, u"cd"}, {100, u"c"},
                               {90, u"xc"},  {50, u"l"},   {40, u"xl"}, {10, u"x"},   {9, u"ix"},
                               {5, u"v"},    {4, u"iv"},   {1, u"i"}};
constexpr std::int32_t kLargestRoman = 3999;

constexpr Additive kHebrew[] = {{400, u"ת"}, {300, u"ש"}, {200, u"ר"}, {100, u"ק"}, {90, u"צ"}, {80, u"פ"},
                                {70, u"ע"},  {60, u"ס"},  {50, u"נ"},  {40, u"מ"},  {30, u"ל"}, {20, u"כ"},
                                {16, u"טז"}, {15, u"טו"}, {10, u"י"},  {9, u"ט"},   {8, u"ח"},  {7, u"ז"},
                                {6, u"ו"},   {5, u"ה"},   {4, u"ד"},   {3, u"ג"},   {2, u"ב"},  {1, u"א"}};
constexpr std::int32_t kLargestHebrew = 999;

/// The letters of 1 to 9, 10 to 90 and so on follow each other.
constexpr char16_t kArmenianCapital = 0x531;
constexpr char16_t kArmenianSmall = 0x561;
constexpr std::int32_t kLargestArmenian = 9999;

constexpr Additive kGeorgian[] = {
    {10000, u"ჵ"}, {9000, u"ჰ"}, {8000, u"ჯ"}, {7000, u"ჴ"}, {6000, u"ხ"}, {5000, u"ჭ"}, {4000, u"წ"},
    {3000, u"ძ"},  {2000, u"ც"}, {1000, u"ჩ"}, {900, u"შ"},  {800, u"ყ"},  {700, u"ღ"},  {600, u"ქ"},
    {500, u"ფ"},   {400, u"ჳ"},  {300, u"ტ"},  {200, u"ს"},  {100, u"რ"},  {90, u"ჟ"},   {80, u"პ"},
    {70, u"ო"},    {60, u"ჲ"},   {50, u"ნ"},   {40, u"მ"},   {30, u"ლ"},   {20, u"კ"},   {10, u"ი"},
    {9, u"თ"},     {8, u"ჱ"},    {7, u"ზ"},    {6, u"ვ"},    {5, u"ე"},    {4, u"დ"},    {3, u"გ"},
    {2, u"ბ"},     {1, u"ა"}};
constexpr std::int32_t kLargestGeorgian = 19999;

std::u16string decimal(std::int32_t number, char16_t zero) {
  std::u16string text;
  for (std::int64_t rest = std::abs(std::int64_t{number}); rest > 0 || text.empty(); rest /= 10)
    text += static_cast<char16_t>(zero + rest % 10);
  if (number < 0) text += u'-';
  std::ranges::reverse(text);
  return text;
}

/// a, b ... z, aa, ab ..., with an alphabet of `count` letters.
template <class LetterAt>
std::u16string letters(std::int32_t number, std::int32_t count, LetterAt letterAt) {
  std::u16string text;
  for (; number > 0; number = (number - 1) / count) text += letterAt((number - 1) % count);
  std::ranges::reverse(text);
  return text;
}

std::u16string additive(std::int32_t number, std::span<const Additive> parts) {
  std::u16string text;
  for (const Additive &part : parts)
    for (; number >= part.value; number -= part.value) text += part.text;
  return text;
}

std::u16string armenian(std::int32_t number, char16_t first) {
  std::u16string text;
  for (std::int32_t place = 0; number > 0; number /= 10, ++place)
    if (const std::int32_t digit = number % 10; digit > 0)
      text += static_cast<char16_t>(first + 9 * place + digit - 1);
  std::ranges::reverse(text);
  return text;
}

std::u16string latin(std::int32_t number, char16_t first) {
  return letters(number, 26, [=](std::int32_t i) { return static_cast<char16_t>(first + i); });
}

std::u16string roman(std::int32_t number, bool isUpper) {
  std::u16string text = additive(number, kRoman);
  if (isUpper)
    for (char16_t &letter : text) letter = static_cast<char16_t>(letter - u'a' + u'A');
  return text;
}

std::u16string ofIdentifier(std::int32_t number, std::u16string_view name) {
  if (name == u"hebrew" && number > 0 && number <= kLargestHebrew) return additive(number, kHebrew);
  if (name == u"georgian" && number > 0 && number <= kLargestGeorgian) return additive(number, kGeorgian);
  if (number > 0 && number <= kLargestArmenian) {
    if (name == u"armenian" || name == u"upper-armenian") return armenian(number, kArmenianCapital);
    if (name == u"lower-armenian") return armenian(number, kArmenianSmall);
  }
  const auto *const digits = std::ranges::find(kDigits, name, [](const auto &style) { return style.name; });
  return decimal(number, digits == std::end(kDigits) ? u'0' : digits->zero);
}

}  // namespace

std::u16string textOfCounter(std::int32_t number, const CSSValue &style) {
  if (style.kind() == CSSValueKind::kString) return std::u16string(style.text());
  if (style.kind() == CSSValueKind::kIdentifier) return ofIdentifier(number, style.text());
  switch (style.keyword()) {
    case CSSKeyword::kNone:
      return {};
    case CSSKeyword::kDisc:
      return u"\u2022";
    case CSSKeyword::kCircle:
      return u"\u25e6";
    case CSSKeyword::kSquare:
      return u"\u25aa";
    case CSSKeyword::kDisclosureOpen:
      return u"\u25be";
    case CSSKeyword::kDisclosureClosed:
      return u"\u25b8";
    case CSSKeyword::kDecimalLeadingZero: {
      std::u16string text = decimal(number, u'0');
      if (number > -10 && number < 10) text.insert(text.size() - 1, u"0");
      return text;
    }
    case CSSKeyword::kLowerAlpha:
    case CSSKeyword::kLowerLatin:
      if (number > 0) return latin(number, u'a');
      break;
    case CSSKeyword::kUpperAlpha:
    case CSSKeyword::kUpperLatin:
      if (number > 0) return latin(number, u'A');
      break;
    case CSSKeyword::kLowerGreek:
      if (number > 0)
        return letters(number, static_cast<std::int32_t>(kGreekLetters.size()),
                       [](std::int32_t i) { return kGreekLetters[static_cast<std::size_t>(i)]; });
      break;
    case CSSKeyword::kLowerRoman:
    case CSSKeyword::kUpperRoman:
      if (number > 0 && number <= kLargestRoman) return roman(number, style.is(CSSKeyword::kUpperRoman));
      break;
    default:
      break;
  }
  return decimal(number, u'0');
}

std::u16string markerOfItem(std::int32_t number, const CSSValue &style) {
  switch (style.keyword()) {
    case CSSKeyword::kNone:
    case CSSKeyword::kDisclosureOpen:
    case CSSKeyword::kDisclosureClosed:
      return {};
    case CSSKeyword::kDisc:
    case CSSKeyword::kCircle:
    case CSSKeyword::kSquare:
      return textOfCounter(number, style);
    default:
      break;
  }
  if (style.kind() == CSSValueKind::kString) return std::u16string(style.text());
  return textOfCounter(number, style) + u".";
}

NSString markerFormatOf(const CSSValue &style) {
  if (style.kind() == CSSValueKind::kString) return NSString::stringWithCharacters(style.text());
  if (markerOfItem(1, style).empty()) return {};
  std::u16string name = nameOf(style);
  if (name.empty()) name = u"decimal";
  const bool isBullet =
      style.is(CSSKeyword::kDisc) || style.is(CSSKeyword::kCircle) || style.is(CSSKeyword::kSquare);
  return NSString::stringWithCharacters(u"{" + name + (isBullet ? u"}" : u"}."));
}

}  // namespace nimbo::detail
