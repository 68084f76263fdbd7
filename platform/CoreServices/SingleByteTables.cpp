// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/SingleByteTables.hpp"

namespace nimbo {
namespace {

/// The characters of the bytes 0x80 to 0xff, sixteen a line; the literal's end adds one unit.
using HighHalf = char16_t[129];

// After the Unicode Consortium's mapping tables (VENDORS/APPLE, VENDORS/NEXT, ISO8859/8859-16,
// EASTASIA/JIS/JIS0201); Kamenicky after DOS code page 895. Bytes that stand for a sequence of characters are
// left out in Hebrew; in Thai they give the letter without the hint for its shape.
// clang-format off
constexpr HighHalf kMacArabic =
    u"Ä\u00a0ÇÉÑÖÜáàâä\u06ba«çéè"
    u"êëí…îïñó»ôö÷úùûü"
    u" !\"#$٪&'()*+،-./"
    u"\u0660\u0661\u0662\u0663\u0664\u0665\u0666\u0667\u0668\u0669:\u061b<=>\u061f"
    u"❊\u0621\u0622\u0623\u0624\u0625\u0626\u0627\u0628\u0629\u062a\u062b\u062c\u062d\u062e\u062f"
    u"\u0630\u0631\u0632\u0633\u0634\u0635\u0636\u0637\u0638\u0639\u063a[\\]^_"
    u"\u0640\u0641\u0642\u0643\u0644\u0645\u0646\u0647\u0648\u0649\u064a\u064b\u064c\u064d\u064e\u064f"
    u"\u0650\u0651\u0652\u067e\u0679\u0686\u06d5\u06a4\u06af\u0688\u0691{|}\u0698\u06d2";

constexpr HighHalf kMacCroatian =
    u"ÄÅÇÉÑÖÜáàâäãåçéè"
    u"êëíìîïñóòôöõúùûü"
    u"†°¢£§•¶ß®Š™´¨≠ŽØ"
    u"∞±≤≥∆µ∂∑∏š∫ªºΩžø"
    u"¿¡¬√ƒ≈Ć«Č…\u00a0ÀÃÕŒœ"
    u"Đ—“”‘’÷◊\uf8ff©⁄€‹›Æ»"
    u"–·‚„‰ÂćÁčÈÍÎÏÌÓÔ"
    u"đÒÚÛÙı\u02c6˜¯πË˚¸Êæ\u02c7";

constexpr HighHalf kMacFarsi =
    u"Ä\u00a0ÇÉÑÖÜáàâä\u06ba«çéè"
    u"êëí…îïñó»ôö÷úùûü"
    u" !\"#$٪&'()*+،-./"
    u"۰۱۲۳۴۵۶۷۸۹:\u061b<=>\u061f"
    u"❊\u0621\u0622\u0623\u0624\u0625\u0626\u0627\u0628\u0629\u062a\u062b\u062c\u062d\u062e\u062f"
    u"\u0630\u0631\u0632\u0633\u0634\u0635\u0636\u0637\u0638\u0639\u063a[\\]^_"
    u"\u0640\u0641\u0642\u0643\u0644\u0645\u0646\u0647\u0648\u0649\u064a\u064b\u064c\u064d\u064e\u064f"
    u"\u0650\u0651\u0652\u067e\u0679\u0686\u06d5\u06a4\u06af\u0688\u0691{|}\u0698\u06d2";

constexpr HighHalf kMacHebrew =
    u"Ä\ufffdÇÉÑÖÜáàâäãåçéè"
    u"êëíìîïñóòôöõúùûü"
    u" !\"#$%₪')(*+,-./"
    u"0123456789:;<=>?"
    u"\ufffd„\uf89b\uf89c\uf89d\uf89e\u05bc\ufb4b\ufb35…\u00a0\u05b8\u05b7\u05b5\u05b6\u05b4"
    u"–—“”‘’\ufb2a\ufb2b\u05bf\u05b0\u05b2\u05b1\u05bb\u05b9\ufffd\u05b3"
    u"\u05d0\u05d1\u05d2\u05d3\u05d4\u05d5\u05d6\u05d7\u05d8\u05d9\u05da\u05db\u05dc\u05dd\u05de\u05df"
    u"\u05e0\u05e1\u05e2\u05e3\u05e4\u05e5\u05e6\u05e7\u05e8\u05e9\u05ea}]{[|";

constexpr HighHalf kMacIcelandic =
    u"ÄÅÇÉÑÖÜáàâäãåçéè"
    u"êëíìîïñóòôöõúùûü"
    u"Ý°¢£§•¶ß®©™´¨≠ÆØ"
    u"∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    u"¿¡¬√ƒ≈∆«»…\u00a0ÀÃÕŒœ"
    u"–—“”‘’÷◊ÿŸ⁄€ÐðÞþ"
    u"ý·‚„‰ÂÊÁËÈÍÎÏÌÓÔ"
    u"\uf8ffÒÚÛÙı\u02c6˜¯˘˙˚¸˝˛\u02c7";

constexpr HighHalf kMacRomanian =
    u"ÄÅÇÉÑÖÜáàâäãåçéè"
    u"êëíìîïñóòôöõúùûü"
    u"†°¢£§•¶ß®©™´¨≠ĂȘ"
    u"∞±≤≥¥µ∂∑∏π∫ªºΩăș"
    u"¿¡¬√ƒ≈∆«»…\u00a0ÀÃÕŒœ"
    u"–—“”‘’÷◊ÿŸ⁄€‹›Țț"
    u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ"
    u"\uf8ffÒÚÛÙı\u02c6˜¯˘˙˚¸˝˛\u02c7";

constexpr HighHalf kMacThai =
    u"«»…\u0e48\u0e49\u0e4a\u0e4b\u0e4c\u0e48\u0e49\u0e4a\u0e4b\u0e4c“”\u0e4d"
    u"\ufffd•\u0e31\u0e47\u0e34\u0e35\u0e36\u0e37\u0e48\u0e49\u0e4a\u0e4b\u0e4c‘’\ufffd"
    u"\u00a0\u0e01\u0e02\u0e03\u0e04\u0e05\u0e06\u0e07\u0e08\u0e09\u0e0a\u0e0b\u0e0c\u0e0d\u0e0e\u0e0f"
    u"\u0e10\u0e11\u0e12\u0e13\u0e14\u0e15\u0e16\u0e17\u0e18\u0e19\u0e1a\u0e1b\u0e1c\u0e1d\u0e1e\u0e1f"
    u"\u0e20\u0e21\u0e22\u0e23\u0e24\u0e25\u0e26\u0e27\u0e28\u0e29\u0e2a\u0e2b\u0e2c\u0e2d\u0e2e\u0e2f"
    u"\u0e30\u0e31\u0e32\u0e33\u0e34\u0e35\u0e36\u0e37\u0e38\u0e39\u0e3a\u2060\u200b–—\u0e3f"
    u"\u0e40\u0e41\u0e42\u0e43\u0e44\u0e45\u0e46\u0e47\u0e48\u0e49\u0e4a\u0e4b\u0e4c\u0e4d™\u0e4f"
    u"\u0e50\u0e51\u0e52\u0e53\u0e54\u0e55\u0e56\u0e57\u0e58\u0e59®©\ufffd\ufffd\ufffd\ufffd";

constexpr HighHalf kNextStepLatin =
    u"\u00a0ÀÁÂÃÄÅÇÈÉÊËÌÍÎÏ"
    u"ÐÑÒÓÔÕÖÙÚÛÜÝÞµ×÷"
    u"©¡¢£⁄¥ƒ§¤’“«‹›ﬁﬂ"
    u"®–†‡·¦¶•‚„”»…‰¬¿"
    u"¹\u02cb´\u02c6˜¯˘˙¨²˚¸³˝˛\u02c7"
    u"—±¼½¾àáâãäåçèéêë"
    u"ìÆíªîïðñŁØŒºòóôõ"
    u"öæùúûıüýłøœßþÿ\ufffd\ufffd";

constexpr HighHalf kISOLatin10 =
    u"\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89\x8a\x8b\x8c\x8d\x8e\x8f"
    u"\x90\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9a\x9b\x9c\x9d\x9e\x9f"
    u"\u00a0ĄąŁ€„Š§š©Ș«Ź\u00adźŻ"
    u"°±ČłŽ”¶·žčș»ŒœŸż"
    u"ÀÁÂĂÄĆÆÇÈÉÊËÌÍÎÏ"
    u"ĐŃÒÓÔŐÖŚŰÙÚÛÜĘȚß"
    u"àáâăäćæçèéêëìíîï"
    u"đńòóôőöśűùúûüęțÿ";

constexpr HighHalf kJISX0201 =
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd｡｢｣､･ｦｧｨｩｪｫｬｭｮｯ"
    u"ｰｱｲｳｴｵｶｷｸｹｺｻｼｽｾｿ"
    u"ﾀﾁﾂﾃﾄﾅﾆﾇﾈﾉﾊﾋﾌﾍﾎﾏ"
    u"ﾐﾑﾒﾓﾔﾕﾖﾗﾘﾙﾚﾛﾜﾝ\uff9e\uff9f"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd";

constexpr HighHalf kKamenicky =
    u"ČüéďäĎŤčěĚĹÍľĺÄÁ"
    u"ÉžŽôöÓůÚýÖÜŠĽÝŘť"
    u"áíóúňŇŮÔšřŕŔ¼§«»"
    u"░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
    u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧"
    u"╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    u"αßΓπΣσµτΦΘΩδ∞φε∩"
    u"≡±≥≤⌠⌡÷≈°∙·√\u207f²■\u00a0";
// clang-format on

struct Row {
  std::string_view name;
  SingleByteTable table;
};

constexpr Row kRows[] = {
    {"ISOLatin10", {kISOLatin10}},       {"JIS_X0201", {kJISX0201, u'\u00a5', u'\u203e'}},
    {"Kamenicky", {kKamenicky}},         {"MacArabic", {kMacArabic}},
    {"MacCroatian", {kMacCroatian}},     {"MacFarsi", {kMacFarsi}},
    {"MacHebrew", {kMacHebrew}},         {"MacIcelandic", {kMacIcelandic}},
    {"MacRomanian", {kMacRomanian}},     {"MacThai", {kMacThai}},
    {"NextStepLatin", {kNextStepLatin}},
};

}  // namespace

SingleByteTable singleByteTable(std::string_view name) {
  for (const Row &row : kRows)
    if (row.name == name) return row.table;
  return {};
}

}  // namespace nimbo
