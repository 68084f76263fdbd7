// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "platform/CoreServices/TextEncodings/CodeTableSources.hpp"
#include "platform/CoreServices/TextEncodings/TextConverters.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

// How the East Asian encodings of the old Mac differ from the national sets within: after Perl's Encode, which
// follows the Unicode Consortium's VENDORS/APPLE. Hints for a character's shape are left out; codes that have
// one are only read.
// clang-format off
constexpr CodeText kMacJapaneseRuns[] = {
    {0x5c, u"¥"}, {0x80, u"\\"},
    {0xa0, u"\u00a0｡｢｣､･ｦｧｨｩｪｫｬｭｮｯｰｱｲｳｴｵｶｷｸｹｺｻｼｽｾｿﾀﾁﾂﾃﾄﾅﾆﾇﾈﾉﾊﾋﾌﾍﾎﾏﾐﾑﾒﾓﾔﾕﾖﾗﾘﾙﾚﾛﾜﾝﾞﾟ"}, {0xfd, u"©™"},
    {0x815c, u"—"}, {0x8540, u"①②③④⑤⑥⑦⑧⑨⑩⑪⑫⑬⑭⑮⑯⑰⑱⑲⑳"}, {0x855e, u"⑴⑵⑶⑷⑸⑹⑺⑻⑼⑽⑾⑿⒀⒁⒂⒃⒄⒅⒆⒇"}, {0x857c, u"❶❷❸"},
    {0x8580, u"❹❺❻❼❽❾"}, {0x8592, u"⒈⒉⒊⒋⒌⒍⒎⒏⒐"}, {0x859f, u"ⅠⅡⅢⅣⅤⅥⅦⅧⅨⅩⅪⅫ"}, {0x85b3, u"ⅰⅱⅲⅳⅴⅵⅶⅷⅸⅹⅺⅻ"},
    {0x85db, u"⒜⒝⒞⒟⒠⒡⒢⒣⒤⒥⒦⒧⒨⒩⒪⒫⒬⒭⒮⒯⒰⒱⒲⒳⒴⒵"}, {0x8640, u"㎜㎟㎝㎠㎤"}, {0x8646, u"㎡㎥㎞㎢㎎"},
    {0x864c, u"㎏㏄㎖㎗ℓ㎘㎳㎲㎱㎰℉㏔㏋㎐㎅㎆㎇"}, {0x869b, u"№㏍℡"}, {0x869f, u"♤♧♡♢♠♣♥♦"}, {0x86b3, u"〠☎〄"},
    {0x86c7, u"☞☜☝☟⇆⇄⇅"}, {0x86cf, u"⇨⇦⇧⇩"}, {0x8740, u"㈰㈪㈫㈬㈭㈮㈯㉀㈷㉂㉃㈹㈺㈱㈾㈴㈲㈻㈶㈳㈵㈼㈽㈿㈸"}, {0x8793, u"㊤㊥㊦㊧㊨㊩㊖㊝㊘㊞"},
    {0x879e, u"㊙㍉㌢㍍㌔㌖㌅㌳㍎㌃㌶㌘㌕㌧㍑㍊㌹㍗㌍㍂㌣㌦㌻㌫"}, {0x87bd, u"㌀㌞㌪㌱㍇"}, {0x87e5, u"㍾㍽㍼㍻"}, {0x87fa, u"㍿"},
    {0x8840, u"∮∟⊿"}, {0x8854, u"〝〟"}, {0x8868, u"ゔ"}, {0x886a, u"ヷヸヹヺ"}, {0xeb51, u"︳"}, {0xeb5c, u"︱"},
    {0xeb64, u"︰"}, {0xeb69, u"︵︶︹︺"}, {0xeb6f, u"︷︸︿﹀︽︾﹁﹂﹃﹄︻︼"},
};
constexpr CodeText kMacJapaneseTexts[] = {
    {0xff, u"…"}, {0x8591, u"0."}, {0x85ab, u"XIII"}, {0x85ac, u"XIV"}, {0x85ad, u"XV"}, {0x85bf, u"xiii"},
    {0x85c0, u"xiv"}, {0x85c1, u"xv"}, {0x8645, u"ｍ"}, {0x864b, u"ｇ"}, {0x865d, u"TB"}, {0x869e, u"FAX"},
    {0x86ce, u"↓↑"}, {0x86d3, u"⇨"}, {0x86d4, u"⇦"}, {0x86d5, u"⇧"}, {0x86d6, u"⇩"}, {0x8791, u"大\u20dd"},
    {0x8792, u"小\u20dd"}, {0x879d, u"控\u20dd"}, {0x87fb, u"有限会社"}, {0x87fc, u"財団法人"}, {0xeb41, u"、"},
    {0xeb42, u"。"}, {0xeb50, u"￣"}, {0xeb5b, u"ー"}, {0xeb5d, u"‐"}, {0xeb60, u"〜"}, {0xeb61, u"‖"},
    {0xeb62, u"｜"}, {0xeb63, u"…"}, {0xeb6d, u"［"}, {0xeb6e, u"］"}, {0xeb81, u"＝"}, {0xec9f, u"ぁ"},
    {0xeca1, u"ぃ"}, {0xeca3, u"ぅ"}, {0xeca5, u"ぇ"}, {0xeca7, u"ぉ"}, {0xecc1, u"っ"}, {0xece1, u"ゃ"},
    {0xece3, u"ゅ"}, {0xece5, u"ょ"}, {0xecec, u"ゎ"}, {0xed40, u"ァ"}, {0xed42, u"ィ"}, {0xed44, u"ゥ"},
    {0xed46, u"ェ"}, {0xed48, u"ォ"}, {0xed62, u"ッ"}, {0xed83, u"ャ"}, {0xed85, u"ュ"}, {0xed87, u"ョ"},
    {0xed8e, u"ヮ"}, {0xed95, u"ヵ"}, {0xed96, u"ヶ"},
};
constexpr CodeText kMacChineseSimpRuns[] = {
    {0x81, u"\uf880\uf881"}, {0xa0, u"\u00a0"}, {0xfd, u"©™…"}, {0xa1a4, u"·"}, {0xa1aa, u"—〜"},
    {0xa1ad, u"⋯"}, {0xa1e9, u"¢£"}, {0xa3a4, u"¥"}, {0xa3fe, u"‾"}, {0xa6e0, u"︵︶︹︺︿﹀︽︾﹁﹂﹃﹄"},
    {0xa6ee, u"︻︼︷︸︱"}, {0xa6f4, u"︳︴"}, {0xa8bb, u"ɑḿńňǹɡ"},
};
constexpr CodeText kMacChineseSimpTexts[] = {
    {0x80, u"ü"}, {0xa6d9, u"，"}, {0xa6da, u"。"}, {0xa6db, u"、"}, {0xa6dc, u"："}, {0xa6dd, u"；"},
    {0xa6de, u"！"}, {0xa6df, u"？"}, {0xa6ec, u"〖"}, {0xa6ed, u"〗"}, {0xa6f3, u"⋯"},
};
constexpr CodeText kMacChineseTradRuns[] = {
    {0x81, u"\uf880\uf881"}, {0xa0, u"\u00a0"}, {0xfd, u"©™…"}, {0xa145, u"·"}, {0xa14b, u"⋯"},
    {0xa1c2, u"‾"}, {0xa1e3, u"∼"}, {0xa1f3, u"☉"}, {0xa241, u"／＼"}, {0xa244, u"¥"}, {0xa246, u"¢£"},
};
constexpr CodeText kMacChineseTradTexts[] = {
    {0x80, u"\\"}, {0xa14d, u"，"}, {0xa14e, u"、"}, {0xa14f, u"．"}, {0xa150, u"．"}, {0xa151, u"；"},
    {0xa152, u"："}, {0xa153, u"？"}, {0xa154, u"！"}, {0xa15a, u"＿"}, {0xa17d, u"（"}, {0xa17e, u"）"},
    {0xa1a1, u"｛"}, {0xa1a2, u"｝"}, {0xa1a3, u"〔"}, {0xa1a4, u"〕"}, {0xa1c3, u"‾"}, {0xa1c5, u"＿"},
    {0xa1cb, u"﹋"}, {0xa1fe, u"／"}, {0xa240, u"＼"}, {0xa279, u"│"}, {0xa2cc, u"十"}, {0xa2ce, u"卅"},
};
constexpr CodeText kMacKoreanRuns[] = {
    {0x80, u"\u00a0₩"}, {0x83, u"©"}, {0xa1a9, u"–—‖"}, {0xa1ad, u"〜"}, {0xa1cb, u"¢£¥"}, {0xa1fe, u"¬"},
    {0xa2a6, u"˜"}, {0xa2c1, u"◉"}, {0xa3fe, u"‾"},
};
constexpr CodeText kMacKoreanTexts[] = {
    {0x82, u"–"}, {0x84, u"＿"}, {0xff, u"…"}, {0xa2e6, u"1\u20de"}, {0xa2e7, u"2\u20de"},
    {0xa2e8, u"3\u20de"},
};
// clang-format on

