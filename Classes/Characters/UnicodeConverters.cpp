// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/UnicodeConverters.hpp"

#include <memory>
#include <span>
#include <string_view>

namespace nimbo {
namespace {

std::unique_ptr<TECConverter> UTF8ToUnicodeConverter;
std::unique_ptr<TECConverter> UnicodeToUTF8Converter;
bool initialized = false;

template <class Unit>
std::span<const std::uint8_t> inputBytes(const Unit *units, std::uint32_t count) {
  return {reinterpret_cast<const std::uint8_t *>(units), sizeof(Unit) * static_cast<std::size_t>(count)};
}
template <class Unit>
std::span<std::uint8_t> outputBytes(Unit *units, std::uint32_t count) {
  return {reinterpret_cast<std::uint8_t *>(units), sizeof(Unit) * static_cast<std::size_t>(count)};
}

OSStatus convertShared(TECConverter *converter, std::span<const std::uint8_t> input,
                       std::span<std::uint8_t> output) {
  if (!converter) return kTECCorruptConverterErr;
  converter->clearContextInfo();
  return converter->convertText(input, output).status;
}

bool hasSucceeded(const TECResult &result) {
  return result.status == noErr || result.status == kTECUsedFallbacksStatus;
}

}  // namespace

CFStringEncoding ucs2Encoding = kCFStringEncodingInvalidId;
CFStringEncoding utf8Encoding = kCFStringEncodingInvalidId;

void initUnicodeConverters() {
  if (initialized) return;
  ucs2Encoding = kCFStringEncodingUnicode;
  utf8Encoding = kCFStringEncodingUTF8;
  TECCreateConverter(UTF8ToUnicodeConverter, utf8Encoding, ucs2Encoding);
  TECCreateConverter(UnicodeToUTF8Converter, ucs2Encoding, utf8Encoding);
  initialized = true;
}

OSStatus convertUnicodeToUTF8(const unichar *units, std::uint32_t count, char *out,
                              std::uint32_t outCapacityBytes) {
  return convertShared(UnicodeToUTF8Converter.get(), inputBytes(units, count),
                       outputBytes(out, outCapacityBytes));
}

OSStatus convertUTF8ToUnicode(const char *bytes, std::uint32_t byteCount, unichar *out,
                              std::uint32_t outCapacityUnits) {
  return convertShared(UTF8ToUnicodeConverter.get(), inputBytes(bytes, byteCount),
                       outputBytes(out, outCapacityUnits));
}

OSStatus convertEncodingToUnicode(const char *bytes, std::uint32_t byteCount, CFStringEncoding encoding,
                                  unichar *out, std::uint32_t outCapacityUnits, std::uint32_t *outCount) {
  std::uint32_t ignored = 0;
  if (!outCount) outCount = &ignored;
  *outCount = 0;
  std::uint32_t markLength = 0;
  encoding = encodingWithByteOrderMark(encoding, {bytes, byteCount}, &markLength);
  std::unique_ptr<TECConverter> converter;
  const OSStatus created = TECCreateConverter(converter, encoding, kCFStringEncodingUnicode);
  if (created != noErr) return created;

  const std::span<const std::uint8_t> input = inputBytes(bytes + markLength, byteCount - markLength);
  const std::span<std::uint8_t> output = outputBytes(out, outCapacityUnits);
  TECResult text = converter->convertText(input, output);
  if (text.status == kTECOutputBufferFullStatus) {
    // The rest may be an escape sequence, which needs no room, but is not read without.
    unichar noUnit = 0;
    const TECResult end = converter->convertText(input.subspan(text.consumedBytes), outputBytes(&noUnit, 1));
    if (end.writtenBytes > 0) return 0;
    text.status = end.status;
  }
  if (!hasSucceeded(text)) return 0;
  const TECResult rest = converter->flushText(output.subspan(text.writtenBytes));
  if (!hasSucceeded(rest)) return 0;
  *outCount = static_cast<std::uint32_t>((text.writtenBytes + rest.writtenBytes) / sizeof(unichar));
  return 1;
}

}  // namespace nimbo
