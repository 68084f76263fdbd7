// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/MarkupDecoding.hpp"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Characters/UnicodeConverters.hpp"
#include "Classes/Encodings/CharsetNames.hpp"
#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "platform/CoreServices/TextEncodings/ExtendedEncoding.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/CoreServices/TextEncodings/TECConverter.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"
#include "platform/Foundation/Vectors/UnicharRanges.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kSmallestBuffer = 32;
constexpr std::uint32_t kMostUnitsPerByteOfTable = 2;
constexpr unichar kReplacement = 0xfffd;
/// Damaged text has at least so many whole characters beyond ASCII for each damage.
constexpr std::size_t kCharactersPerFlaw = 10;
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

constexpr detail::UnicharRange kPrivateUse{0xe000, 0xf8ff};

bool hasPrivateUse(const NSString &string) {
  return detail::findUnicharInRanges(string.characters(), string.length(), {&kPrivateUse, 1}) < string.length();
}

/// How many units mean nothing or are upper controls.
std::size_t countFlaws(const NSString &string) {
  constexpr detail::UnicharRange kFlaws[] = {{0x80, 0x9f}, kPrivateUse, {kReplacement, kReplacement}};
  std::u16string_view rest = string.view();
  std::size_t count = 0;
  for (;; ++count) {
    const std::size_t next = detail::findUnicharInRanges(rest.data(), rest.size(), kFlaws);
    if (next == rest.size()) return count;
    rest.remove_prefix(next + 1);
  }
}

/// Whether characters of the encoding are of two bytes or more, so that few bytes of other texts are possible.
bool hasSequences(CFStringEncoding encoding) {
  constexpr std::pair<CFStringEncoding, CFStringEncoding> kRanges[] = {
      {kCFStringEncodingMacJapanese, kCFStringEncodingMacKorean},
      {kCFStringEncodingMacChineseSimp, kCFStringEncodingMacChineseSimp},
      {kCFStringEncodingDOSJapanese, kCFStringEncodingDOSChineseTrad},
      {kCFStringEncodingWindowsKoreanJohab, kCFStringEncodingWindowsKoreanJohab},
      {kCFStringEncodingJIS_X0208_83, kCFStringEncodingShiftJIS},
      {kCFStringEncodingBig5, kCFStringEncodingBig5},
      {kCFStringEncodingHZ_GB_2312, kCFStringEncodingBig5_HKSCS_1999},
      {kCFStringEncodingUTF8, kCFStringEncodingUTF8},
  };
  return std::ranges::any_of(
      kRanges, [=](const auto &range) { return encoding >= range.first && encoding <= range.second; });
}

/// Whether codes without a meaning were read. Tables of many characters give such codes to private use.
bool isDamaged(const DecodedMarkup &decoded) {
  return replacementsIn(decoded.string) > 0 ||
         (hasSequences(CFStringConvertNSStringEncodingToEncoding(decoded.encoding)) &&
          hasPrivateUse(decoded.string));
}

DecodedMarkup decodePlainly(std::string_view bytes, NSStringEncoding encoding) {
  NSString string = decode(bytes, CFStringConvertNSStringEncodingToEncoding(encoding));
  if (!string) return {};
  return {std::move(string), encoding};
}

/// Whether the encoding is one of the two for Czech and Slovak, in which a text is read as a whole or, unless
/// its encoding is to be detected, not at all.
bool isReadAsAWhole(NSStringEncoding encoding) {
  return encoding == NSKamenickyStringEncoding || encoding == NSKOI8CS2StringEncoding;
}

/// Whether all is written in ASCII, with sequences that say what its characters stand for.
bool hasShiftStates(NSStringEncoding encoding) {
  const CFStringEncoding number = CFStringConvertNSStringEncodingToEncoding(encoding);
  return (number >= kCFStringEncodingISO_2022_JP && number <= kCFStringEncodingISO_2022_KR) ||
         number == kCFStringEncodingHZ_GB_2312;
}

