// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLEscaping.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/AsciiSetKernels.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/URLs/URLEscapes.hpp"
#include "Classes/URLs/URLStringParts.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

namespace {

/// So many units are looked at one by one before a vector search for the next escape pays.
constexpr std::uint32_t kNearby = 16;

/// Where those from `start` on end.
constexpr std::uint32_t nearEnd(std::uint32_t start, std::uint32_t end) {
  return end - start < kNearby ? end : start + kNearby;
}

/// The value of the escape that `percent` begins, or -1.
int valueOfEscape(const unichar *percent) {
  const std::uint32_t high = hexDigitValue(percent[1]), low = hexDigitValue(percent[2]);
  return high > 15 || low > 15 ? -1 : static_cast<int>(16 * high + low);
}

/// The index of the first "%" from `start` on; `end` when there is none.
std::uint32_t nextPercent(const unichar *units, std::uint32_t start, std::uint32_t end) {
  for (const std::uint32_t near = nearEnd(start, end); start < near; ++start)
    if (units[start] == u'%') return start;
  const std::uint32_t found = findUnichar(units + start, end - start, u'%');
  return found == NSNotFound ? end : start + found;
}

constexpr detail::AsciiSet setOf(std::u16string_view units) {
  return detail::AsciiSet::of([units](unichar c) { return units.find(c) != units.npos; });
}

/// What the standard unescaping decodes always.
constexpr detail::AsciiSet kDecodedStandard = setOf(u"\t\n\r $%&'+/:;=@~");
constexpr detail::AsciiSet kEscapedStandard = setOf(u" #$%&+/:;=?@");
constexpr detail::AsciiSet kEscapedASCII =
    detail::AsciiSet::of([](unichar c) { return !isASCIIAlphanumeric(c); });

/// What means the same there without its escape.
constexpr detail::AsciiSet kDecodedInPath = setOf(u"$&'+:@~"), kDecodedInQuery = setOf(u"$'/:@~");

/// Decodes in place the escapes for which `isDecoded(value, index of the "%")` is true, and answers how many
/// units are left.
template <class IsDecoded>
std::uint32_t decodeEscapes(unichar *units, std::uint32_t length, IsDecoded isDecoded) {
  if (length < kEscapeLength) return length;
  const std::uint32_t end = length - (kEscapeLength - 1);
  std::uint32_t written = 0, read = 0;
  const auto keep = [&](std::uint32_t count) {
    if (written != read) std::memmove(units + written, units + read, count * sizeof(unichar));
    written += count;
    read += count;
  };
  while (read < end) {
    keep(nextPercent(units, read, end) - read);
    if (read == end) break;
    const int value = valueOfEscape(units + read);
    if (value >= 0 && isDecoded(value, read)) {
      units[written++] = static_cast<unichar>(value);
      read += kEscapeLength;
    } else {
      keep(1);
    }
  }
  keep(length - read);
  return written;
}

/// The index of the first unit of the set from `start` on; `end` when there is none.
std::uint32_t nextEscaped(const unichar *units, std::uint32_t start, std::uint32_t end,
                          const detail::AsciiSet &set) {
  for (const std::uint32_t near = nearEnd(start, end); start < near; ++start)
    if (set.contains(units[start])) return start;
  return start + static_cast<std::uint32_t>(detail::findOneOfAsciiSet(units + start, end - start, set));
}

NSString stringByEscaping(const NSString &string, const detail::AsciiSet &set) {
  const unichar *const units = string.characters();
  const std::uint32_t length = string.length();
  const std::size_t first = detail::findOneOfAsciiSet(units, length, set);
  if (first == length) return NSString::stringWithCharacters(units, length);
  const std::size_t count = detail::countOneOfAsciiSet(units + first, length - first, set);
  const std::size_t escapedLength = length + count * (kEscapeLength - 1);
  if (escapedLength > NSNotFound) return string;
  NSMutableString escaped;
  escaped.setLength(static_cast<std::uint32_t>(escapedLength));
  unichar *out = escaped.mutableCharacters();
  for (std::uint32_t read = 0;;) {
    const std::uint32_t next = nextEscaped(units, read, length, set);
    out = std::copy_n(units + read, next - read, out);
    if (next == length) return std::move(escaped).string();
    out = writeEscape(units[next], out);
    read = next + 1;
  }
}

}  // namespace

std::uint32_t convertPercentEscapesOfURL(unichar *units, std::uint32_t length, Flag standard) {
  // Whether an escaped "?" is decoded is found out at the first one. Until then no "?" has been decoded, and
  // what has been moved forward still stands somewhere, so that a "?" in the run is one of its own.
  enum class Question { kUnknown, kDecode, kKeep } question = Question::kUnknown;
  return decodeEscapes(units, length, [&](int value, std::uint32_t) {
    if (!standard) return value < 128;
    if (value != '?') return kDecodedStandard.contains(static_cast<unichar>(value));
    if (question == Question::kUnknown)
      question = findUnichar(units, length, u'?') == NSNotFound ? Question::kDecode : Question::kKeep;
    return question == Question::kDecode;
  });
}

std::uint32_t convertPercentEscapesPreservingMeaning(unichar *units, std::uint32_t length) {
  const std::u16string_view url(units, length);
  const URLStringParts parts = partsOfURLString(url);
  if (!parts.isHierarchical) return length;
  // In front of it a ":" would end a scheme.
  const std::size_t colonStart = parts.schemeLength > 0 || parts.authorityStart < parts.pathStart
                                     ? 0
                                     : std::min(url.find_first_of(u"/\\"), url.size());
  return decodeEscapes(units, length, [&](int value, std::uint32_t place) {
    const auto unit = static_cast<unichar>(value);
    if (place < parts.pathStart) return false;
    if (place >= parts.queryStart) return kDecodedInQuery.contains(unit);
    return kDecodedInPath.contains(unit) && (unit != u':' || place > colonStart);
  });
}

NSString stringByAddingPercentEscapesToURL(const NSString &string, Flag standard) {
  if (string.length() == 0) return string;
  return answerOr(string,
                  [&] { return stringByEscaping(string, standard ? kEscapedStandard : kEscapedASCII); });
}

}  // namespace nimbo
