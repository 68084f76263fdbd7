// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/CharsetNames.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <memory>
#include <span>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/FastComparisons.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kMinimumLength = 3;
constexpr std::u16string_view kPunctuation = u"-_ '\".";

/// A name in lower case without punctuation.
class CleanedName {
 public:
  explicit CleanedName(std::u16string_view name) {
    unichar *units = onStack_.data();
    if (name.size() > onStack_.size()) {
      onHeap_ = std::make_unique_for_overwrite<unichar[]>(name.size());
      units = onHeap_.get();
    }
    const unichar *const fold = initLowerCharsTable();
    std::size_t length = 0;
    for (const unichar unit : name)
      if (kPunctuation.find(unit) == std::u16string_view::npos) units[length++] = fold[unit];
    view_ = {units, length};
  }
  CleanedName(const CleanedName &) = delete;
  CleanedName &operator=(const CleanedName &) = delete;

  std::u16string_view view() const { return view_; }

 private:
  std::array<unichar, 256> onStack_;
  std::unique_ptr<unichar[]> onHeap_;
  std::u16string_view view_;
};

struct NumberRule {
  std::uint32_t number;
  CFStringEncoding encoding;
};

constexpr NumberRule kNumberRules[] = {
    {437, kCFStringEncodingDOSLatinUS},
    {646, kCFStringEncodingEUC_JP},
    {708, kCFStringEncodingISOLatinArabic},
    {737, kCFStringEncodingDOSGreek},
    {775, kCFStringEncodingDOSBalticRim},
    {850, kCFStringEncodingDOSLatin1},
    {851, kCFStringEncodingDOSGreek1},
    {852, kCFStringEncodingDOSLatin2},
    {855, kCFStringEncodingDOSCyrillic},
    {857, kCFStringEncodingDOSTurkish},
    {860, kCFStringEncodingDOSPortuguese},
    {861, kCFStringEncodingDOSIcelandic},
    {862, kCFStringEncodingDOSHebrew},
    {863, kCFStringEncodingDOSCanadianFrench},
    {864, kCFStringEncodingDOSArabic},
    {865, kCFStringEncodingDOSNordic},
    {866, kCFStringEncodingDOSRussian},
    {869, kCFStringEncodingDOSGreek2},
    {874, kCFStringEncodingDOSThai},
    {932, kCFStringEncodingDOSJapanese},
    {936, kCFStringEncodingDOSChineseSimplif},
    {949, kCFStringEncodingDOSKorean},
    {950, kCFStringEncodingDOSChineseTrad},
    {1250, kCFStringEncodingWindowsLatin2},
    {1251, kCFStringEncodingWindowsCyrillic},
    {1252, kCFStringEncodingWindowsLatin1},
    {1253, kCFStringEncodingWindowsGreek},
    {1254, kCFStringEncodingWindowsLatin5},
    {1255, kCFStringEncodingWindowsHebrew},
    {1256, kCFStringEncodingWindowsArabic},
    {1257, kCFStringEncodingWindowsBalticRim},
    {1258, kCFStringEncodingWindowsVietnamese},
    {1361, kCFStringEncodingWindowsKoreanJohab},
    {6461, kCFStringEncodingEUC_JP},
    {85922, kCFStringEncodingISOLatin2},
    {88582, kCFStringEncodingISOLatin2},
    {88592, kCFStringEncodingISOLatin2},
    {88593, kCFStringEncodingISOLatin3},
    {88594, kCFStringEncodingISOLatin4},
    {88595, kCFStringEncodingISOLatinCyrillic},
    {88596, kCFStringEncodingISOLatinArabic},
    {88597, kCFStringEncodingISOLatinGreek},
    {88598, kCFStringEncodingISOLatinHebrew},
    {88599, kCFStringEncodingISOLatin5},
    {89599, kCFStringEncodingISOLatin5},
    {885910, kCFStringEncodingISOLatin6},
    {885911, kCFStringEncodingISOLatinThai},
    {885913, kCFStringEncodingISOLatin7},
    {885914, kCFStringEncodingISOLatin8},
    {885915, kCFStringEncodingISOLatin9},
    {885916, kCFStringEncodingISOLatin10},
};
static_assert(std::ranges::is_sorted(kNumberRules, std::ranges::less_equal(), &NumberRule::number));