/// The text with U+FFFD for each byte that is impossible in the encoding, which has no states; nil when it
/// cannot be read at all.
NSString stringWithReplacements(std::string_view bytes, CFStringEncoding encoding) {
  std::unique_ptr<TECConverter> converter;
  if (TECCreateConverter(converter, encoding, kCFStringEncodingUnicode) != noErr) return NSString();
  NSMutableString units;
  units.setLength(largestLength(bytes.size(), encoding));
  unichar *out = units.mutableCharacters();
  unichar *const end = out + units.length();
  for (;;) {
    const TECResult result =
        converter->convertText({reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size()},
                               {reinterpret_cast<std::uint8_t *>(out), reinterpret_cast<std::uint8_t *>(end)});
    out += result.writtenBytes / sizeof(unichar);
    if (result.status == noErr || result.status == kTECUsedFallbacksStatus) break;
    if (result.status == kTECOutputBufferFullStatus || out == end) return NSString();
    *out++ = kReplacement;
    if (result.status == kTECPartialCharErr || result.consumedBytes >= bytes.size()) break;
    bytes.remove_prefix(result.consumedBytes + 1);
    converter->clearContextInfo();
  }
  units.setLength(static_cast<std::uint32_t>(units.length() - (end - out)));
  return std::move(units).string();
}

/// The text in an encoding of several bytes a character, or its extended form, if few of them are damaged.
DecodedMarkup decodeDamaged(std::string_view bytes, NSStringEncoding encoding) {
  if (const NSStringEncoding extended = extendedEncoding(encoding); isEncoding(extended)) encoding = extended;
  const CFStringEncoding number = CFStringConvertNSStringEncodingToEncoding(encoding);
  if (!hasSequences(number) || hasShiftStates(encoding)) return {};
  NSString string = stringWithReplacements(bytes, number);
  const auto foreign = std::ranges::count_if(string.view(), [](unichar unit) { return unit >= 0x80; });
  if ((kCharactersPerFlaw + 1) * countFlaws(string) > static_cast<std::size_t>(foreign)) return {};
  return {std::move(string), encoding};
}

