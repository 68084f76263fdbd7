// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"

#include <unicode/uchar.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/CoreServices/TextEncodings/ExtendedEncoding.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/CoreServices/TextEncodings/ScriptStatistics.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

/// Text may have one control character in so many characters.
constexpr std::size_t kCharactersPerControl = 50;
/// Damaged UTF-8 has at least so many good sequences for each bad byte.
constexpr std::size_t kSequencesPerInvalidByte = 10;
/// UTF-16 without a mark has a zero byte in at least one of so many units on its high side; more when all other
/// bytes are plain text, which they are in text of one byte a character with a stray zero ...
constexpr std::size_t kUnitsPerHighZero = 10, kUnitsPerHighZeroInPlainText = 2;
/// ... and in at most one of so many on its low side.
constexpr std::size_t kUnitsPerLowZero = 100;
/// What statistics look at, from the first line that is not plain ASCII.
constexpr std::size_t kSampleLengthInBytes = std::size_t{64} << 10;
/// ICU's confidence, of 100, from which its answer counts.
constexpr std::int32_t kMinimumConfidence = 20;
/// How much of Cyrillic text is so at least.
constexpr double kLeastCyrillicShare = 0.75;

/// A control character that plain text has no use for. Besides white space, text has escape sequences,
/// backspaces and the end mark of old systems.
constexpr bool isStrayControl(char32_t character) {
  return (character < 0x20 && !(character >= 0x07 && character <= 0x0d) && character != 0x1a &&
          character != 0x1b) ||
         character == 0x7f;
}

constexpr bool isTooMuch(std::size_t controls, std::size_t characters) {
  return controls * kCharactersPerControl > characters;
}

/// A code unit of UTF-16 or UTF-32.
template <class Unit>
Unit unitAt(const char *bytes, std::endian order) {
  Unit unit;
  std::memcpy(&unit, bytes, sizeof unit);
  if (order == std::endian::native) return unit;
  if constexpr (sizeof(Unit) == 2)
    return static_cast<Unit>(__builtin_bswap16(unit));
  else
    return static_cast<Unit>(__builtin_bswap32(unit));
}

/// Without a mark nothing may be amiss, except controls; behind one damage is passed over.
enum class Strictness { strict, lenient };

/// A unit or a byte that is left over at the end is dropped. Nil when it is no text.
DetectedString stringWithUTF16(std::string_view bytes, std::endian order, Strictness strictness, bool isCut) {
  NSMutableString units;
  units.reserve(static_cast<std::uint32_t>(bytes.size() / 2));
  std::size_t controls = 0;
  std::size_t lone = 0;
  bool afterHigh = false;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto unit = unitAt<char16_t>(bytes.data() + i, order);
    units.appendCharacter(unit);
    const bool completes = afterHigh && isLowSurrogate(unit);
    if (afterHigh != completes || (isLowSurrogate(unit) && !completes)) ++lone;
    afterHigh = isHighSurrogate(unit);
    controls += isStrayControl(unit) || unit == 0xfffe || unit == 0xffff;
  }
  if (strictness == Strictness::strict && lone > 0) return {};
  if (isTooMuch(controls + lone, units.length())) return {};
  if (afterHigh) units.setLength(units.length() - 1);
  return {std::move(units).string(), order == std::endian::little ? u"UTF-16LE"_ns : u"UTF-16BE"_ns,
          lone > 0 || (!isCut && bytes.size() % 2 != 0)};
}

DetectedString stringWithUTF32(std::string_view bytes, std::endian order, Strictness strictness, bool isCut) {
  NSMutableString units;
  units.reserve(static_cast<std::uint32_t>(bytes.size() / 4));
  std::size_t controls = 0;
  std::size_t impossible = 0;
  for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
    char32_t character = unitAt<char32_t>(bytes.data() + i, order);
    if (character > 0x10ffff || (character >= 0xd800 && character <= 0xdfff)) {
      if (strictness == Strictness::strict) return {};
      ++impossible;
      character = 0xfffd;
    }
    controls += isStrayControl(character);
    unichar halves[2];
    units.append({halves, putUTF16(character, halves)});
  }
  if (isTooMuch(controls + impossible, bytes.size() / 4)) return {};
  return {std::move(units).string(), order == std::endian::little ? u"UTF-32LE"_ns : u"UTF-32BE"_ns,
          impossible > 0 || (!isCut && bytes.size() % 4 != 0)};
}