/// The middle dot and the dash as GBK has them, which most pages that name EUC-CN are in.
constexpr CodeText kEUC_CNRuns[] = {{0xa1a4, u"·"}, {0xa1aa, u"—"}};

/// The source has the forms of other makers for some signs.
constexpr CodeText kJIS_C6226Runs[] = {{0x2141, u"〜‖"}, {0x215d, u"−"}, {0x2171, u"¢£"}};

/// How a set's rows and cells are written.
enum class Form {
  /// Bytes from 0x21 to 0x7e, as inside the escape sequences of ISO 2022.
  bare,
  /// The same with the high bits, as in EUC.
  high,
  /// Two rows a first byte, as in Shift JIS.
  shifted,
  /// Rows of 157 cells, as in Big Five.
  bigFive,
};

constexpr unsigned kRowsOfSet = 94;

unsigned cellsOf(Form form) {
  return form == Form::bigFive ? 157 : 94;
}

/// The two bytes of a row and a cell, both from 0.
TableCode codeOf(Form form, unsigned row, unsigned cell) {
  constexpr unsigned kGap = 0x7f;
  unsigned first = 0x21 + row;
  unsigned second = 0x21 + cell;
  if (form == Form::high) {
    first |= 0x80;
    second |= 0x80;
  } else if (form == Form::shifted) {
    first = row / 2 + (row < 62 ? 0x81 : 0xc1);
    second = row % 2 ? 0x9f + cell : 0x40 + cell;
    if (row % 2 == 0 && second >= kGap) ++second;
  } else if (form == Form::bigFive) {
    first |= 0x80;
    second = cell < 63 ? 0x40 + cell : 0xa1 + cell - 63;
  }
  return static_cast<TableCode>(first << 8 | second);
}

