// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/MarkupDecoding.hpp"

#include <algorithm>
#include <initializer_list>
#include <span>
#include <string_view>
#include <utility>

#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Characters/UnicodeConverters.hpp"
#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kSmallestBuffer = 32;
constexpr std::uint32_t kMostUnitsPerByteOfTable = 2;
constexpr unichar kReplacement = 0xfffd;
constexpr std::string_view kUTF8Mark = "\xef\xbb\xbf";
constexpr NSStringEncoding kNoEncoding = kCFStringEncodingInvalidId;
/// -2, which no encoding is, either.
constexpr NSStringEncoding kNoOtherEncoding = kNoEncoding - 1;
constexpr NSStringEncoding kExtended = 0x80000000;
constexpr NSStringEncoding kBig5 = kExtended | kCFStringEncodingBig5;
constexpr NSStringEncoding kBig5HKSCS = kExtended | kCFStringEncodingBig5_HKSCS_1999;
constexpr NSStringEncoding kEUCCN = kExtended | kCFStringEncodingEUC_CN;

constexpr CFStringEncoding kJapaneseEncodings[] = {
    kCFStringEncodingShiftJIS,      kCFStringEncodingShiftJIS_X0213, kCFStringEncodingMacJapanese,
    kCFStringEncodingDOSJapanese,   kCFStringEncodingJIS_X0201_76,   kCFStringEncodingJIS_X0208_83,
    kCFStringEncodingJIS_X0208_90,  kCFStringEncodingJIS_X0212_90,   kCFStringEncodingJIS_C6226_78,
    kCFStringEncodingEUC_JP,        kCFStringEncodingISO_2022_JP,    kCFStringEncodingISO_2022_JP_1,
    kCFStringEncodingISO_2022_JP_2, kCFStringEncodingISO_2022_JP_3,
};
constexpr CFStringEncoding kChineseEncodings[] = {
    kCFStringEncodingEUC_TW, kCFStringEncodingGB_2312_80, kCFStringEncodingHZ_GB_2312,
    kCFStringEncodingGBK_95, kCFStringEncodingBig5,       kCFStringEncodingBig5_HKSCS_1999,
    kCFStringEncodingBig5_E,
};

bool isEncoding(NSStringEncoding encoding) {
  return encoding != 0 && encoding != kNoEncoding && encoding != kNoOtherEncoding;
}

std::uint32_t replacementsIn(const NSString &string) {
  return countUnichar(string.characters(), string.length(), kReplacement);
}

/// Nil when more of the characters beyond ASCII are damaged than whole.
NSString stringWithDamagedUTF8(std::string_view bytes) {
  NSString string = NSString::stringWithLossyUTF8String(bytes);
  const std::u16string_view units = string.view();
  const auto foreign =
      std::ranges::count_if(units, [](unichar unit) { return unit >= 0x80 && !isLowSurrogate(unit); });
  return 2 * std::uint64_t{replacementsIn(string)} <= static_cast<std::uint64_t>(foreign) ? string : NSString();
}

/// How many units the text of so many bytes may have. The project's own tables have codes that are several
/// characters, as "ch" is one byte of KOI8-CS2.
std::uint32_t largestLength(std::size_t byteCount, CFStringEncoding encoding) {
  const bool isTable = converterNameOfEncoding(encoding).starts_with("table:");
  const std::uint64_t length = std::uint64_t{byteCount} * (isTable ? kMostUnitsPerByteOfTable : 1);
  return static_cast<std::uint32_t>(std::clamp<std::uint64_t>(length, kSmallestBuffer, NSNotFound));
}

NSString decode(std::string_view bytes, CFStringEncoding encoding) {
  NSMutableString units;
  units.setLength(largestLength(bytes.size(), encoding));
  std::uint32_t count = 0;
  convertEncodingToUnicode(bytes.data(), static_cast<std::uint32_t>(bytes.size()), encoding,
                           units.mutableCharacters(), units.length(), &count);
  if (count == 0) return encoding == kCFStringEncodingUTF8 ? stringWithDamagedUTF8(bytes) : NSString();
  units.setLength(count);
  return std::move(units).string();
}

DecodedMarkup decodePlainly(std::string_view bytes, NSStringEncoding encoding) {
  NSString string = decode(bytes, CFStringConvertNSStringEncodingToEncoding(encoding));
  if (!string) return {};
  return {std::move(string), encoding};
}

/// Nil when there is no mark, or the bytes behind it contradict it. Half a unit at the end is dropped.
DecodedMarkup decodeByMark(std::string_view bytes) {
  if (bytes.starts_with(kUTF8Mark)) {
    bytes.remove_prefix(kUTF8Mark.size());
    return bytes.empty() ? DecodedMarkup{NSString::string(), NSUTF8StringEncoding}
                         : decodePlainly(bytes, NSUTF8StringEncoding);
  }
  struct Form {
    CFStringEncoding encoding;
    std::size_t unitLength;
  };
  // The mark of UTF-16 is the beginning of that of UTF-32.
  for (const auto &[encoding, unitLength] :
       {Form{kCFStringEncodingUTF32, 4}, Form{kCFStringEncodingUnicode, 2}}) {
    std::uint32_t markLength = 0;
    encodingWithByteOrderMark(encoding, bytes, &markLength);
    if (markLength == 0) continue;
    const NSStringEncoding number = CFStringConvertEncodingToNSStringEncoding(encoding);
    const std::string_view whole = bytes.substr(0, bytes.size() - bytes.size() % unitLength);
    if (whole.size() == markLength) return {NSString::string(), number};
    if (DecodedMarkup decoded = decodePlainly(whole, number); decoded.string) return decoded;
  }
  return {};
}