/// How many controls there are that text has no use for. In bytes of most encodings these are ASCII.
std::size_t countStrayControls(std::string_view bytes) {
  constexpr std::size_t kBlock = 16;
  typedef std::uint8_t Block __attribute__((vector_size(kBlock)));
  const auto isStray = [](char byte) { return isStrayControl(static_cast<unsigned char>(byte)); };
  std::size_t count = 0;
  for (; bytes.size() >= kBlock; bytes.remove_prefix(kBlock)) {
    Block block;
    std::memcpy(&block, bytes.data(), sizeof block);
    const auto mayBeStray = ((block < 0x20) & ((block < 0x07) | (block > 0x0d))) | (block == 0x7f);
    std::uint64_t halves[2];
    std::memcpy(halves, &mayBeStray, sizeof halves);
    if (halves[0] | halves[1])
      count += static_cast<std::size_t>(std::ranges::count_if(bytes.substr(0, kBlock), isStray));
  }
  return count + static_cast<std::size_t>(std::ranges::count_if(bytes, isStray));
}

/// What bytes look like that are not valid UTF-8 when they are read as such.
struct UTF8Statistics {
  std::size_t sequences = 0;  // of more than one byte
  std::size_t invalidBytes = 0;
  std::size_t firstNonASCII = std::string_view::npos;
  /// Bytes of a sequence that the end cuts short.
  std::size_t cutBytes = 0;
};

/// Whether it is UTF-8 with some damage.
bool isMostlyUTF8(std::size_t sequences, std::size_t invalidBytes) {
  return sequences >= kSequencesPerInvalidByte * invalidBytes;
}

/// Ends early when the rest could not make it UTF-8.
UTF8Statistics statisticsOfUTF8(std::string_view bytes) {
  UTF8Statistics result;
  const auto isHopeless = [&](std::size_t i) {
    return !isMostlyUTF8(result.sequences + (bytes.size() - i) / 2, result.invalidBytes);
  };
  for (std::size_t i = 0; i < bytes.size();) {
    if (static_cast<unsigned char>(bytes[i]) < 0x80) {
      ++i;
      continue;
    }
    result.firstNonASCII = std::min(result.firstNonASCII, i);
    if (const std::size_t length = utf8SequenceLength(bytes.substr(i))) {
      ++result.sequences;
      i += length;
    } else if (isCutUTF8(bytes.substr(i))) {
      result.cutBytes = bytes.size() - i;
      break;
    } else {
      ++result.invalidBytes;
      if (isHopeless(++i)) break;
    }
  }
  return result;
}

/// UTF-8 with some damage; an incomplete character at the end is dropped, as it must be when the bytes are cut.
DetectedString stringWithDamagedUTF8(std::string_view bytes, const UTF8Statistics &statistics, bool isCut) {
  bytes.remove_suffix(statistics.cutBytes);
  return {NSString::stringWithLossyUTF8String(bytes), u"UTF-8"_ns,
          statistics.invalidBytes > 0 || (!isCut && statistics.cutBytes > 0)};
}

/// Decodes as `initWithData` does, so that the answer's encoding reads the bytes back. Nil when the bytes are
/// impossible in the encoding or mean nothing. Of cut bytes a character that the end divides is dropped.
NSString stringInEncoding(std::string_view bytes, CFStringEncoding encoding, bool isCut) {
  // The longest character is one of four bytes.
  constexpr std::size_t kMostCutBytes = 3;
  NSString string;
  for (std::size_t cut = 0; !string && cut <= std::min(isCut ? kMostCutBytes : 0, bytes.size()); ++cut)
    string = initWithData(NSData::dataWithBytes(bytes.data(), bytes.size() - cut),
                          CFStringConvertEncodingToNSStringEncoding(encoding));
  // Tables give characters of the private use area, or second controls, for bytes that mean nothing.
  const auto meansNothing = [](unichar unit) {
    return (unit >= 0xe000 && unit <= 0xf8ff) || (unit >= 0x80 && unit <= 0x9f);
  };
  return std::ranges::any_of(string.view(), meansNothing) ? NSString() : string;
}

DetectedString detected(NSString string, CFStringEncoding encoding, bool isDamaged = false) {
  if (!string) return {};
  return {std::move(string), CFStringConvertEncodingToIANACharSetName(encoding), isDamaged};
}

/// Whether the bytes beyond ASCII stand mostly beside each other, as they do in other alphabets than Latin.
bool hasForeignWords(std::string_view bytes) {
  std::size_t foreign = 0, pairs = 0;
  bool isLastForeign = false;
  for (const char byte : bytes) {
    const bool isForeign = (byte & 0x80) != 0;
    foreign += isForeign;
    pairs += isForeign && isLastForeign;
    isLastForeign = isForeign;
  }
  return 2 * pairs >= foreign;
}

