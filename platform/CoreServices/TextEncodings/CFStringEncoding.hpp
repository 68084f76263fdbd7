// SPDX-License-Identifier: Apache-2.0
//
// Text encodings by number and by name, from StringEncodings.tsv. Any thread may ask.
//
//     CFStringConvertIANACharSetNameToEncoding(u"Latin1"_ns);  // kCFStringEncodingISOLatin1
//     CFStringConvertEncodingToIANACharSetName(kCFStringEncodingWindowsLatin1);  // "windows-1252"
//     CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingUTF8);  // NSUTF8StringEncoding
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The number of a text encoding. All published numbers are here; `CFStringIsEncodingAvailable` says which have
/// a converter.
using CFStringEncoding = std::uint32_t;

/// An encoding as strings know it: a short list of small numbers, and 0x80000000 | CFStringEncoding for the
/// others.
using NSStringEncoding = std::uint32_t;

/// No encoding.
inline constexpr CFStringEncoding kCFStringEncodingInvalidId = 0xffffffff;

/// The published numbers.
enum : CFStringEncoding {
  kCFStringEncodingMacRoman = 0x0,
  kCFStringEncodingMacJapanese = 0x1,
  kCFStringEncodingMacChineseTrad = 0x2,
  kCFStringEncodingMacKorean = 0x3,
  kCFStringEncodingMacArabic = 0x4,
  kCFStringEncodingMacHebrew = 0x5,
  kCFStringEncodingMacGreek = 0x6,
  kCFStringEncodingMacCyrillic = 0x7,
  kCFStringEncodingMacDevanagari = 0x9,
  kCFStringEncodingMacGurmukhi = 0xa,
  kCFStringEncodingMacGujarati = 0xb,
  kCFStringEncodingMacOriya = 0xc,
  kCFStringEncodingMacBengali = 0xd,
  kCFStringEncodingMacTamil = 0xe,
  kCFStringEncodingMacTelugu = 0xf,
  kCFStringEncodingMacKannada = 0x10,
  kCFStringEncodingMacMalayalam = 0x11,
  kCFStringEncodingMacSinhalese = 0x12,
  kCFStringEncodingMacBurmese = 0x13,
  kCFStringEncodingMacKhmer = 0x14,
  kCFStringEncodingMacThai = 0x15,
  kCFStringEncodingMacLaotian = 0x16,
  kCFStringEncodingMacGeorgian = 0x17,
  kCFStringEncodingMacArmenian = 0x18,
  kCFStringEncodingMacChineseSimp = 0x19,
  kCFStringEncodingMacTibetan = 0x1a,
  kCFStringEncodingMacMongolian = 0x1b,
  kCFStringEncodingMacEthiopic = 0x1c,
  kCFStringEncodingMacCentralEurRoman = 0x1d,
  kCFStringEncodingMacVietnamese = 0x1e,
  kCFStringEncodingMacExtArabic = 0x1f,
  kCFStringEncodingMacSymbol = 0x21,
  kCFStringEncodingMacDingbats = 0x22,
  kCFStringEncodingMacTurkish = 0x23,
  kCFStringEncodingMacCroatian = 0x24,
  kCFStringEncodingMacIcelandic = 0x25,
  kCFStringEncodingMacRomanian = 0x26,
  kCFStringEncodingMacCeltic = 0x27,
  kCFStringEncodingMacGaelic = 0x28,
  kCFStringEncodingMacFarsi = 0x8c,
  kCFStringEncodingMacUkrainian = 0x98,
  kCFStringEncodingMacInuit = 0xec,
  kCFStringEncodingMacVT100 = 0xfc,
  kCFStringEncodingMacHFS = 0xff,
  kCFStringEncodingUnicode = 0x100,
  kCFStringEncodingUTF16 = kCFStringEncodingUnicode,
  kCFStringEncodingISOLatin1 = 0x201,
  kCFStringEncodingISOLatin2 = 0x202,
  kCFStringEncodingISOLatin3 = 0x203,
  kCFStringEncodingISOLatin4 = 0x204,
  kCFStringEncodingISOLatinCyrillic = 0x205,
  kCFStringEncodingISOLatinArabic = 0x206,
  kCFStringEncodingISOLatinGreek = 0x207,
  kCFStringEncodingISOLatinHebrew = 0x208,
  kCFStringEncodingISOLatin5 = 0x209,
  kCFStringEncodingISOLatin6 = 0x20a,
  kCFStringEncodingISOLatinThai = 0x20b,
  kCFStringEncodingISOLatin7 = 0x20d,
  kCFStringEncodingISOLatin8 = 0x20e,
  kCFStringEncodingISOLatin9 = 0x20f,
  kCFStringEncodingISOLatin10 = 0x210,
  kCFStringEncodingDOSLatinUS = 0x400,
  kCFStringEncodingDOSGreek = 0x405,
  kCFStringEncodingDOSBalticRim = 0x406,
  kCFStringEncodingDOSLatin1 = 0x410,
  kCFStringEncodingDOSGreek1 = 0x411,
  kCFStringEncodingDOSLatin2 = 0x412,
  kCFStringEncodingDOSCyrillic = 0x413,
  kCFStringEncodingDOSTurkish = 0x414,
  kCFStringEncodingDOSPortuguese = 0x415,
  kCFStringEncodingDOSIcelandic = 0x416,
  kCFStringEncodingDOSHebrew = 0x417,
  kCFStringEncodingDOSCanadianFrench = 0x418,
  kCFStringEncodingDOSArabic = 0x419,
  kCFStringEncodingDOSNordic = 0x41a,
  kCFStringEncodingDOSRussian = 0x41b,
  kCFStringEncodingDOSGreek2 = 0x41c,
  kCFStringEncodingDOSThai = 0x41d,
  kCFStringEncodingDOSJapanese = 0x420,
  kCFStringEncodingDOSChineseSimplif = 0x421,
  kCFStringEncodingDOSKorean = 0x422,
  kCFStringEncodingDOSChineseTrad = 0x423,
  kCFStringEncodingWindowsLatin1 = 0x500,
  kCFStringEncodingWindowsLatin2 = 0x501,
  kCFStringEncodingWindowsCyrillic = 0x502,
  kCFStringEncodingWindowsGreek = 0x503,
  kCFStringEncodingWindowsLatin5 = 0x504,
  kCFStringEncodingWindowsHebrew = 0x505,
  kCFStringEncodingWindowsArabic = 0x506,
  kCFStringEncodingWindowsBalticRim = 0x507,
  kCFStringEncodingWindowsVietnamese = 0x508,
  kCFStringEncodingWindowsKoreanJohab = 0x510,
  kCFStringEncodingASCII = 0x600,
  kCFStringEncodingANSEL = 0x601,
  kCFStringEncodingJIS_X0201_76 = 0x620,
  kCFStringEncodingJIS_X0208_83 = 0x621,
  kCFStringEncodingJIS_X0208_90 = 0x622,
  kCFStringEncodingJIS_X0212_90 = 0x623,
  kCFStringEncodingJIS_C6226_78 = 0x624,
  kCFStringEncodingShiftJIS_X0213 = 0x628,
  kCFStringEncodingShiftJIS_X0213_MenKuTen = 0x629,
  kCFStringEncodingGB_2312_80 = 0x630,
  kCFStringEncodingGBK_95 = 0x631,
  kCFStringEncodingGB_18030_2000 = 0x632,
  kCFStringEncodingKSC_5601_87 = 0x640,
  kCFStringEncodingKSC_5601_92_Johab = 0x641,
  kCFStringEncodingCNS_11643_92_P1 = 0x651,
  kCFStringEncodingCNS_11643_92_P2 = 0x652,
  kCFStringEncodingCNS_11643_92_P3 = 0x653,
  kCFStringEncodingISO_2022_JP = 0x820,
  kCFStringEncodingISO_2022_JP_2 = 0x821,
  kCFStringEncodingISO_2022_JP_1 = 0x822,
  kCFStringEncodingISO_2022_JP_3 = 0x823,
  kCFStringEncodingISO_2022_CN = 0x830,
  kCFStringEncodingISO_2022_CN_EXT = 0x831,
  kCFStringEncodingISO_2022_KR = 0x840,
  kCFStringEncodingEUC_JP = 0x920,
  kCFStringEncodingEUC_CN = 0x930,
  kCFStringEncodingEUC_TW = 0x931,
  kCFStringEncodingEUC_KR = 0x940,
  kCFStringEncodingShiftJIS = 0xa01,
  kCFStringEncodingKOI8_R = 0xa02,
  kCFStringEncodingBig5 = 0xa03,
  kCFStringEncodingMacRomanLatin1 = 0xa04,
  kCFStringEncodingHZ_GB_2312 = 0xa05,
  kCFStringEncodingBig5_HKSCS_1999 = 0xa06,
  kCFStringEncodingVISCII = 0xa07,
  kCFStringEncodingKOI8_U = 0xa08,
  kCFStringEncodingBig5_E = 0xa09,
  kCFStringEncodingUTF7_IMAP = 0xa10,
  kCFStringEncodingNextStepLatin = 0xb01,
  kCFStringEncodingNextStepJapanese = 0xb02,
  kCFStringEncodingNonLossyASCII = 0xbff,
  kCFStringEncodingEBCDIC_US = 0xc01,
  kCFStringEncodingEBCDIC_CP037 = 0xc02,
  /// A number of the project's own: Czech and Slovak text of DOS times, code page 895.
  kCFStringEncodingKamenicky = 0xa001,
  /// A number of the project's own: Czech and Slovak text of DOS times, KOI8-CS2.
  kCFStringEncodingKOI8CS2 = 0xa002,
  kCFStringEncodingUTF7 = 0x4000100,
  kCFStringEncodingUTF8 = 0x8000100,
  kCFStringEncodingUTF32 = 0xc000100,
  kCFStringEncodingUTF16BE = 0x10000100,
  kCFStringEncodingUTF16LE = 0x14000100,
  kCFStringEncodingUTF32BE = 0x18000100,
  kCFStringEncodingUTF32LE = 0x1c000100,
};

