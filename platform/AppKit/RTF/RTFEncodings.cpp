// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFEncodings.hpp"

#include <algorithm>
#include <span>
#include <vector>

namespace nimbo {

namespace {

struct NumberedEncoding {
  std::int32_t number;
  CFStringEncoding encoding;
};

constexpr NumberedEncoding kCodePages[] = {
    {437, kCFStringEncodingDOSLatinUS},         {708, kCFStringEncodingISOLatinArabic},
    {737, kCFStringEncodingDOSGreek},           {775, kCFStringEncodingDOSBalticRim},
    {850, kCFStringEncodingDOSLatin1},          {852, kCFStringEncodingDOSLatin2},
    {855, kCFStringEncodingDOSCyrillic},        {857, kCFStringEncodingDOSTurkish},
    {860, kCFStringEncodingDOSPortuguese},      {861, kCFStringEncodingDOSIcelandic},
    {862, kCFStringEncodingDOSHebrew},          {863, kCFStringEncodingDOSCanadianFrench},
    {864, kCFStringEncodingDOSArabic},          {865, kCFStringEncodingDOSNordic},
    {866, kCFStringEncodingDOSRussian},         {874, kCFStringEncodingDOSThai},
    {932, kCFStringEncodingDOSJapanese},        {936, kCFStringEncodingDOSChineseSimplif},
    {949, kCFStringEncodingDOSKorean},          {950, kCFStringEncodingDOSChineseTrad},
    {1250, kCFStringEncodingWindowsLatin2},     {1251, kCFStringEncodingWindowsCyrillic},
    {1252, kCFStringEncodingWindowsLatin1},     {1253, kCFStringEncodingWindowsGreek},
    {1254, kCFStringEncodingWindowsLatin5},     {1255, kCFStringEncodingWindowsHebrew},
    {1256, kCFStringEncodingWindowsArabic},     {1257, kCFStringEncodingWindowsBalticRim},
    {1258, kCFStringEncodingWindowsVietnamese}, {1361, kCFStringEncodingWindowsKoreanJohab},
    {10000, kCFStringEncodingMacRoman},         {10001, kCFStringEncodingMacJapanese},
    {10002, kCFStringEncodingMacChineseTrad},   {10003, kCFStringEncodingMacKorean},
    {10004, kCFStringEncodingMacArabic},        {10005, kCFStringEncodingMacHebrew},
    {10006, kCFStringEncodingMacGreek},         {10007, kCFStringEncodingMacCyrillic},
    {10008, kCFStringEncodingMacChineseSimp},   {10029, kCFStringEncodingMacCentralEurRoman},
    {10081, kCFStringEncodingMacTurkish},       {20866, kCFStringEncodingKOI8_R},
    {54936, kCFStringEncodingGB_18030_2000},    {65001, kCFStringEncodingUTF8},
};

constexpr NumberedEncoding kCharacterSets[] = {
    {77, kCFStringEncodingMacRoman},
    {78, kCFStringEncodingMacJapanese},
    {79, kCFStringEncodingMacKorean},
    {80, kCFStringEncodingMacChineseSimp},
    {81, kCFStringEncodingMacChineseTrad},
    {83, kCFStringEncodingMacHebrew},
    {84, kCFStringEncodingMacArabic},
    {85, kCFStringEncodingMacGreek},
    {86, kCFStringEncodingMacTurkish},
    {87, kCFStringEncodingMacThai},
    {88, kCFStringEncodingMacCentralEurRoman},
    {89, kCFStringEncodingMacCyrillic},
    {128, kCFStringEncodingDOSJapanese},
    {129, kCFStringEncodingDOSKorean},
    {130, kCFStringEncodingWindowsKoreanJohab},
    {134, kCFStringEncodingDOSChineseSimplif},
    {136, kCFStringEncodingDOSChineseTrad},
    {161, kCFStringEncodingWindowsGreek},
    {162, kCFStringEncodingWindowsLatin5},
    {163, kCFStringEncodingWindowsVietnamese},
    {177, kCFStringEncodingWindowsHebrew},
    {178, kCFStringEncodingWindowsArabic},
    {186, kCFStringEncodingWindowsBalticRim},
    {204, kCFStringEncodingWindowsCyrillic},
    {222, kCFStringEncodingDOSThai},
    {238, kCFStringEncodingWindowsLatin2},
    {254, kCFStringEncodingDOSLatinUS},
    {255, kCFStringEncodingDOSLatin1},
};

CFStringEncoding encodingOf(std::span<const NumberedEncoding> table, std::int32_t number) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const auto &row) { return row.number == number; });
  return found != table.end() && CFStringIsEncodingAvailable(found->encoding) ? found->encoding
                                                                              : kCFStringEncodingInvalidId;
}