/// The encoding in which the sample is Thai or Cyrillic text, which ICU knows little about; none when it is
/// not.
CFStringEncoding encodingByScript(std::string_view sample) {
  if (!hasForeignWords(sample)) return kCFStringEncodingInvalidId;
  if (isThaiText(stringInEncoding(sample, kCFStringEncodingDOSThai, true).view()))
    return kCFStringEncodingDOSThai;
  CFStringEncoding best = kCFStringEncodingInvalidId;
  double bestShare = kLeastCyrillicShare;
  for (const CFStringEncoding encoding :
       {kCFStringEncodingWindowsCyrillic, kCFStringEncodingKOI8_R, kCFStringEncodingKOI8_U,
        kCFStringEncodingISOLatinCyrillic, kCFStringEncodingDOSRussian, kCFStringEncodingMacCyrillic,
        kCFStringEncodingDOSCyrillic}) {
    const double share = shareOfCyrillicText(stringInEncoding(sample, encoding, true).view());
    if (share <= bestShare) continue;
    best = encoding;
    bestShare = share;
  }
  return best;
}

DetectedString stringWithStatistics(std::string_view bytes, std::size_t firstNonASCII, bool isCut) {
  const std::size_t line = bytes.rfind('\n', firstNonASCII);
  const std::string_view sample = bytes.substr(
      line == bytes.npos || firstNonASCII - line > kSampleLengthInBytes / 2 ? firstNonASCII : line + 1,
      kSampleLengthInBytes);
  if (const CFStringEncoding encoding = encodingByScript(sample); encoding != kCFStringEncodingInvalidId)
    if (NSString string = stringInEncoding(bytes, encoding, isCut))
      return detected(std::move(string), encoding);
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&status),
                                                                            &ucsdet_close);
  ucsdet_setText(detector.get(), sample.data(), static_cast<std::int32_t>(sample.size()), &status);
  std::int32_t count = 0;
  const UCharsetMatch **matches = ucsdet_detectAll(detector.get(), &count, &status);
  for (std::int32_t i = 0; U_SUCCESS(status) && i < count; ++i) {
    const char *name = ucsdet_getName(matches[i], &status);
    if (U_FAILURE(status) || ucsdet_getConfidence(matches[i], &status) < kMinimumConfidence) break;
    // The Unicode forms have been tried, and text of mainframes never comes as a file.
    const std::string_view view(name);
    if (view.starts_with("UTF-") || view.starts_with("IBM")) continue;
    const CFStringEncoding encoding =
        CFStringConvertIANACharSetNameToEncoding(NSString::stringWithUTF8String(view));
    const NSStringEncoding extended = extendedEncoding(CFStringConvertEncodingToNSStringEncoding(encoding));
    for (const CFStringEncoding candidate : {encoding, CFStringConvertNSStringEncodingToEncoding(extended)})
      if (NSString string = stringInEncoding(bytes, candidate, isCut))
        return detected(std::move(string), candidate);
  }
  return {};
}

/// Windows-1252 when the bytes are possible in it. Else the old encoding, of those that give every byte a
/// meaning, that makes the most small letters.
DetectedString stringWithFallback(std::string_view bytes, bool isCut) {
  if (NSString string = stringInEncoding(bytes, kCFStringEncodingWindowsLatin1, isCut))
    return detected(std::move(string), kCFStringEncodingWindowsLatin1);
  DetectedString best;
  std::ptrdiff_t mostLetters = -1;
  for (const CFStringEncoding encoding : {kCFStringEncodingMacRoman, kCFStringEncodingDOSLatin1}) {
    NSString string = stringInEncoding(bytes, encoding, isCut);
    const std::ptrdiff_t letters =
        std::ranges::count_if(string.view(), [](unichar unit) { return u_islower(unit); });
    if (!string || letters <= mostLetters) continue;
    best = detected(std::move(string), encoding);
    mostLetters = letters;
  }
  return best;
}

/// The name of the encoding in which a mark decides the order, and is no part of the text.
DetectedString marked(DetectedString text, NSString encodingName) {
  if (text.string) text.encodingName = std::move(encodingName);
  return text;
}

DetectedString stringWithByteOrderMark(std::string_view bytes, bool isCut) {
  using namespace std::literals;
  if (bytes.starts_with("\xef\xbb\xbf"sv)) {
    bytes.remove_prefix(3);
    if (isTooMuch(countStrayControls(bytes), bytes.size())) return {};
    if (NSString string = NSString::stringWithUTF8String(bytes)) return {std::move(string), u"UTF-8"_ns};
    return stringWithDamagedUTF8(bytes, statisticsOfUTF8(bytes), isCut);
  }
  for (const std::endian order : {std::endian::little, std::endian::big}) {
    const bool little = order == std::endian::little;
    if (bytes.starts_with(little ? "\xff\xfe\0\0"sv : "\0\0\xfe\xff"sv))
      if (DetectedString found = stringWithUTF32(bytes.substr(4), order, Strictness::lenient, isCut);
          found.string)
        return marked(std::move(found), u"UTF-32"_ns);
    if (bytes.starts_with(little ? "\xff\xfe"sv : "\xfe\xff"sv))
      return marked(stringWithUTF16(bytes.substr(2), order, Strictness::lenient, isCut), u"UTF-16"_ns);
  }
  return {};
}