/// The short list, and those of the others that have a name.
enum : NSStringEncoding {
  NSASCIIStringEncoding = 1,
  NSNEXTSTEPStringEncoding = 2,
  NSJapaneseEUCStringEncoding = 3,
  NSUTF8StringEncoding = 4,
  NSISOLatin1StringEncoding = 5,
  NSSymbolStringEncoding = 6,
  NSNonLossyASCIIStringEncoding = 7,
  NSShiftJISStringEncoding = 8,
  NSISOLatin2StringEncoding = 9,
  NSUnicodeStringEncoding = 10,
  NSWindowsCP1251StringEncoding = 11,
  NSWindowsCP1252StringEncoding = 12,
  NSWindowsCP1253StringEncoding = 13,
  NSWindowsCP1254StringEncoding = 14,
  NSWindowsCP1250StringEncoding = 15,
  NSISO2022JPStringEncoding = 21,
  NSMacOSRomanStringEncoding = 30,
  NSUTF16BigEndianStringEncoding = 0x90000100,
  NSUTF16LittleEndianStringEncoding = 0x94000100,
  NSUTF32StringEncoding = 0x8c000100,
  NSUTF32BigEndianStringEncoding = 0x98000100,
  NSUTF32LittleEndianStringEncoding = 0x9c000100,
  /// -16, the number that stands for `kCFStringEncodingKamenicky`.
  NSKamenickyStringEncoding = 0xfffffff0,
  /// -15, the number that stands for `kCFStringEncodingKOI8CS2`.
  NSKOI8CS2StringEncoding = 0xfffffff1,
};

