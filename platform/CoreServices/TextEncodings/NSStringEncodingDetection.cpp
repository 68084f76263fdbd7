// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"

#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

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
DetectedString stringWithUTF16(std::string_view bytes, std::endian order, Strictness strictness) {
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
  return {std::move(units).string(), order == std::endian::little ? u"UTF-16LE"_ns : u"UTF-16BE"_ns, lone > 0};
}

DetectedString stringWithUTF32(std::string_view bytes, std::endian order, Strictness strictness) {
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
          impossible > 0};
}

/// What bytes look like when they are read as UTF-8.
struct UTF8Statistics {
  std::size_t sequences = 0;  // of more than one byte
  std::size_t invalidBytes = 0;
  std::size_t controls = 0;
  std::size_t escapes = 0;
  std::size_t firstNonASCII = std::string_view::npos;
  /// Bytes of a sequence that the end cuts short.
  std::size_t cutBytes = 0;
};

UTF8Statistics statisticsOfUTF8(std::string_view bytes) {
  UTF8Statistics result;
  for (std::size_t i = 0; i < bytes.size();) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (byte < 0x80) {
      result.controls += isStrayControl(byte);
      result.escapes += byte == 0x1b;
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
      ++i;
    }
  }
  return result;
}

/// Decodes with a converter of ICU; nil when ICU lacks the encoding or the bytes are impossible in it. Of cut
/// bytes a character that the end divides is dropped.
NSString stringWithConverter(std::string_view bytes, const char *encodingName, bool isCut) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encodingName, &status),
                                                                     &ucnv_close);
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  if (U_FAILURE(status)) return {};
  constexpr std::uint32_t kBlockLength = 8192;
  NSMutableString units;
  const char *source = bytes.data();
  const char *const end = source + bytes.size();
  do {
    const std::uint32_t length = units.length();
    units.setLength(length + kBlockLength);
    UChar *target = units.mutableCharacters() + length;
    status = U_ZERO_ERROR;
    ucnv_toUnicode(converter.get(), &target, target + kBlockLength, &source, end, nullptr,
                   static_cast<UBool>(!isCut), &status);
    units.setLength(static_cast<std::uint32_t>(target - units.mutableCharacters()));
  } while (status == U_BUFFER_OVERFLOW_ERROR);
  if (U_FAILURE(status)) return {};
  // Tables give characters of the private use area, or second controls, for bytes that mean nothing.
  const auto meansNothing = [](unichar unit) {
    return (unit >= 0xe000 && unit <= 0xf8ff) || (unit >= 0x80 && unit <= 0x9f);
  };
  if (std::any_of(units.view().begin(), units.view().end(), meansNothing)) return {};
  return std::move(units).string();
}

/// What ICU names by the standard, but files hold with the maker's additions.
const char *extendedEncodingName(std::string_view name) {
  constexpr std::pair<std::string_view, const char *> kExtended[] = {
      {"ISO-8859-1", "windows-1252"},
      {"ISO-8859-9", "windows-1254"},
      {"Shift_JIS", "windows-31j"},
      {"EUC-KR", "windows-949"},
  };
  for (const auto &[standard, extended] : kExtended)
    if (name == standard) return extended;
  return nullptr;
}

DetectedString stringWithStatistics(std::string_view bytes, std::size_t firstNonASCII, bool isCut) {
  const std::size_t line = bytes.rfind('\n', firstNonASCII);
  const std::string_view sample = bytes.substr(
      line == bytes.npos || firstNonASCII - line > kSampleLengthInBytes / 2 ? firstNonASCII : line + 1,
      kSampleLengthInBytes);
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
    const char *const extended = extendedEncodingName(view);
    for (const char *candidate : {name, extended})
      if (candidate)
        if (NSString string = stringWithConverter(bytes, candidate, isCut))
          return {std::move(string), NSString::stringWithUTF8String(candidate)};
  }
  return {};
}

/// Windows-1252 when the bytes are possible in it. Else the old encoding, of those that give every byte a
/// meaning, that makes the most small letters.
DetectedString stringWithFallback(std::string_view bytes, bool isCut) {
  DetectedString best;
  std::ptrdiff_t mostLetters = -1;
  for (const char *name : {"windows-1252", "macintosh", "IBM850"}) {
    NSString string = stringWithConverter(bytes, name, isCut);
    const std::u16string_view units = string.view();
    const std::ptrdiff_t letters =
        std::count_if(units.begin(), units.end(), [](unichar unit) { return u_islower(unit); });
    if (!string || letters <= mostLetters) continue;
    best = {std::move(string), NSString::stringWithUTF8String(name)};
    if (name == std::string_view("windows-1252")) return best;
    mostLetters = letters;
  }
  return best;
}