bool hasSeveralBytes(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingDOSJapanese:
    case kCFStringEncodingDOSChineseSimplif:
    case kCFStringEncodingDOSKorean:
    case kCFStringEncodingDOSChineseTrad:
    case kCFStringEncodingWindowsKoreanJohab:
    case kCFStringEncodingMacJapanese:
    case kCFStringEncodingMacChineseTrad:
    case kCFStringEncodingMacKorean:
    case kCFStringEncodingMacChineseSimp:
    case kCFStringEncodingGB_18030_2000:
    case kCFStringEncodingUTF8:
      return true;
    default:
      return false;
  }
}

}  // namespace

RTFDecoder::RTFDecoder(CFStringEncoding encoding)
    : encoding_(encoding), isSingleByte_(!hasSeveralBytes(encoding)) {
  if (!isSingleByte_) return;
  for (std::size_t byte = 0; byte < units_.size(); ++byte) {
    std::u16string text;
    const char c = static_cast<char>(byte);
    decode({&c, 1}, &text);
    // Bytes without a meaning are those of Windows Latin 1 to whoever writes them: controls.
    units_[byte] = text.size() == 1 && text[0] != 0xfffd ? text[0] : static_cast<char16_t>(byte);
  }
}

bool RTFDecoder::isLeadByte(std::uint8_t byte) const noexcept {
  if (isSingleByte_ || encoding_ == kCFStringEncodingUTF8 || byte <= 0x80 || byte == 0xff) return false;
  const bool isJapanese =
      encoding_ == kCFStringEncodingDOSJapanese || encoding_ == kCFStringEncodingMacJapanese;
  return !isJapanese || byte < 0xa0 || (byte >= 0xe0 && byte < 0xfd);
}

void RTFDecoder::decode(std::string_view bytes, std::u16string *text) {
  if (!converter_ && TECCreateConverter(converter_, encoding_, kCFStringEncodingUnicode) != noErr) return;
  converter_->clearContextInfo();
  alignas(char16_t) std::array<std::uint8_t, 1024> output;
  const auto take = [&](std::size_t count) {
    for (std::size_t i = 0; i + 1 < count; i += 2)
      text->push_back(static_cast<char16_t>(output[i] | output[i + 1] << 8));
  };
  auto rest = std::span(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
  for (;;) {
    const TECResult result = converter_->convertText(rest, output);
    take(result.writtenBytes);
    rest = rest.subspan(result.consumedBytes);
    if (result.status == kTECOutputBufferFullStatus) continue;
    if (rest.empty() && result.status != kTECPartialCharErr && result.status != kTextMalformedInputErr) break;
    // What stands here is no character, or only the beginning of one.
    text->push_back(u'\ufffd');
    converter_->clearContextInfo();
    if (rest.empty() || result.status == kTECPartialCharErr) break;
    rest = rest.subspan(1);
    if (rest.empty()) break;
  }
  take(converter_->flushText(output).writtenBytes);
}

RTFDecoder *RTFDecoders::decoder(CFStringEncoding encoding) {
  return &decoders_.try_emplace(encoding, encoding).first->second;
}

CFStringEncoding encodingOfCodePage(std::int32_t codePage) {
  return encodingOf(kCodePages, codePage);
}

CFStringEncoding encodingOfCharacterSet(std::int32_t characterSet) {
  return encodingOf(kCharacterSets, characterSet);
}

}  // namespace nimbo