/// Whether text in this encoding can be read and written.
bool CFStringIsEncodingAvailable(CFStringEncoding encoding);

/// Every available encoding, in ascending order of the numbers.
std::vector<CFStringEncoding> CFStringGetListOfAvailableEncodings();

/// The number that strings know an encoding by; `kCFStringEncodingInvalidId`, which is -1, when it is none.
NSStringEncoding CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding);
/// The number of an encoding that strings know; `kCFStringEncodingInvalidId` when it is none.
CFStringEncoding CFStringConvertNSStringEncodingToEncoding(NSStringEncoding encoding);

/// The encoding of a registered name or another name of the same, in any case; `kCFStringEncodingInvalidId`
/// when no available encoding has the name.
CFStringEncoding CFStringConvertIANACharSetNameToEncoding(const NSString &name);
/// The name of an encoding, for the "charset" of a MIME header where it has one; nil when the number is no
/// encoding.
NSString CFStringConvertEncodingToIANACharSetName(CFStringEncoding encoding);

/// The name of an encoding's converter: that of ICU; one of the C library behind "iconv:"; one of the project's
/// own tables behind "table:". Empty when it has none. Lives as long as the process.
std::string_view converterNameOfEncoding(CFStringEncoding encoding);

/// The encoding in which bytes in `encoding` that come from outside are to be read: where the encoding leaves
/// the order of bytes open, a byte order mark decides, else it is the order of this machine. `*markLength`
/// gets the bytes of the mark.
CFStringEncoding encodingWithByteOrderMark(CFStringEncoding encoding, std::string_view bytes,
                                           std::uint32_t *markLength);

}  // namespace nimbo