/// ISO-2022-KR, which announces its characters once and shifts to them by controls.
DetectedString stringWithKoreanShifts(std::string_view bytes, bool isCut) {
  if (bytes.find("\x1b$)C") == bytes.npos) return {};
  DetectedString korean =
      detected(stringInEncoding(bytes, kCFStringEncodingISO_2022_KR, isCut), kCFStringEncodingISO_2022_KR);
  const auto controls = std::ranges::count_if(korean.string.view(), isStrayControl);
  return isTooMuch(static_cast<std::size_t>(controls), korean.string.length()) ? DetectedString{} : korean;
}

/// Without the zero bytes that fill up text of one byte a character at its end. That of a line's end is not one
/// of them: UTF-16 of a script without spaces has no other.
std::string_view withoutPadding(std::string_view bytes) {
  using namespace std::literals;
  if (bytes.size() % 2 == 0 && bytes.ends_with("\n\0"sv)) return bytes;
  return bytes.substr(0, bytes.find_last_not_of('\0') + 1);
}

/// UTF-16 and UTF-32 without a mark.
DetectedString stringWithZeroPattern(std::string_view bytes, bool isCut) {
  const std::string_view sample = bytes.substr(0, kSampleLengthInBytes);
  if (withoutPadding(sample).find('\0') == sample.npos) return {};
  std::array<std::size_t, 4> zeros{};
  for (std::size_t i = 0; i < sample.size(); ++i) zeros[i % 4] += sample[i] == 0;
  const std::size_t even = zeros[0] + zeros[2];
  const std::size_t odd = zeros[1] + zeros[3];
  if (bytes.size() >= 4 && (isCut || bytes.size() % 4 == 0))
    for (const std::endian order : {std::endian::little, std::endian::big})
      if (DetectedString found = stringWithUTF32(bytes, order, Strictness::strict, isCut); found.string)
        return found;
  const std::size_t count = sample.size() / 2;
  if (count == 0) return {};
  const bool isPlain = std::ranges::all_of(sample, [](char byte) {
    return byte == 0 || ((byte & 0x80) == 0 && !isStrayControl(static_cast<unsigned char>(byte)));
  });
  const std::size_t unitsPerHighZero = isPlain ? kUnitsPerHighZeroInPlainText : kUnitsPerHighZero;
  const auto fits = [=](std::size_t high, std::size_t low) {
    return high * unitsPerHighZero >= count && low * kUnitsPerLowZero <= count;
  };
  if (fits(odd, even)) return stringWithUTF16(bytes, std::endian::little, Strictness::strict, isCut);
  if (fits(even, odd)) return stringWithUTF16(bytes, std::endian::big, Strictness::strict, isCut);
  // Scripts without many spaces, and those of which each 256th character has a zero byte, too.
  if (isPlain) return {};
  for (const std::endian order : {std::endian::little, std::endian::big})
    if (isTextOfOneScript(stringWithUTF16(sample, order, Strictness::lenient, true).string.view()))
      return stringWithUTF16(bytes, order, Strictness::strict, isCut);
  return {};
}

}  // namespace

DetectedString stringWithDetectedEncoding(std::string_view bytes, Flag isCut) {
  if (bytes.size() > NSNotFound) return {};
  if (DetectedString marked = stringWithByteOrderMark(bytes, isCut); marked.string) return marked;
  if (DetectedString wide = stringWithZeroPattern(bytes, isCut); wide.string) return wide;

  const std::size_t escape = bytes.find('\x1b');
  if (escape != bytes.npos)
    if (DetectedString korean = stringWithKoreanShifts(bytes, isCut); korean.string) return korean;
  const std::string_view unpadded = withoutPadding(bytes);
  if (unpadded.empty() && !bytes.empty()) return {};
  if (isTooMuch(countStrayControls(unpadded), unpadded.size())) return {};
  if (NSString string = NSString::stringWithUTF8String(bytes)) {
    const bool isASCII = string.length() == bytes.size();
    // ISO-2022 hides its characters behind escape sequences.
    if (isASCII && escape != bytes.npos)
      if (DetectedString found = stringWithStatistics(bytes, escape, isCut); found.string) return found;
    return {std::move(string), isASCII ? u"US-ASCII"_ns : u"UTF-8"_ns};
  }
  const UTF8Statistics utf8 = statisticsOfUTF8(bytes);
  if (isMostlyUTF8(utf8.sequences, utf8.invalidBytes) && (utf8.sequences > 0 || isCut))
    return stringWithDamagedUTF8(bytes, utf8, isCut);
  if (DetectedString found = stringWithStatistics(bytes, utf8.firstNonASCII, isCut); found.string) return found;
  return stringWithFallback(bytes, isCut);
}

}  // namespace nimbo
