// SPDX-License-Identifier: Apache-2.0
#include "Classes/CharsetNames.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <memory>
#include <span>

#include "Classes/CharacterTables.hpp"
#include "Classes/FastComparisons.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSMutableString.hpp"

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
static_assert(std::ranges::is_sorted(kNumberRules, {}, &NumberRule::number));

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
  Match match;
  std::u16string_view text;
  CFStringEncoding encoding;
};

constexpr NameRule kISO2022Rules[] = {
    {Match::equals, u"iso2022jp1", kCFStringEncodingISO_2022_JP_1},
    {Match::equals, u"iso2022jp2", kCFStringEncodingISO_2022_JP_2},
    {Match::equals, u"iso2022jp3", kCFStringEncodingISO_2022_JP_3},
    {Match::begins, u"", kCFStringEncodingISO_2022_JP},
};

/// The first one that matches counts.
constexpr NameRule kNameRules[] = {
    {Match::contains, u"latin10", kCFStringEncodingISOLatin10},
    {Match::contains, u"latin1", kCFStringEncodingISOLatin1},
    {Match::contains, u"latin2", kCFStringEncodingISOLatin2},
    {Match::contains, u"latin3", kCFStringEncodingISOLatin3},
    {Match::contains, u"latin4", kCFStringEncodingISOLatin4},
    {Match::contains, u"latin5", kCFStringEncodingISOLatin5},
    {Match::contains, u"latin6", kCFStringEncodingISOLatin6},
    {Match::contains, u"latin7", kCFStringEncodingISOLatin7},
    {Match::contains, u"latin8", kCFStringEncodingISOLatin8},
    {Match::contains, u"latin9", kCFStringEncodingISOLatin9},
    {Match::equals, u"visual", kCFStringEncodingISOLatinHebrew},
    {Match::equals, u"xkamcs", kCFStringEncodingKamenicky},
    {Match::equals, u"kamcs", kCFStringEncodingKamenicky},
    {Match::equals, u"kbkam", kCFStringEncodingKamenicky},
    {Match::equals, u"koi8cs2", kCFStringEncodingKOI8CS2},
    {Match::equals, u"csn369103", kCFStringEncodingKOI8CS2},
    {Match::equals, u"usascii", kCFStringEncodingASCII},
    {Match::equals, u"ascii", kCFStringEncodingASCII},
    {Match::contains, u"utf7", kCFStringEncodingASCII},
    {Match::contains, u"gb2312", kCFStringEncodingEUC_CN},
    {Match::begins, u"gbk", kCFStringEncodingGBK_95},
    {Match::contains, u"utf8", kCFStringEncodingUTF8},
    {Match::contains, u"uft8", kCFStringEncodingUTF8},
    {Match::equals, u"utf9", kCFStringEncodingUTF8},
    {Match::equals, u"unicode", kCFStringEncodingUTF8},
    {Match::contains, u"utf16", kCFStringEncodingUnicode},
    {Match::contains, u"shiftj", kCFStringEncodingShiftJIS},
    {Match::contains, u"sjis", kCFStringEncodingShiftJIS},
    {Match::begins, u"koi8", kCFStringEncodingKOI8_R},
    {Match::contains, u"big5", kCFStringEncodingBig5},
    {Match::contains, u"euckr", kCFStringEncodingEUC_KR},
    {Match::contains, u"eucj", kCFStringEncodingEUC_JP},
    {Match::contains, u"euccn", kCFStringEncodingEUC_CN},
    {Match::contains, u"euctw", kCFStringEncodingEUC_TW},
    {Match::equals, u"ksc56011987", kCFStringEncodingKSC_5601_87},
    {Match::equals, u"ksc560187", kCFStringEncodingKSC_5601_87},
    {Match::begins, u"ksc560192", kCFStringEncodingKSC_5601_92_Johab},
    // Pages that give their language for the character set.
    {Match::equals, u"en", kCFStringEncodingUTF8},
    {Match::equals, u"enus", kCFStringEncodingUTF8},
    {Match::equals, u"engb", kCFStringEncodingUTF8},
    {Match::equals, u"none", kCFStringEncodingASCII},
};

