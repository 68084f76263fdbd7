// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TECConverter.hpp"

#include <bit>
#include <string_view>

#include "platform/CoreServices/TextConverters.hpp"

namespace nimbo {

OSStatus TECCreateConverter(std::unique_ptr<TECConverter> &converter, CFStringEncoding from,
                            CFStringEncoding to) {
  constexpr bool kIsLittle = std::endian::native == std::endian::little;
  constexpr std::string_view kIconv = "iconv:";
  constexpr std::string_view kTable = "table:";
  converter.reset();
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
      if (name.starts_with(kIconv))
        converter = makeIconvConverter(name.data() + kIconv.size(), direction);
      else if (name.starts_with(kTable))
        converter = makeSingleByteConverter(name.data() + kTable.size(), direction);
      else
        converter = makeICUConverter(name.data(), direction);
  }
  return converter ? noErr : kTextUnsupportedEncodingErr;
}

}  // namespace nimbo