/// What pages write for 8859-1.
constexpr std::uint32_t kLatin1Numbers[] = {8591,  8859,  80591, 85591, 88191, 88391,  88581,
                                            88591, 88611, 88691, 88791, 89091, 100591, 810091};

constexpr bool isLatin1Number(std::uint32_t number) {
  return std::ranges::find(kLatin1Numbers, number) != std::end(kLatin1Numbers) ||
         (number >= 885101 && number <= 885391 && number % 10 == 1);
}

constexpr std::uint32_t kISO2022 = 2022;

enum class Match { equals, begins, contains };

struct NameRule {
  std::u16string_view text;
  Match match;
  CFStringEncoding encoding;
};

constexpr NameRule kISO2022Rules[] = {
    {u"iso2022jp1", Match::equals, kCFStringEncodingISO_2022_JP_1},
    {u"iso2022jp2", Match::equals, kCFStringEncodingISO_2022_JP_2},
    {u"iso2022jp3", Match::equals, kCFStringEncodingISO_2022_JP_3},
    {u"", Match::begins, kCFStringEncodingISO_2022_JP},
};

/// The first one that matches counts.
constexpr NameRule kNameRules[] = {
    {u"latin10", Match::contains, kCFStringEncodingISOLatin10},
    {u"latin1", Match::contains, kCFStringEncodingISOLatin1},
    {u"latin2", Match::contains, kCFStringEncodingISOLatin2},
    {u"latin3", Match::contains, kCFStringEncodingISOLatin3},
    {u"latin4", Match::contains, kCFStringEncodingISOLatin4},
    {u"latin5", Match::contains, kCFStringEncodingISOLatin5},
    {u"latin6", Match::contains, kCFStringEncodingISOLatin6},
    {u"latin7", Match::contains, kCFStringEncodingISOLatin7},
    {u"latin8", Match::contains, kCFStringEncodingISOLatin8},
    {u"latin9", Match::contains, kCFStringEncodingISOLatin9},
    {u"visual", Match::equals, kCFStringEncodingISOLatinHebrew},
    {u"xkamcs", Match::equals, kCFStringEncodingKamenicky},
    {u"kamcs", Match::equals, kCFStringEncodingKamenicky},
    {u"kbkam", Match::equals, kCFStringEncodingKamenicky},
    {u"koi8cs2", Match::equals, kCFStringEncodingKOI8CS2},
    {u"csn369103", Match::equals, kCFStringEncodingKOI8CS2},
    {u"usascii", Match::equals, kCFStringEncodingASCII},
    {u"ascii", Match::equals, kCFStringEncodingASCII},
    {u"utf7", Match::contains, kCFStringEncodingASCII},
    {u"gb2312", Match::contains, kCFStringEncodingEUC_CN},
    {u"gbk", Match::begins, kCFStringEncodingGBK_95},
    {u"utf8", Match::contains, kCFStringEncodingUTF8},
    {u"uft8", Match::contains, kCFStringEncodingUTF8},
    {u"utf9", Match::equals, kCFStringEncodingUTF8},
    {u"unicode", Match::equals, kCFStringEncodingUTF8},
    {u"utf16", Match::contains, kCFStringEncodingUnicode},
    {u"shiftj", Match::contains, kCFStringEncodingShiftJIS},
    {u"sjis", Match::contains, kCFStringEncodingShiftJIS},
    {u"koi8", Match::begins, kCFStringEncodingKOI8_R},
    {u"big5", Match::contains, kCFStringEncodingBig5},
    {u"euckr", Match::contains, kCFStringEncodingEUC_KR},
    {u"eucj", Match::contains, kCFStringEncodingEUC_JP},
    {u"euccn", Match::contains, kCFStringEncodingEUC_CN},
    {u"euctw", Match::contains, kCFStringEncodingEUC_TW},
    {u"ksc56011987", Match::equals, kCFStringEncodingKSC_5601_87},
    {u"ksc560187", Match::equals, kCFStringEncodingKSC_5601_87},
    {u"ksc560192", Match::begins, kCFStringEncodingKSC_5601_92_Johab},
    // Pages that give their language for the character set.
    {u"en", Match::equals, kCFStringEncodingUTF8},
    {u"enus", Match::equals, kCFStringEncodingUTF8},
    {u"engb", Match::equals, kCFStringEncodingUTF8},
    {u"none", Match::equals, kCFStringEncodingASCII},
};