struct Row {
  std::string_view name;
  Form form;
  /// How the set's codes are written in the converter that knows it, its name, and what stands before each.
  Form sourceForm;
  const char *source;
  std::string_view prefix = {};
  /// Codes besides the set's, and changes; codes that are only read.
  std::span<const CodeText> runs = {};
  std::span<const CodeText> texts = {};
};

const Row kRows[] = {
    {"CNS_11643_1", Form::bare, Form::high, "iconv:EUC-TW", "\x8e\xa1"},
    {"CNS_11643_2", Form::bare, Form::high, "iconv:EUC-TW", "\x8e\xa2"},
    {"CNS_11643_3", Form::bare, Form::high, "iconv:EUC-TW", "\x8e\xa3"},
    {"EUC_CN", Form::high, Form::high, "iconv:EUC-CN", {}, kEUC_CNRuns},
    {"GB_2312", Form::bare, Form::high, "iconv:EUC-CN"},
    {"JIS_C6226", Form::bare, Form::shifted, "shift_jis78", {}, kJIS_C6226Runs},
    {"JIS_X0208", Form::bare, Form::high, "iconv:EUC-JP"},
    {"JIS_X0212", Form::bare, Form::high, "iconv:EUC-JP", "\x8f"},
    {"MacChineseSimp", Form::high, Form::high, "iconv:EUC-CN", {}, kMacChineseSimpRuns, kMacChineseSimpTexts},
    {"MacChineseTrad",
     Form::bigFive,
     Form::bigFive,
     "iconv:BIG5",
     {},
     kMacChineseTradRuns,
     kMacChineseTradTexts},
    {"MacJapanese", Form::shifted, Form::high, "iconv:EUC-JP", {}, kMacJapaneseRuns, kMacJapaneseTexts},
    {"MacKorean", Form::high, Form::high, "iconv:EUC-KR", {}, kMacKoreanRuns, kMacKoreanTexts},
};

/// The one character of a code; U+FFFD when it has none.
char32_t characterOf(TECConverter &source, std::string_view prefix, TableCode code) {
  std::string bytes(prefix);
  bytes += static_cast<char>(code >> 8);
  bytes += static_cast<char>(code);
  std::array<char16_t, 4> units;
  source.clearContextInfo();
  const TECResult result =
      source.convertText({reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size()},
                         {reinterpret_cast<std::uint8_t *>(units.data()), sizeof units});
  if (result.status != noErr) return CodeTable::kNoCharacter;
  if (result.writtenBytes == sizeof units[0] && !isSurrogate(units[0])) return units[0];
  if (result.writtenBytes == 2 * sizeof units[0] && isHighSurrogate(units[0]))
    return characterOfSurrogates(units[0], units[1]);
  return CodeTable::kNoCharacter;
}

void setSet(CodeTable &table, const Row &row, TECConverter &source) {
  for (unsigned line = 0; line < kRowsOfSet; ++line) {
    std::vector<char32_t> characters;
    for (unsigned cell = 0; cell < cellsOf(row.form); ++cell)
      characters.push_back(characterOf(source, row.prefix, codeOf(row.sourceForm, line, cell)));
    // Bytes that begin no character may be characters themselves.
    if (std::ranges::count(characters, char32_t{CodeTable::kNoCharacter}) == std::ssize(characters)) continue;
    for (unsigned cell = 0; cell < characters.size(); ++cell)
      table.set(codeOf(row.form, line, cell), characters[cell]);
  }
}

}  // namespace

std::unique_ptr<CodeTable> doubleByteCodeTable(std::string_view name) {
  constexpr TableCode kASCIIEnd = 0x80;
  constexpr TableCode kDelete = 0x7f;
  for (const Row &row : kRows) {
    if (row.name != name) continue;
    const auto source = makeNamedConverter(row.source, ConversionDirection::toUnicode);
    if (!source) return nullptr;
    auto table = std::make_unique<CodeTable>();
    for (TableCode byte = 0; byte < kASCIIEnd; ++byte)
      if (row.form != Form::bare || byte <= ' ' || byte == kDelete) table->set(byte, byte);
    setSet(*table, row, *source);
    setRuns(*table, row.runs);
    setReadOnlyCodes(*table, row.texts);
    return table;
  }
  return nullptr;
}

}  // namespace nimbo