constexpr NameRule kMacRules[] = {
    {Match::equals, u"", kCFStringEncodingMacRoman},
    {Match::equals, u"roman", kCFStringEncodingMacRoman},
    {Match::equals, u"osroman", kCFStringEncodingMacRoman},
    {Match::equals, u"intosh", kCFStringEncodingMacRoman},
    {Match::equals, u"romanlatin1", kCFStringEncodingMacRomanLatin1},
    {Match::equals, u"cyrillic", kCFStringEncodingMacCyrillic},
    {Match::equals, u"ce", kCFStringEncodingMacCentralEurRoman},
    {Match::equals, u"japanese", kCFStringEncodingMacJapanese},
    {Match::contains, u"chinesetrad", kCFStringEncodingMacChineseTrad},
    {Match::equals, u"korean", kCFStringEncodingMacKorean},
    {Match::equals, u"arabic", kCFStringEncodingMacArabic},
    {Match::equals, u"hebrew", kCFStringEncodingMacHebrew},
    {Match::equals, u"greek", kCFStringEncodingMacGreek},
    {Match::equals, u"devanagari", kCFStringEncodingMacDevanagari},
    {Match::equals, u"gurmukhi", kCFStringEncodingMacGurmukhi},
    {Match::equals, u"gujarati", kCFStringEncodingMacGujarati},
    {Match::equals, u"oriya", kCFStringEncodingMacOriya},
    {Match::equals, u"bengali", kCFStringEncodingMacBengali},
    {Match::equals, u"tamil", kCFStringEncodingMacTamil},
    {Match::equals, u"telugu", kCFStringEncodingMacTelugu},
    {Match::equals, u"kannada", kCFStringEncodingMacKannada},
    {Match::equals, u"malayalam", kCFStringEncodingMacMalayalam},
    {Match::equals, u"sinhalese", kCFStringEncodingMacSinhalese},
    {Match::equals, u"burmese", kCFStringEncodingMacBurmese},
    {Match::equals, u"khmer", kCFStringEncodingMacKhmer},
    {Match::equals, u"thai", kCFStringEncodingMacThai},
    {Match::equals, u"laotian", kCFStringEncodingMacLaotian},
    {Match::equals, u"georgian", kCFStringEncodingMacGeorgian},
    {Match::equals, u"armenian", kCFStringEncodingMacArmenian},
    {Match::contains, u"chinesesimp", kCFStringEncodingMacChineseSimp},
    {Match::equals, u"tibetan", kCFStringEncodingMacTibetan},
    {Match::equals, u"mongolian", kCFStringEncodingMacMongolian},
    {Match::equals, u"ethiopic", kCFStringEncodingMacEthiopic},
    {Match::contains, u"centraleur", kCFStringEncodingMacCentralEurRoman},
    {Match::equals, u"vietnamese", kCFStringEncodingMacVietnamese},
    {Match::equals, u"extarabic", kCFStringEncodingMacExtArabic},
    {Match::equals, u"turkish", kCFStringEncodingMacTurkish},
    {Match::equals, u"croatian", kCFStringEncodingMacCroatian},
    {Match::equals, u"icelandic", kCFStringEncodingMacIcelandic},
    {Match::equals, u"romanian", kCFStringEncodingMacRomanian},
    {Match::equals, u"celtic", kCFStringEncodingMacCeltic},
    {Match::equals, u"gaelic", kCFStringEncodingMacGaelic},
    {Match::equals, u"farsi", kCFStringEncodingMacFarsi},
    {Match::equals, u"ukrainian", kCFStringEncodingMacUkrainian},
    {Match::equals, u"inuit", kCFStringEncodingMacInuit},
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
  const auto isDigit = [](unichar unit) { return unit >= u'0' && unit <= u'9'; };
  std::uint64_t number = 0;
  for (auto at = std::ranges::find_if(name, isDigit); at != name.end() && isDigit(*at); ++at)
    number = std::min<std::uint64_t>(10 * number + (*at - u'0'), kLargest);
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

NSStringEncoding charset2NSStringEncoding(const NSString &name) {
  const CFStringEncoding encoding = charset2CFStringEncoding(name);
  if (encoding == kCFStringEncodingKamenicky) return NSKamenickyStringEncoding;
  if (encoding == kCFStringEncodingKOI8CS2) return NSKOI8CS2StringEncoding;
  if (encoding == kCFStringEncodingShiftJIS) return NSShiftJISStringEncoding;
  if (encoding != kCFStringEncodingInvalidId && CFStringIsEncodingAvailable(encoding))
    return CFStringConvertEncodingToNSStringEncoding(encoding);
  if (!isNoName(name)) {
    NSMutableString line;
    line.appendString(u"Unknown/Unsupported encoding: "_ns);
    line.appendString(name);
    NSLog(std::move(line).string());
  }
  return kCFStringEncodingInvalidId;
}

}  // namespace nimbo