/// Whether ASCII is not one byte a character.
bool hasWideUnits(NSStringEncoding encoding) {
  switch (encoding) {
    case NSUnicodeStringEncoding:
    case NSUTF16BigEndianStringEncoding:
    case NSUTF16LittleEndianStringEncoding:
    case NSUTF32StringEncoding:
    case NSUTF32BigEndianStringEncoding:
    case NSUTF32LittleEndianStringEncoding:
      return true;
    default:
      return false;
  }
}

/// In a form of Unicode a mark says which form it is.
DecodedMarkup decodeAs(std::string_view bytes, NSStringEncoding encoding) {
  const bool obeysMark = encoding == NSUTF8StringEncoding || hasWideUnits(encoding);
  DecodedMarkup marked = obeysMark ? decodeByMark(bytes) : DecodedMarkup{};
  return marked.string ? marked : decodePlainly(bytes, encoding);
}

/// What the text declares, or the bytes when they could not be read.
NSStringEncoding declaredEncoding(std::string_view bytes, const NSString &text) {
  return markupEncoding(text ? text : decode(bytes, kCFStringEncodingISOLatin1));
}

/// ASCII is not worth a second reading. Nor is an encoding in which the declaration could not have been read.
bool isWorthReading(NSStringEncoding declared, const DecodedMarkup &first) {
  return isEncoding(declared) && declared != NSASCIIStringEncoding &&
         hasWideUnits(declared) == hasWideUnits(first.encoding);
}

struct Weighing {
  bool isSupplied;
  NSStringEncoding supplied;
  NSStringEncoding declared;
};

/// Whether the reading in the supplied encoding is better than the one in the declared encoding.
bool prefersFirst(const NSString &first, const NSString &second, const Weighing &weighing) {
  if (!first || !weighing.isSupplied) return false;
  const std::uint32_t firstReplacements = replacementsIn(first);
  const std::uint32_t secondReplacements = replacementsIn(second);
  if (secondReplacements > firstReplacements) return true;
  const bool maySplitUTF8 =
      weighing.supplied == NSUTF8StringEncoding &&
      (weighing.declared == NSISOLatin1StringEncoding || weighing.declared == NSWindowsCP1251StringEncoding);
  return maySplitUTF8 && firstReplacements == 0 && secondReplacements == 0 && second.length() > first.length();
}

std::span<const CFStringEncoding> relativesOf(NSStringEncoding encoding) {
  if (encoding == NSShiftJISStringEncoding) return kJapaneseEncodings;
  if (encoding == kEUCCN) return kChineseEncodings;
  return {};
}

}  // namespace

NSStringEncoding likelyEncoding(const NSData &data) {
  const DetectedString detected = stringWithDetectedEncoding(data.view());
  if (!detected.encodingName) return NSUTF8StringEncoding;
  return CFStringConvertEncodingToNSStringEncoding(
      CFStringConvertIANACharSetNameToEncoding(detected.encodingName));
}

DecodedMarkup decodeMarkup(const NSData &data, NSStringEncoding supplied, NSStringEncoding defaultEncoding) {
  const std::string_view bytes = data.view();
  if (bytes.empty()) return {};
  const bool isSupplied = isEncoding(supplied);
  NSStringEncoding working = isSupplied ? supplied : defaultEncoding;
  DecodedMarkup first = decodeAs(bytes, working);
  const NSStringEncoding declared = declaredEncoding(bytes, first.string);
  if (isWorthReading(declared, first) && (declared != working || !first.string)) {
    const Weighing weighing{isSupplied, supplied, declared};
    if (declared == NSWindowsCP1251StringEncoding && !(isSupplied && supplied == NSUTF8StringEncoding)) {
      first = {};
      working = NSWindowsCP1250StringEncoding;
    } else if (declared == kBig5) {
      first = {};
      working = kBig5HKSCS;
    }
    const DecodedMarkup second = decodeAs(bytes, declared);
    if (second.string) return prefersFirst(first.string, second.string, weighing) ? first : second;
    for (const CFStringEncoding relative : relativesOf(declared)) {
      DecodedMarkup decoded = decodeAs(bytes, CFStringConvertEncodingToNSStringEncoding(relative));
      if (decoded.string && replacementsIn(decoded.string) == 0) return decoded;
    }
  }
  if (first.string) return first;

  if (working != declared)
    if (NSString string = initWithData(data, working)) return {std::move(string), working};
  if (defaultEncoding != working && defaultEncoding != declared)
    if (NSString string = initWithData(data, defaultEncoding)) return {std::move(string), defaultEncoding};
  return {};
}

}  // namespace nimbo