constexpr NameRule kMacRules[] = {
    {u"", Match::equals, kCFStringEncodingMacRoman},
    {u"roman", Match::equals, kCFStringEncodingMacRoman},
    {u"osroman", Match::equals, kCFStringEncodingMacRoman},
    {u"intosh", Match::equals, kCFStringEncodingMacRoman},
    {u"romanlatin1", Match::equals, kCFStringEncodingMacRomanLatin1},
    {u"cyrillic", Match::equals, kCFStringEncodingMacCyrillic},
    {u"ce", Match::equals, kCFStringEncodingMacCentralEurRoman},
    {u"japanese", Match::equals, kCFStringEncodingMacJapanese},
    {u"chinesetrad", Match::contains, kCFStringEncodingMacChineseTrad},
    {u"korean", Match::equals, kCFStringEncodingMacKorean},
    {u"arabic", Match::equals, kCFStringEncodingMacArabic},
    {u"hebrew", Match::equals, kCFStringEncodingMacHebrew},
    {u"greek", Match::equals, kCFStringEncodingMacGreek},
    {u"devanagari", Match::equals, kCFStringEncodingMacDevanagari},
    {u"gurmukhi", Match::equals, kCFStringEncodingMacGurmukhi},
    {u"gujarati", Match::equals, kCFStringEncodingMacGujarati},
    {u"oriya", Match::equals, kCFStringEncodingMacOriya},
    {u"bengali", Match::equals, kCFStringEncodingMacBengali},
    {u"tamil", Match::equals, kCFStringEncodingMacTamil},
    {u"telugu", Match::equals, kCFStringEncodingMacTelugu},
    {u"kannada", Match::equals, kCFStringEncodingMacKannada},
    {u"malayalam", Match::equals, kCFStringEncodingMacMalayalam},
    {u"sinhalese", Match::equals, kCFStringEncodingMacSinhalese},
    {u"burmese", Match::equals, kCFStringEncodingMacBurmese},
    {u"khmer", Match::equals, kCFStringEncodingMacKhmer},
    {u"thai", Match::equals, kCFStringEncodingMacThai},
    {u"laotian", Match::equals, kCFStringEncodingMacLaotian},
    {u"georgian", Match::equals, kCFStringEncodingMacGeorgian},
    {u"armenian", Match::equals, kCFStringEncodingMacArmenian},
    {u"chinesesimp", Match::contains, kCFStringEncodingMacChineseSimp},
    {u"tibetan", Match::equals, kCFStringEncodingMacTibetan},
    {u"mongolian", Match::equals, kCFStringEncodingMacMongolian},
    {u"ethiopic", Match::equals, kCFStringEncodingMacEthiopic},
    {u"centraleur", Match::contains, kCFStringEncodingMacCentralEurRoman},
    {u"vietnamese", Match::equals, kCFStringEncodingMacVietnamese},
    {u"extarabic", Match::equals, kCFStringEncodingMacExtArabic},
    {u"turkish", Match::equals, kCFStringEncodingMacTurkish},
    {u"croatian", Match::equals, kCFStringEncodingMacCroatian},
    {u"icelandic", Match::equals, kCFStringEncodingMacIcelandic},
    {u"romanian", Match::equals, kCFStringEncodingMacRomanian},
    {u"celtic", Match::equals, kCFStringEncodingMacCeltic},
    {u"gaelic", Match::equals, kCFStringEncodingMacGaelic},
    {u"farsi", Match::equals, kCFStringEncodingMacFarsi},
    {u"ukrainian", Match::equals, kCFStringEncodingMacUkrainian},
    {u"inuit", Match::equals, kCFStringEncodingMacInuit},
};

