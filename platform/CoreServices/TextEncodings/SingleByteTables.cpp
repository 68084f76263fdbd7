// SPDX-License-Identifier: Apache-2.0
#include <span>

#include "platform/CoreServices/TextEncodings/CodeTableSources.hpp"

namespace nimbo {
namespace {

/// The characters of the bytes 0x80 to 0xff, sixteen a line; the literal's end adds one unit.
using HighHalf = char16_t[129];
/// Those of the bytes 0x20 to 0x7f, where they are not ASCII.
using Printable = char16_t[97];

// After the Unicode Consortium's mapping tables (VENDORS/APPLE, VENDORS/NEXT, ISO8859/8859-16,
// EASTASIA/JIS/JIS0201), compared with the tables of Perl's Encode and, for the Indic scripts, with those of
// Debian's libunicode-map-perl. KOI8-CS2 after the tables of Debian's recode ("KOI-8_CS2") and konwert
// ("koi8cs"), which differ in 0xb1 alone; Kamenicky after DOS code page 895, and the same in these two packages
// ("KEYBCS2", "kamenicky") but for recode's choice of symbols. A hint for a character's shape is left out.
// clang-format off
constexpr HighHalf kISOLatin10 =
    u"\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89\x8a\x8b\x8c\x8d\x8e\x8f"
    u"\x90\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9a\x9b\x9c\x9d\x9e\x9f"
    u"\u00a0ĄąŁ€„Š§š©Ș«Ź\u00adźŻ"
    u"°±ČłŽ”¶·žčș»ŒœŸż"
    u"ÀÁÂĂÄĆÆÇÈÉÊËÌÍÎÏ"
    u"ĐŃÒÓÔŐÖŚŰÙÚÛÜĘȚß"
    u"àáâăäćæçèéêëìíîï"
    u"đńòóôőöśűùúûüęțÿ";

constexpr HighHalf kJIS_X0201 =
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd｡｢｣､･ｦｧｨｩｪｫｬｭｮｯ"
    u"ｰｱｲｳｴｵｶｷｸｹｺｻｼｽｾｿ"
    u"ﾀﾁﾂﾃﾄﾅﾆﾇﾈﾉﾊﾋﾌﾍﾎﾏ"
    u"ﾐﾑﾒﾓﾔﾕﾖﾗﾘﾙﾚﾛﾜﾝ\uff9e\uff9f"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd";

constexpr HighHalf kKOI8CS2 =
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\u00a0\ufffd´\ufffd~\ufffd˘˙¨\ufffd˚¸\ufffd˝˛ˇ"
    u"©™┌┐└┘─↓Ω§αγεμπω"
    u"àáǎčďěŕ\ufffdüíůĺľöňó"
    u"ôäřšťúëéűýž\ufffd\ufffdőėß"
    u"ÀÁǍČĎĚŔ\ufffdÜÍŮĹĽÖŇÓ"
    u"ÔÄŘŠŤÚËÉŰÝŽ\ufffd\ufffdŐĖ\ufffd";

constexpr HighHalf kKamenicky =
    u"ČüéďäĎŤčěĚĹÍľĺÄÁ"
    u"ÉžŽôöÓůÚýÖÜŠĽÝŘť"
    u"áíóúňŇŮÔšřŕŔ¼§«»"
    u"░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
    u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧"
    u"╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    u"αßΓπΣσµτΦΘΩδ∞φε∩"
    u"≡±≥≤⌠⌡÷≈°∙·√\u207f²■\u00a0";

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

constexpr HighHalf kMacDevanagari =
    u"×−–—‘’…•©®™\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\u0965\u0970\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\u0901\u0902\u0903\u0905\u0906\u0907\u0908\u0909\u090a\u090b\u090e\u090f\u0910\u090d\u0912"
    u"\u0913\u0914\u0911\u0915\u0916\u0917\u0918\u0919\u091a\u091b\u091c\u091d\u091e\u091f\u0920\u0921"
    u"\u0922\u0923\u0924\u0925\u0926\u0927\u0928\u0929\u092a\u092b\u092c\u092d\u092e\u092f\u095f\u0930"
    u"\u0931\u0932\u0933\u0934\u0935\u0936\u0937\u0938\u0939\u200e\u093e\u093f\u0940\u0941\u0942\u0943"
    u"\u0946\u0947\u0948\u0945\u094a\u094b\u094c\u0949\u094d\u093c\u0964\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\u0966\u0967\u0968\u0969\u096a\u096b\u096c\u096d\u096e\u096f\ufffd\ufffd\ufffd\ufffd\ufffd";

constexpr HighHalf kMacDingbats =
    u"❨❩❪❫❬❭❮❯❰❱❲❳❴❵\ufffd\ufffd"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd❡❢❣❤❥❦❧♣♦♥♠①②③④"
    u"⑤⑥⑦⑧⑨⑩❶❷❸❹❺❻❼❽❾❿"
    u"➀➁➂➃➄➅➆➇➈➉➊➋➌➍➎➏"
    u"➐➑➒➓➔→↔↕➘➙➚➛➜➝➞➟"
    u"➠➡➢➣➤➥➦➧➨➩➪➫➬➭➮➯"
    u"\ufffd➱➲➳➴➵➶➷➸➹➺➻➼➽➾\ufffd";

constexpr Printable kMacDingbatsPrintable =
    u" ✁✂✃✄☎✆✇✈✉☛☞✌✍✎✏"
    u"✐✑✒✓✔✕✖✗✘✙✚✛✜✝✞✟"
    u"✠✡✢✣✤✥✦✧★✩✪✫✬✭✮✯"
    u"✰✱✲✳✴✵✶✷✸✹✺✻✼✽✾✿"
    u"❀❁❂❃❄❅❆❇❈❉❊❋●❍■❏"
    u"❐❑❒▲▼◆❖◗❘❙❚❛❜❝❞\x7f";

constexpr HighHalf kMacFarsi =
    u"Ä\u00a0ÇÉÑÖÜáàâä\u06ba«çéè"
    u"êëí…îïñó»ôö÷úùûü"
    u" !\"#$٪&'()*+،-./"
    u"۰۱۲۳۴۵۶۷۸۹:\u061b<=>\u061f"
    u"❊\u0621\u0622\u0623\u0624\u0625\u0626\u0627\u0628\u0629\u062a\u062b\u062c\u062d\u062e\u062f"
    u"\u0630\u0631\u0632\u0633\u0634\u0635\u0636\u0637\u0638\u0639\u063a[\\]^_"
    u"\u0640\u0641\u0642\u0643\u0644\u0645\u0646\u0647\u0648\u0649\u064a\u064b\u064c\u064d\u064e\u064f"
    u"\u0650\u0651\u0652\u067e\u0679\u0686\u06d5\u06a4\u06af\u0688\u0691{|}\u0698\u06d2";

constexpr HighHalf kMacGujarati =
    u"×−–—‘’…•©®™\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\u0965\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\u0a81\u0a82\u0a83\u0a85\u0a86\u0a87\u0a88\u0a89\u0a8a\u0a8b\ufffd\u0a8f\u0a90\u0a8d\ufffd"
    u"\u0a93\u0a94\u0a91\u0a95\u0a96\u0a97\u0a98\u0a99\u0a9a\u0a9b\u0a9c\u0a9d\u0a9e\u0a9f\u0aa0\u0aa1"
    u"\u0aa2\u0aa3\u0aa4\u0aa5\u0aa6\u0aa7\u0aa8\ufffd\u0aaa\u0aab\u0aac\u0aad\u0aae\u0aaf\ufffd\u0ab0"
    u"\ufffd\u0ab2\u0ab3\ufffd\u0ab5\u0ab6\u0ab7\u0ab8\u0ab9\u200e\u0abe\u0abf\u0ac0\u0ac1\u0ac2\u0ac3"
    u"\ufffd\u0ac7\u0ac8\u0ac5\ufffd\u0acb\u0acc\u0ac9\u0acd\u0abc\u0964\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\u0ae6\u0ae7\u0ae8\u0ae9\u0aea\u0aeb\u0aec\u0aed\u0aee\u0aef\ufffd\ufffd\ufffd\ufffd\ufffd";

constexpr HighHalf kMacGurmukhi =
    u"×−–—‘’…•©®™\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\u0a71\ufffd\u0a73\u0a72\u0a74\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\ufffd\u0a02\ufffd\u0a05\u0a06\u0a07\u0a08\u0a09\u0a0a\ufffd\ufffd\u0a0f\u0a10\ufffd\ufffd"
    u"\u0a13\u0a14\ufffd\u0a15\u0a16\u0a17\u0a18\u0a19\u0a1a\u0a1b\u0a1c\u0a1d\u0a1e\u0a1f\u0a20\u0a21"
    u"\u0a22\u0a23\u0a24\u0a25\u0a26\u0a27\u0a28\ufffd\u0a2a\u0a2b\u0a2c\u0a2d\u0a2e\u0a2f\ufffd\u0a30"
    u"\ufffd\u0a32\ufffd\ufffd\u0a35\u0a36\ufffd\u0a38\u0a39\u200e\u0a3e\u0a3f\u0a40\u0a41\u0a42\ufffd"
    u"\ufffd\u0a47\u0a48\ufffd\ufffd\u0a4b\u0a4c\ufffd\u0a4d\u0a3c\u0964\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\u0a66\u0a67\u0a68\u0a69\u0a6a\u0a6b\u0a6c\u0a6d\u0a6e\u0a6f\ufffd\ufffd\ufffd\ufffd\ufffd";

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

constexpr HighHalf kMacSymbol =
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd\ufffd"
    u"€ϒ′≤⁄∞ƒ♣♦♥♠↔←↑→↓"
    u"°±″≥×∝∂•÷≠≡≈…\uf8e6⎯↵"
    u"ℵℑℜ℘⊗⊕∅∩∪⊃⊇⊄⊂⊆∈∉"
    u"∠∇®©™∏√⋅¬∧∨⇔⇐⇑⇒⇓"
    u"⋄〈\ufffd\ufffd\ufffd∑⎛⎜⎝⎡⎢⎣⎧⎨⎩⎪"
    u"\uf8ff〉∫⌠⎮⌡⎞⎟⎠⎤⎥⎦⎫⎬⎭\ufffd";

constexpr Printable kMacSymbolPrintable =
    u" !∀#∃%&∍()∗+,−./"
    u"0123456789:;<=>?"
    u"≅ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟ"
    u"ΠΘΡΣΤΥςΩΞΨΖ[∴]⊥_"
    u"\uf8e5αβχδεφγηιϕκλμνο"
    u"πθρστυϖωξψζ{|}∼\x7f";

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

constexpr CodeText kMacDevanagariPairs[] = {
    {0xa1e9, u"\u0950"}, {0xa6e9, u"\u090c"}, {0xa7e9, u"\u0961"}, {0xaae9, u"\u0960"}, {0xdbe9, u"\u0962"},
    {0xdce9, u"\u0963"}, {0xdfe9, u"\u0944"}, {0xeae9, u"\u093d"},
};
constexpr CodeText kMacDevanagariTexts[] = {{0xe8e8, u"\u094d\u200c"}, {0xe8e9, u"\u094d\u200d"}};
constexpr CodeText kMacGujaratiPairs[] = {{0xa1e9, u"\u0ad0"}, {0xaae9, u"\u0ae0"}, {0xdfe9, u"\u0ac4"}};
constexpr CodeText kMacGujaratiTexts[] = {{0xe8e8, u"\u0acd\u200c"}, {0xe8e9, u"\u0acd\u200d"}};
constexpr CodeText kMacGurmukhiTexts[] = {
    {0x91, u"\u0a21\u0a3c"}, {0xe8e8, u"\u0a4d\u200c"}, {0xe8e9, u"\u0a4d\u200d"},
};
constexpr CodeText kKOI8CS2Texts[] = {{0xc7, u"ch"}, {0xe7, u"CH"}};
constexpr CodeText kMacHebrewTexts[] = {{0x81, u"\u05f2\u05b7"}, {0xc0, u"\u05dc\u05b9"}, {0xde, u"\u05b8"}};
constexpr CodeText kMacSymbolTexts[] = {{0xe2, u"®"}, {0xe3, u"©"}, {0xe4, u"™"}};
constexpr CodeText kJIS_X0201Runs[] = {{0x5c, u"\u00a5"}, {0x7e, u"\u203e"}};
// clang-format on

struct Row {
  std::string_view name;
  const HighHalf &highHalf;
  /// Further codes, as pairs of bytes, and changes.
  std::span<const CodeText> runs = {};
  /// Codes that are only read.
  std::span<const CodeText> texts = {};
  const Printable *printable = nullptr;
};

const Row kRows[] = {
    {"ISOLatin10", kISOLatin10},
    {"JIS_X0201", kJIS_X0201, kJIS_X0201Runs},
    {"KOI8CS2", kKOI8CS2, {}, kKOI8CS2Texts},
    {"Kamenicky", kKamenicky},
    {"MacArabic", kMacArabic},
    {"MacCroatian", kMacCroatian},
    {"MacDevanagari", kMacDevanagari, kMacDevanagariPairs, kMacDevanagariTexts},
    {"MacDingbats", kMacDingbats, {}, {}, &kMacDingbatsPrintable},
    {"MacFarsi", kMacFarsi},
    {"MacGujarati", kMacGujarati, kMacGujaratiPairs, kMacGujaratiTexts},
    {"MacGurmukhi", kMacGurmukhi, {}, kMacGurmukhiTexts},
    {"MacHebrew", kMacHebrew, {}, kMacHebrewTexts},
    {"MacIcelandic", kMacIcelandic},
    {"MacRomanian", kMacRomanian},
    {"MacSymbol", kMacSymbol, {}, kMacSymbolTexts, &kMacSymbolPrintable},
    {"MacThai", kMacThai},
    {"NextStepLatin", kNextStepLatin},
};

}  // namespace

std::unique_ptr<CodeTable> singleByteCodeTable(std::string_view name) {
  constexpr TableCode kPrintableBegin = 0x20;
  constexpr TableCode kHighHalfBegin = 0x80;
  constexpr TableCode kEnd = 0x100;
  for (const Row &row : kRows) {
    if (row.name != name) continue;
    auto table = std::make_unique<CodeTable>();
    for (TableCode byte = 0; byte < kHighHalfBegin; ++byte) table->set(byte, byte);
    for (TableCode byte = kPrintableBegin; row.printable && byte < kHighHalfBegin; ++byte)
      table->set(byte, (*row.printable)[byte - kPrintableBegin]);
    for (TableCode byte = kHighHalfBegin; byte < kEnd; ++byte)
      table->set(byte, row.highHalf[byte - kHighHalfBegin]);
    setRuns(*table, row.runs);
    setReadOnlyCodes(*table, row.texts);
    return table;
  }
  return nullptr;
}

}  // namespace nimbo
