// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/TECConverter.hpp"

#include <bit>
#include <string_view>

#include "platform/CoreServices/TextEncodings/TextConverters.hpp"

namespace nimbo {

std::unique_ptr<TECConverter> makeNamedConverter(std::string_view name, ConversionDirection direction) {
  constexpr std::string_view kIconv = "iconv:";
  constexpr std::string_view kTable = "table:";
  if (name.starts_with(kIconv)) return makeIconvConverter(name.data() + kIconv.size(), direction);
  if (name.starts_with(kTable)) return makeTableConverter(name.data() + kTable.size(), direction);
  return makeICUConverter(name.data(), direction);
}

OSStatus TECCreateConverter(std::unique_ptr<TECConverter> &converter, CFStringEncoding from,
                            CFStringEncoding to) {
  constexpr bool kIsLittle = std::endian::native == std::endian::little;
  const std::string_view fromName = converterNameOfEncoding(from);
  const std::string_view toName = converterNameOfEncoding(to);
  if (fromName.empty() || toName.empty()) return kTextUnsupportedEncodingErr;
  if (from != kCFStringEncodingUnicode && to != kCFStringEncodingUnicode) return kTECNoConversionPathErr;

  const bool decodes = to == kCFStringEncodingUnicode;
  const CFStringEncoding other = decodes ? from : to;
  const std::string_view name = decodes ? fromName : toName;
  const auto direction = decodes ? ConversionDirection::toUnicode : ConversionDirection::fromUnicode;
  switch (other) {
    case kCFStringEncodingUnicode:
      converter = makeUTF16Converter(false);
      break;
    case kCFStringEncodingUTF16BE:
      converter = makeUTF16Converter(kIsLittle);
      break;
    case kCFStringEncodingUTF16LE:
      converter = makeUTF16Converter(!kIsLittle);
      break;
    case kCFStringEncodingUTF8:
      converter = makeUTF8Converter(direction);
      break;
    case kCFStringEncodingUTF32:
      converter = makeICUConverter(kIsLittle ? "UTF-32LE" : "UTF-32BE", direction);
      break;
    default:
      converter = makeNamedConverter(name, direction);
  }
  return converter ? noErr : kTextUnsupportedEncodingErr;
}

}  // namespace nimbo
