// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/NSParagraphStyle.hpp"

#include <algorithm>
#include <string>
#include <string_view>

namespace nimbo {

namespace {

struct FixedMarker {
  std::u16string_view kind;
  std::u16string_view marker;
};

constexpr FixedMarker kFixedMarkers[] = {
    {u"box", u"\u25a1"},  {u"check", u"\u2713"},  {u"circle", u"\u25e6"}, {u"diamond", u"\u25c6"},
    {u"disc", u"\u2022"}, {u"hyphen", u"\u2043"}, {u"square", u"\u25aa"},
};

/// The kind of a marker, without its braces, and where they stand; an empty one when there are none.
std::u16string_view kindOf(std::u16string_view format, std::size_t *start, std::size_t *end) {
  *start = format.find(u'{');
  if (*start == format.npos) return {};
  *end = format.find(u'}', *start);
  if (*end == format.npos) return {};
  return format.substr(*start + 1, *end - *start - 1);
}

const FixedMarker *fixedMarker(std::u16string_view kind) {
  const auto *const found = std::find_if(std::begin(kFixedMarkers), std::end(kFixedMarkers),
                                         [&](const auto &m) { return m.kind == kind; });
  return found == std::end(kFixedMarkers) ? nullptr : found;
}

std::u16string digits(std::int64_t number, int base, bool upperCase) {
  std::u16string text;
  for (auto rest = number < 0 ? -number : number; rest > 0 || text.empty(); rest /= base) {
    const auto digit = static_cast<char16_t>(rest % base);
    text += static_cast<char16_t>(digit < 10 ? u'0' + digit : (upperCase ? u'A' : u'a') + digit - 10);
  }
  if (number < 0) text += u'-';
  std::reverse(text.begin(), text.end());
  return text;
}

/// a, b ... z, aa, ab ...
std::u16string letters(std::int32_t number, char16_t first) {
  std::u16string text;
  for (; number > 0; number = (number - 1) / 26) text += static_cast<char16_t>(first + (number - 1) % 26);
  std::reverse(text.begin(), text.end());
  return text;
}

std::u16string romanNumeral(std::int32_t number, bool upperCase) {
  static constexpr struct {
    std::int32_t value;
    std::u16string_view letters;
  } kSteps[] = {{1000, u"m"}, {900, u"cm"}, {500, u"d"}, {400, u"cd"}, {100, u"c"}, {90, u"xc"}, {50, u"l"},
                {40, u"xl"},  {10, u"x"},   {9, u"ix"},  {5, u"v"},    {4, u"iv"},  {1, u"i"}};
  std::u16string text;
  for (const auto &step : kSteps)
    for (; number >= step.value; number -= step.value) text += step.letters;
  if (upperCase)
    for (char16_t &letter : text) letter = static_cast<char16_t>(letter - u'a' + u'A');
  return text;
}

std::u16string markerOfKind(std::u16string_view kind, std::int32_t number) {
  constexpr std::int32_t kLargestRomanNumeral = 3999;
  if (const FixedMarker *const fixed = fixedMarker(kind)) return std::u16string(fixed->marker);
  const bool upperCase = kind.starts_with(u"upper");
  if (number > 0 && (kind.ends_with(u"-alpha") || kind.ends_with(u"-latin")))
    return letters(number, upperCase ? u'A' : u'a');
  if (number > 0 && number <= kLargestRomanNumeral && kind.ends_with(u"-roman"))
    return romanNumeral(number, upperCase);
  if (kind.ends_with(u"hexadecimal")) return digits(number, 16, upperCase);
  return digits(number, kind == u"octal" ? 8 : 10, false);
}

}  // namespace

bool NSTextList::isOrdered() const {
  std::size_t start = 0, end = 0;
  const std::u16string_view kind = kindOf(markerFormat.view(), &start, &end);
  return !kind.empty() && !fixedMarker(kind);
}

NSString NSTextList::markerForItemNumber(std::int32_t number) const {
  std::size_t start = 0, end = 0;
  const std::u16string_view format = markerFormat.view();
  const std::u16string_view kind = kindOf(format, &start, &end);
  if (kind.empty()) return markerFormat;
  std::u16string marker(format.substr(0, start));
  marker += markerOfKind(kind, number);
  marker += format.substr(end + 1);
  return NSString::stringWithCharacters(marker);
}

}  // namespace nimbo
