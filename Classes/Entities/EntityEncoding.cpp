// SPDX-License-Identifier: Apache-2.0
#include "Classes/Entities/EntityEncoding.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Classes/Characters/UnicharKernels.hpp"
#include "Classes/Entities/EntityTable.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

namespace {

/// Puts "&name;" and answers its end.
unichar *putEntity(const char *name, unichar *out) {
  *out++ = u'&';
  while (*name) *out++ = static_cast<unsigned char>(*name++);
  *out++ = u';';
  return out;
}

/// How long "&#%d;" is for a unit above 127.
constexpr std::uint32_t lengthOfNumber(unichar c) {
  return 6u + (c >= 1000) + (c >= 10000);
}

unichar *putNumber(unichar c, unichar *out) {
  unichar *const end = out + lengthOfNumber(c);
  out[0] = u'&';
  out[1] = u'#';
  end[-1] = u';';
  std::uint32_t rest = c;
  for (unichar *digit = end - 2; digit > out + 1; --digit, rest /= 10)
    *digit = static_cast<unichar>(u'0' + rest % 10);
  return end;
}

/// The index of the first unit above 127, four units at a time; `length` when there is none.
std::size_t findNonAscii(const unichar *units, std::size_t length) {
  constexpr std::uint64_t kHighBits = 0xff80ff80ff80ff80;
  std::size_t i = 0;
  for (; i + 4 <= length; i += 4) {
    std::uint64_t word;
    std::memcpy(&word, units + i, sizeof word);
    if (word & kHighBits) break;
  }
  while (i < length && units[i] < 128) ++i;
  return i;
}

// An encoding finds the next unit that it replaces, knows how much room the replacement takes at most, and puts
// it.

struct MarkupEncoding {
  /// A run is first looked at by hand, since it is often short.
  static constexpr std::size_t kShortRunLength = 8;

  static const char *name(unichar c) {
    switch (c) {
      case u'&':
        return "amp";
      case u'"':
        return "quot";
      case u'<':
        return "lt";
      case u'>':
        return "gt";
      default:
        return nullptr;
    }
  }
  static std::size_t find(const unichar *units, std::size_t length) {
    const std::size_t shortLength = std::min(length, kShortRunLength);
    for (std::size_t i = 0; i < shortLength; ++i)
      if (name(units[i])) return i;
    return shortLength +
           detail::findOneOfChoice(units + shortLength, length - shortLength, {4, {u'&', u'"', u'<', u'>'}});
  }
  static std::uint32_t room(unichar c) { return static_cast<std::uint32_t>(std::strlen(name(c))) + 2; }
  static unichar *put(unichar c, unichar *out) { return putEntity(name(c), out); }
};

struct NumericEncoding {
  static std::size_t find(const unichar *units, std::size_t length) { return findNonAscii(units, length); }
  static std::uint32_t room(unichar c) { return lengthOfNumber(c); }
  static unichar *put(unichar c, unichar *out) { return putNumber(c, out); }
};

struct NamedEncoding {
  /// "&thetasym;" and "&#65535;".
  static constexpr std::uint32_t kEntityRoom = 10, kNumberRoom = 8;

  static std::size_t find(const unichar *units, std::size_t length) { return findNonAscii(units, length); }
  static std::uint32_t room(unichar c) { return indexOfEntityForCharacter(c) < 0 ? kNumberRoom : kEntityRoom; }
  static unichar *put(unichar c, unichar *out) {
    const std::int32_t index = indexOfEntityForCharacter(c);
    return index < 0 ? putNumber(c, out) : putEntity(entityStrings[static_cast<std::size_t>(index)], out);
  }
};

template <class Encoding>
NSString encode(const NSString &string) {
  const unichar *in = string.characters();
  const unichar *const end = in + string.length();
  const auto next = [end](const unichar *from) {
    return from + Encoding::find(from, static_cast<std::size_t>(end - from));
  };
  const unichar *const first = next(in);
  if (first == end) return string;
  std::uint64_t room = string.length();
  for (const unichar *at = first; at < end; at = next(at + 1)) room += Encoding::room(*at) - 1;
  if (room >= NSNotFound) return string;

  NSMutableString result;
  result.setLength(static_cast<std::uint32_t>(room));
  unichar *out = result.mutableCharacters();
  for (const unichar *at = first;; at = next(in)) {
    out = std::copy(in, at, out);
    if (at == end) break;
    out = Encoding::put(*at, out);
    in = at + 1;
  }
  result.setLength(static_cast<std::uint32_t>(out - result.characters()));
  return std::move(result).string();
}

}  // namespace

NSString stringByConvertingCharactersToEntities(const NSString &string, Flag high) {
  return high ? encode<NumericEncoding>(string) : encode<MarkupEncoding>(string);
}

NSString stringByConvertingCharactersToNamedEntities(const NSString &string) {
  return string.length() > kMaxNamedEntitiesLength ? string : encode<NamedEncoding>(string);
}

}  // namespace nimbo