DetectedString stringWithByteOrderMark(std::string_view bytes) {
  using namespace std::literals;
  if (bytes.starts_with("\xef\xbb\xbf"sv)) {
    bytes.remove_prefix(3);
    const UTF8Statistics statistics = statisticsOfUTF8(bytes);
    if (isTooMuch(statistics.controls, bytes.size())) return {};
    bytes.remove_suffix(statistics.cutBytes);
    return {NSString::stringWithLossyUTF8String(bytes), u"UTF-8"_ns, statistics.invalidBytes > 0};
  }
  for (const std::endian order : {std::endian::little, std::endian::big}) {
    const bool little = order == std::endian::little;
    if (bytes.starts_with(little ? "\xff\xfe\0\0"sv : "\0\0\xfe\xff"sv))
      if (DetectedString found = stringWithUTF32(bytes.substr(4), order, Strictness::lenient); found.string)
        return found;
    if (bytes.starts_with(little ? "\xff\xfe"sv : "\xfe\xff"sv))
      return stringWithUTF16(bytes.substr(2), order, Strictness::lenient);
  }
  return {};
}

/// UTF-16 and UTF-32 without a mark.
DetectedString stringWithZeroPattern(std::string_view bytes, bool isCut) {
  const std::string_view sample = bytes.substr(0, kSampleLengthInBytes);
  std::array<std::size_t, 4> zeros{};
  for (std::size_t i = 0; i < sample.size(); ++i) zeros[i % 4] += sample[i] == 0;
  const std::size_t even = zeros[0] + zeros[2];
  const std::size_t odd = zeros[1] + zeros[3];
  if (even + odd == 0) return {};
  if (bytes.size() >= 4 && (isCut || bytes.size() % 4 == 0))
    for (const std::endian order : {std::endian::little, std::endian::big})
      if (DetectedString found = stringWithUTF32(bytes, order, Strictness::strict); found.string) return found;
  const std::size_t count = sample.size() / 2;
  if (count == 0) return {};
  const bool isPlain = std::ranges::all_of(sample, [](char byte) {
    return byte == 0 || ((byte & 0x80) == 0 && !isStrayControl(static_cast<unsigned char>(byte)));
  });
  const std::size_t unitsPerHighZero = isPlain ? kUnitsPerHighZeroInPlainText : kUnitsPerHighZero;
  const auto fits = [=](std::size_t high, std::size_t low) {
    return high * unitsPerHighZero >= count && low * kUnitsPerLowZero <= count;
  };
  if (fits(odd, even)) return stringWithUTF16(bytes, std::endian::little, Strictness::strict);
  if (fits(even, odd)) return stringWithUTF16(bytes, std::endian::big, Strictness::strict);
  return {};
}

}  // namespace

DetectedString stringWithDetectedEncoding(std::string_view bytes, Flag isCut) {
  if (bytes.size() > NSNotFound) return {};
  if (DetectedString marked = stringWithByteOrderMark(bytes); marked.string) return marked;
  if (DetectedString wide = stringWithZeroPattern(bytes, isCut); wide.string) return wide;

  const UTF8Statistics utf8 = statisticsOfUTF8(bytes);
  if (isTooMuch(utf8.controls, bytes.size())) return {};
  if (utf8.firstNonASCII == bytes.npos) {
    // ISO-2022 hides its characters behind escape sequences.
    if (utf8.escapes > 0)
      if (DetectedString found = stringWithStatistics(bytes, bytes.find('\x1b'), isCut); found.string)
        return found;
    return {NSString::stringWithUTF8String(bytes), u"US-ASCII"_ns};
  }
  if (utf8.sequences >= kSequencesPerInvalidByte * utf8.invalidBytes && (utf8.sequences > 0 || isCut)) {
    bytes.remove_suffix(utf8.cutBytes);
    return {NSString::stringWithLossyUTF8String(bytes), u"UTF-8"_ns, utf8.invalidBytes > 0};
  }
  if (DetectedString found = stringWithStatistics(bytes, utf8.firstNonASCII, isCut); found.string) return found;
  return stringWithFallback(bytes, isCut);
}

}  // namespace nimbo