/// Whether the text was read in an encoding that detection knows by letters, and has mostly such.
bool isKnownByLetters(const DecodedMarkup &detected) {
  constexpr CFStringEncoding kEncodings[] = {
      kCFStringEncodingDOSThai,     kCFStringEncodingWindowsCyrillic,  kCFStringEncodingKOI8_R,
      kCFStringEncodingKOI8_U,      kCFStringEncodingISOLatinCyrillic, kCFStringEncodingDOSRussian,
      kCFStringEncodingMacCyrillic, kCFStringEncodingDOSCyrillic,
  };
  constexpr std::size_t kCharactersPerSign = 5;
  if (std::ranges::find(kEncodings, CFStringConvertNSStringEncodingToEncoding(detected.encoding)) ==
      std::end(kEncodings))
    return false;
  std::size_t foreign = 0, signs = 0;
  for (const unichar unit : detected.string.view()) {
    foreign += unit >= 0x80;
    signs += unit >= 0x80 && !alphaNumCharacterSetRep()->contains(unit);
  }
  return kCharactersPerSign * signs <= foreign;
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

bool isUnicode(NSStringEncoding encoding) {
  return encoding == NSUTF8StringEncoding || hasWideUnits(encoding);
}

/// In a form of Unicode a mark says which form it is.
DecodedMarkup decodeAs(std::string_view bytes, NSStringEncoding encoding) {
  DecodedMarkup marked = isUnicode(encoding) ? decodeByMark(bytes) : DecodedMarkup{};
  return marked.string ? marked : decodePlainly(bytes, encoding);
}

/// The same text in the extended form of its encoding, if fewer codes are without a meaning there.
DecodedMarkup decodeExtended(std::string_view bytes, DecodedMarkup decoded) {
  const NSStringEncoding extension = extendedEncoding(decoded.encoding);
  if (!decoded.string || !isEncoding(extension)) return decoded;
  const std::size_t count = countFlaws(decoded.string);
  if (count == 0) return decoded;
  DecodedMarkup extended = decodePlainly(bytes, extension);
  return extended.string && countFlaws(extended.string) < count ? extended : decoded;
}

/// ASCII is not worth a second reading. Nor is an encoding in which the declaration could not have been read,
/// and one that was found in a form of UTF-16 or UTF-32 says nothing that is not known.
bool isWorthReading(NSStringEncoding declared, const DecodedMarkup &first) {
  return isEncoding(declared) && declared != NSASCIIStringEncoding && !hasWideUnits(declared) &&
         !hasWideUnits(first.encoding);
}

/// Whether the text cannot well be in another encoding.
bool isSound(const DecodedMarkup &decoded) {
  return decoded.string && !isDamaged(decoded) &&
         (isUnicode(decoded.encoding) ||
          hasSequences(CFStringConvertNSStringEncodingToEncoding(decoded.encoding)));
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

/// The first relative of the encoding in which all codes have a meaning.
DecodedMarkup decodeAsRelative(std::string_view bytes, NSStringEncoding encoding) {
  for (const CFStringEncoding relative : relativesOf(encoding)) {
    DecodedMarkup decoded = decodeAs(bytes, CFStringConvertEncodingToNSStringEncoding(relative));
    if (decoded.string && !isDamaged(decoded)) return decoded;
  }
  return {};
}

/// Whether a text in the encoding could declare it in ASCII.
bool hasASCII(NSStringEncoding encoding) {
  constexpr std::string_view kDeclaration = "<?meta charset=\"a-0\">";
  const NSString read = initWithData(NSData::dataWithBytes(kDeclaration.data(), kDeclaration.size()), encoding);
  return read && std::ranges::equal(read.view(), kDeclaration);
}

/// Valid UTF-8 that cannot be anything else: UTF-16 has zero bytes, and ISO 2022 escape sequences.
DecodedMarkup decodePlainUTF8(std::string_view bytes) {
  if (bytes.find('\0') != bytes.npos || bytes.find('\x1b') != bytes.npos) return {};
  NSString string = NSString::stringWithUTF8String(bytes);
  if (!string) return {};
  const bool isASCII = string.length() == bytes.size();
  return {std::move(string), isASCII ? NSASCIIStringEncoding : NSUTF8StringEncoding};
}

/// Weighs the encodings of one page.
class MarkupDecoder {
 public:
  MarkupDecoder(const NSData &data, NSStringEncoding supplied, std::optional<NSStringEncoding> defaultEncoding)
      : data_(data), supplied_(supplied), default_(defaultEncoding), detects_(!defaultEncoding) {}

  DecodedMarkup best() { return decodeExtended(bytes_, bestAsNamed()); }

 private:
  DecodedMarkup bestAsNamed();
  DecodedMarkup bestAsDeclared() const;
  DecodedMarkup weigh(DecodedMarkup first, NSStringEncoding working);
  DecodedMarkup lastResort(NSStringEncoding working, NSStringEncoding declared);

  bool isSupplied() const { return isEncoding(supplied_); }
  NSStringEncoding defaultEncoding() {
    if (!default_) default_ = likelyEncoding(data_);
    return *default_;
  }

  /// What the text declares, or the bytes when they could not be read.
  NSStringEncoding declaredEncoding(const NSString &text) const {
    const NSString &read = text ? text : decode(bytes_, kCFStringEncodingISOLatin1);
    if (!detects_) return markupEncoding(read);
    const NSString charset = markupCharset(read);
    const NSStringEncoding encoding = CFStringConvertEncodingToNSStringEncoding(encodingOfCharset(charset));
    return isEncoding(encoding) && hasASCII(encoding) ? encoding : NSEncodingFromName(charset);
  }

  const NSData &data_;
  const std::string_view bytes_ = data_.view();
  const NSStringEncoding supplied_;
  std::optional<NSStringEncoding> default_;
  const bool detects_;
};

/// The text if it is as it declares, which needs no statistics; else nil. Escape sequences may be those of an
/// encoding that is not declared.
DecodedMarkup MarkupDecoder::bestAsDeclared() const {
  const NSStringEncoding declared = declaredEncoding(NSString());
  if (!isWorthReading(declared, {})) return {};
  if (!hasShiftStates(declared) && bytes_.find('\x1b') != bytes_.npos) return {};
  DecodedMarkup decoded = decodeExtended(bytes_, decodeAs(bytes_, declared));
  return decoded.string && !isDamaged(decoded) ? decoded : DecodedMarkup{};
}

DecodedMarkup MarkupDecoder::bestAsNamed() {
  if (detects_ && !isSupplied()) {
    if (DecodedMarkup decoded = decodeByMark(bytes_); decoded.string) return decoded;
    if (DecodedMarkup plain = decodePlainUTF8(bytes_); plain.string)
      return weigh(std::move(plain), NSUTF8StringEncoding);
    if (DecodedMarkup decoded = bestAsDeclared(); decoded.string) return decoded;
  }
  const NSStringEncoding working = isSupplied() ? supplied_ : defaultEncoding();
  if (isUnicode(working))
    if (DecodedMarkup marked = decodeByMark(bytes_); marked.string) return marked;
  DecodedMarkup first = decodePlainly(bytes_, working);
  if (!first.string && detects_ && isSupplied()) first = decodeDamaged(bytes_, working);
  return weigh(std::move(first), working);
}

DecodedMarkup MarkupDecoder::weigh(DecodedMarkup first, NSStringEncoding working) {
  const NSStringEncoding declared = declaredEncoding(first.string);
  if (declared == working && first.string) return {std::move(first.string), working};
  if (!isWorthReading(declared, first)) return first.string ? first : lastResort(working, declared);
  DecodedMarkup detected = detects_ && !isSupplied() ? first : DecodedMarkup{};
  // To an encoding without states its escape sequences would be text.
  if (hasShiftStates(detected.encoding) && !hasShiftStates(declared)) return detected;
  if (declared == NSWindowsCP1251StringEncoding && !(isSupplied() && supplied_ == NSUTF8StringEncoding)) {
    first = {};
    working = NSWindowsCP1250StringEncoding;
  } else if (declared == kBig5) {
    first = {};
    working = kBig5HKSCS;
  }
  DecodedMarkup second = decodeExtended(bytes_, decodeAs(bytes_, declared));
  if (second.string && prefersFirst(first.string, second.string, {isSupplied(), supplied_, declared}))
    return first;
  if (second.string && !isDamaged(second)) return second;
  if (isSound(detected)) return detected;
  if (DecodedMarkup relative = decodeAsRelative(bytes_, declared); relative.string) return relative;
  if (second.string && (detects_ || !isReadAsAWhole(declared))) return second;
  if (detects_ && !isKnownByLetters(detected))
    if (DecodedMarkup damaged = decodeDamaged(bytes_, declared); damaged.string) return damaged;
  return first.string ? first : lastResort(working, declared);
}

DecodedMarkup MarkupDecoder::lastResort(NSStringEncoding working, NSStringEncoding declared) {
  if (working != declared)
    if (NSString string = initWithData(data_, working)) return {std::move(string), working};
  const NSStringEncoding last = defaultEncoding();
  if (last != working && last != declared)
    if (NSString string = initWithData(data_, last)) return {std::move(string), last};
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
  return data.length() == 0 ? DecodedMarkup{} : MarkupDecoder(data, supplied, defaultEncoding).best();
}

DecodedMarkup decodeMarkup(const NSData &data, NSStringEncoding supplied) {
  return data.length() == 0 ? DecodedMarkup{} : MarkupDecoder(data, supplied, std::nullopt).best();
}

}  // namespace nimbo
