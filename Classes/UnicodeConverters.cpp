// SPDX-License-Identifier: Apache-2.0
#include "Classes/UnicodeConverters.hpp"

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
  UnicodeToUTF8Converter->clearContextInfo();
  return UnicodeToUTF8Converter->convertText(inputBytes(units, count), outputBytes(out, outCapacityBytes))
      .status;
}

OSStatus convertUTF8ToUnicode(const char *bytes, std::uint32_t byteCount, unichar *out,
                              std::uint32_t outCapacityUnits) {
  UTF8ToUnicodeConverter->clearContextInfo();
  return UTF8ToUnicodeConverter->convertText(inputBytes(bytes, byteCount), outputBytes(out, outCapacityUnits))
      .status;
}

OSStatus convertEncodingToUnicode(const char *bytes, std::uint32_t byteCount, CFStringEncoding encoding,
                                  unichar *out, std::uint32_t outCapacityUnits, std::uint32_t *outCount) {
  *outCount = 0;
  std::uint32_t markLength = 0;
  encoding = encodingWithByteOrderMark(encoding, {bytes, byteCount}, &markLength);
  std::unique_ptr<TECConverter> converter;
  const OSStatus created = TECCreateConverter(converter, encoding, kCFStringEncodingUnicode);
  if (created != noErr) return created;

  const std::span<std::uint8_t> output = outputBytes(out, outCapacityUnits);
  const auto succeeded = [](OSStatus status) { return status == noErr || status == kTECUsedFallbacksStatus; };
  const TECResult text = converter->convertText(inputBytes(bytes + markLength, byteCount - markLength), output);
  if (!succeeded(text.status)) return 0;
  const TECResult rest = converter->flushText(output.subspan(text.writtenBytes));
  if (!succeeded(rest.status)) return 0;
  *outCount = static_cast<std::uint32_t>((text.writtenBytes + rest.writtenBytes) / sizeof(unichar));
  return 1;
}

}  // namespace nimbo
