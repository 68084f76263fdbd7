// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/BidiLine.hpp"

#include <unicode/ubidi.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace nimbo {
namespace {

constexpr char16_t kLetter = u'A';
constexpr char16_t kHebrewLetter = u'\u05d0';
constexpr char16_t kArabicLetter = u'\u0627';
constexpr char16_t kDigit = u'1';
constexpr char16_t kPercent = u'%';

UCharDirection directionOf(char32_t character) {
  return u_charDirection(static_cast<UChar32>(character));
}

bool isRightToLeftLetter(UCharDirection direction) {
  return direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC;
}

/// A unit that takes part in the order of a line as the character does; nothing that ends or nests a line.
char16_t unitForOrder(char32_t character) {
  switch (directionOf(character)) {
    case U_LEFT_TO_RIGHT:
      return kLetter;
    case U_RIGHT_TO_LEFT:
      return kHebrewLetter;
    case U_RIGHT_TO_LEFT_ARABIC:
      return kArabicLetter;
    case U_EUROPEAN_NUMBER:
      return kDigit;
    case U_EUROPEAN_NUMBER_SEPARATOR:
      return u'-';
    case U_EUROPEAN_NUMBER_TERMINATOR:
      return kPercent;
    case U_ARABIC_NUMBER:
      return u'\u0661';
    case U_COMMON_NUMBER_SEPARATOR:
      return u':';
    case U_OTHER_NEUTRAL:
      return u'!';
    default:
      return u' ';
  }
}

/// Makes letters of what belongs to letters that run from left to right within the other direction: numbers
/// that are seen to the right of them ("Windows 11"), which by the rules might as well be read before them, and
/// brackets around such letters behind others.
void joinToLetters(std::u32string_view line, std::u16string &units) {
  bool follows = false;
  // Some programs name the brackets the wrong way round: the first one of a pair opens it.
  std::vector<std::pair<std::size_t, std::int32_t>> open;
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (units[i] == kLetter) follows = true;
    if (units[i] == kHebrewLetter || units[i] == kArabicLetter) {
      follows = false;
      open.clear();
    }
    if (!follows) continue;
    if (units[i] == kDigit || (units[i] == kPercent && i > 0 && directionOf(line[i - 1]) == U_EUROPEAN_NUMBER))
      units[i] = kLetter;
    const auto bracket = u_getIntPropertyValue(static_cast<UChar32>(line[i]), UCHAR_BIDI_PAIRED_BRACKET_TYPE);
    if (bracket == U_BPT_NONE) continue;
    if (!open.empty() && open.back().second != bracket) {
      units[open.back().first] = units[i] = kLetter;
      open.pop_back();
    } else {
      open.emplace_back(i, bracket);
    }
  }
}

}  // namespace

BidiRole bidiRole(char32_t character) {
  const UCharDirection direction = directionOf(character);
  if (direction == U_LEFT_TO_RIGHT) return BidiRole::leftToRight;
  if (isRightToLeftLetter(direction)) return BidiRole::rightToLeft;
  return direction == U_DIR_NON_SPACING_MARK || direction == U_BOUNDARY_NEUTRAL ? BidiRole::mark
                                                                                : BidiRole::neutral;
}

char32_t mirroredCharacter(char32_t character) {
  return static_cast<char32_t>(u_charMirror(static_cast<UChar32>(character)));
}

std::optional<bool> isVisualLineRightToLeft(std::u32string_view line) {
  const auto isStrong = [](char32_t character) {
    const BidiRole role = bidiRole(character);
    return role == BidiRole::leftToRight || role == BidiRole::rightToLeft;
  };
  const auto left = std::find_if(line.begin(), line.end(), isStrong);
  if (left == line.end()) return std::nullopt;
  const auto right = std::find_if(line.rbegin(), line.rend(), isStrong);
  const bool runsAtLeft = bidiRole(*left) == BidiRole::rightToLeft;
  const bool runsAtRight = bidiRole(*right) == BidiRole::rightToLeft;
  if (runsAtLeft == runsAtRight) return runsAtLeft;
  // A sentence ends where its full stop is seen.
  const auto endsSentence = [](char32_t character) {
    return std::u32string_view(U".,:;!?\u061f\u060c\u061b").find(character) != std::u32string_view::npos;
  };
  const auto isBlank = [](char32_t character) { return character == U' '; };
  const bool endsAtLeft = endsSentence(*std::find_if_not(line.begin(), line.end(), isBlank));
  const bool endsAtRight = endsSentence(*std::find_if_not(line.rbegin(), line.rend(), isBlank));
  if (endsAtLeft != endsAtRight) return endsAtLeft;
  return std::nullopt;
}

std::vector<BidiPlace> logicalOrderOfVisualLine(std::u32string_view line, bool isRightToLeft) {
  const auto length = static_cast<std::int32_t>(line.size());
  std::u16string units(line.size(), u' ');
  std::transform(line.begin(), line.end(), units.begin(), unitForOrder);
  std::vector<BidiPlace> order;
  if (line.empty()) return order;
  order.reserve(line.size());
  // What runs from right to left in a line that does so itself stands as it is read when that is turned round.
  if (isRightToLeft) {
    joinToLetters(line, units);
    std::reverse(units.begin(), units.end());
  }
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UBiDi, decltype(&ubidi_close)> bidi(ubidi_openSized(length, 0, &status), ubidi_close);
  ubidi_setPara(bidi.get(), units.data(), length, isRightToLeft ? UBIDI_RTL : UBIDI_LTR, nullptr, &status);
  std::vector<std::int32_t> seen(line.size());
  ubidi_getVisualMap(bidi.get(), seen.data(), &status);
  const UBiDiLevel *const levels = ubidi_getLevels(bidi.get(), &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  if (isRightToLeft) std::reverse(seen.begin(), seen.end());
  for (const std::int32_t index : seen) {
    const bool odd = levels[index] % 2 != 0;
    order.push_back({static_cast<std::uint32_t>(isRightToLeft ? length - 1 - index : index), odd});
  }
  return order;
}

}  // namespace nimbo