CFStringEncoding encodingByRules(std::span<const NameRule> rules, std::u16string_view name) {
  for (const NameRule &rule : rules) {
    const bool matches = rule.match == Match::equals   ? name == rule.text
                         : rule.match == Match::begins ? name.starts_with(rule.text)
                                                       : name.find(rule.text) != std::u16string_view::npos;
    if (matches) return rule.encoding;
  }
  return kCFStringEncodingInvalidId;
}

/// The number whose digits come first in the name, 0 when there are none; the largest one when it is larger.
std::uint32_t firstNumber(std::u16string_view name) {
  constexpr std::uint32_t kLargest = std::numeric_limits<std::int32_t>::max();
  std::uint64_t number = 0;
  for (auto at = std::ranges::find_if(name, isASCIIDigit<unichar>); at != name.end() && isASCIIDigit(*at); ++at)
    number = std::min<std::uint64_t>(10 * number + digitValue(*at), kLargest);
  return static_cast<std::uint32_t>(number);
}

CFStringEncoding encodingByNumber(std::u16string_view name) {
  const std::uint32_t number = firstNumber(name);
  if (number == kISO2022) return encodingByRules(kISO2022Rules, name);
  if (isLatin1Number(number)) return kCFStringEncodingISOLatin1;
  const auto *const rule = std::ranges::lower_bound(kNumberRules, number, {}, &NumberRule::number);
  const bool isKnown = rule != std::end(kNumberRules) && rule->number == number;
  return isKnown ? rule->encoding : kCFStringEncodingInvalidId;
}

CFStringEncoding encodingByWords(std::u16string_view name) {
  constexpr std::u16string_view kMac = u"mac";
  constexpr std::u16string_view kExtensionMac = u"xmac";
  if (name.starts_with(u"windows")) return kCFStringEncodingWindowsLatin1;
  if (name.starts_with(kMac)) return macEncoding(name.substr(kMac.size()));
  if (name.starts_with(kExtensionMac)) return macEncoding(name.substr(kExtensionMac.size()));
  return encodingByRules(kNameRules, name);
}

/// Whether the name is not worth a line in the log.
bool isNoName(const NSString &name) {
  constexpr std::u16string_view kSilentUnits = u"/0<>";
  if (name.length() < 2)
    return !name.length() || kSilentUnits.find(name.view()[0]) != std::u16string_view::npos;
  return fastCaseInsensitiveCompareUnicharsWithChars(name.characters(), name.length(), "auto", 4) == 0;
}

}  // namespace

CFStringEncoding charset2CFStringEncoding(const NSString &name) {
  if (name.length() < kMinimumLength) return kCFStringEncodingInvalidId;
  const CleanedName cleaned(name.view());
  const CFStringEncoding encoding = encodingByNumber(cleaned.view());
  return encoding != kCFStringEncodingInvalidId ? encoding : encodingByWords(cleaned.view());
}

CFStringEncoding macEncoding(std::u16string_view script) {
  return encodingByRules(kMacRules, script);
}

CFStringEncoding encodingOfCharset(const NSString &name) {
  const CFStringEncoding loose = charset2CFStringEncoding(name);
  const CFStringEncoding known = CFStringConvertIANACharSetNameToEncoding(name);
  if (loose == kCFStringEncodingInvalidId) return known;
  const bool isRegistered = known != kCFStringEncodingInvalidId && known != kCFStringEncodingUTF7 &&
                            CleanedName(CFStringConvertEncodingToIANACharSetName(known).view()).view() ==
                                CleanedName(name.view()).view();
  return isRegistered ? known : loose;
}

NSStringEncoding charset2NSStringEncoding(const NSString &name) {
  const CFStringEncoding encoding = charset2CFStringEncoding(name);
  if (encoding == kCFStringEncodingKamenicky) return NSKamenickyStringEncoding;
  if (encoding == kCFStringEncodingKOI8CS2) return NSKOI8CS2StringEncoding;
  if (encoding == kCFStringEncodingShiftJIS) return NSShiftJISStringEncoding;
  if (encoding != kCFStringEncodingInvalidId && CFStringIsEncodingAvailable(encoding))
    return CFStringConvertEncodingToNSStringEncoding(encoding);
  if (!isNoName(name)) NSLog(u"Unknown/Unsupported encoding: %@", name);
  return kCFStringEncodingInvalidId;
}

}  // namespace nimbo
