// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLEscaping.hpp"

#include <cstring>
#include <new>
#include <utility>

#include "Classes/URLEscapes.hpp"
#include "Classes/UnicharSearches.hpp"
#include "Classes/UnitBlocks.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

namespace {

/// So many units are looked at one by one before a vector search for the next "%" pays.
constexpr std::uint32_t kNearby = 16;

/// The value of the escape that `percent` begins, or -1.
int valueOfEscape(const unichar *percent) {
  const int high = valueOfHexDigit(percent[1]), low = valueOfHexDigit(percent[2]);
  return high < 0 || low < 0 ? -1 : 16 * high + low;
}

/// The index of the first "%" from `start` on; `end` when there is none.
std::uint32_t nextPercent(const unichar *units, std::uint32_t start, std::uint32_t end) {
  for (const std::uint32_t near = end - start < kNearby ? end : start + kNearby; start < near; ++start)
    if (units[start] == u'%') return start;
  const std::uint32_t found = findUnichar(units + start, end - start, u'%');
  return found == NSNotFound ? end : start + found;
}

/// What the standard unescaping decodes always.
bool isStandardValue(int value) {
  switch (value) {
    case '\t':
    case '\n':
    case '\r':
    case ' ':
    case '$':
    case '%':
    case '&':
    case '\'':
    case '+':
    case '/':
    case ':':
    case ';':
    case '=':
    case '@':
    case '~':
      return true;
    default:
      return false;
  }
}

/// Whether `c` is one of the `count` units from `first` on.
constexpr bool isWithin(unichar c, unichar first, unichar count) {
  return static_cast<unichar>(c - first) < count;
}

/// The predicates have no branches, so that the loops over blocks become vector code.
constexpr bool isEscapedStandard(unichar c) {
  return (c == u' ') | isWithin(c, u'#', 4) | (c == u'+') | (c == u'/') | isWithin(c, u':', 2) | (c == u'=') |
         isWithin(c, u'?', 2);
}

constexpr bool isEscapedASCII(unichar c) {
  const auto small = static_cast<unichar>(c | 0x20);
  return (c < 128) & !isWithin(c, u'0', 10) & !isWithin(small, u'a', 26);
}

template <class Predicate>
NSString stringByEscaping(const NSString &string, Predicate isEscaped) {
  const unichar *const units = string.characters();
  const std::uint32_t length = string.length();
  const std::size_t count = countUnits(units, length, isEscaped);
  if (count == 0) return NSString::stringWithCharacters(units, length);
  const std::size_t escapedLength = length + count * (kEscapeLength - 1);
  if (escapedLength > NSNotFound) return string;
  NSMutableString escaped;
  escaped.setLength(static_cast<std::uint32_t>(escapedLength));
  unichar *out = escaped.mutableCharacters();
  for (std::uint32_t i = 0; i < length;) {
    if (length - i >= kUnitBlock && !anyUnitOfBlock(units + i, isEscaped)) {
      std::memcpy(out, units + i, kUnitBlock * sizeof(unichar));
      out += kUnitBlock;
      i += kUnitBlock;
      continue;
    }
    const std::uint32_t end = length - i < kUnitBlock ? length : i + static_cast<std::uint32_t>(kUnitBlock);
    for (; i < end; ++i) {
      if (isEscaped(units[i]))
        out = writeEscape(units[i], out);
      else
        *out++ = units[i];
    }
  }
  return std::move(escaped).string();
}

}  // namespace

std::uint32_t convertPercentEscapesOfURL(unichar *units, std::uint32_t length, bool standard) {
  if (length < kEscapeLength) return length;
  const std::uint32_t end = length - (kEscapeLength - 1);
  // Whether an escaped "?" is decoded is found out at the first one. Until then no "?" has been decoded, and
  // what has been moved forward still stands somewhere, so that a "?" in the run is one of its own.
  enum class Question { kUnknown, kDecode, kKeep } question = Question::kUnknown;
  const auto isDecoded = [&](int value) {
    if (value < 0) return false;
    if (!standard) return value < 128;
    if (value != '?') return isStandardValue(value);
    if (question == Question::kUnknown)
      question = findUnichar(units, length, u'?') == NSNotFound ? Question::kDecode : Question::kKeep;
    return question == Question::kDecode;
  };
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
    if (isDecoded(value)) {
      units[written++] = static_cast<unichar>(value);
      read += kEscapeLength;
    } else {
      keep(1);
    }
  }
  keep(length - read);
  return written;
}

NSString stringByAddingPercentEscapesToURL(const NSString &string, bool standard) {
  if (string.length() == 0) return string;
  try {
    return standard ? stringByEscaping(string, isEscapedStandard) : stringByEscaping(string, isEscapedASCII);
  } catch (const std::bad_alloc &) {
    return string;
  }
}

}  // namespace nimbo
