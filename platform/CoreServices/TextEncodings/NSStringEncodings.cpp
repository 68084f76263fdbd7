// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

#include <algorithm>
#include <limits>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/CoreServices/TextEncodings/TECConverter.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

namespace nimbo {
namespace {

/// What a buffer has at least.
constexpr std::size_t kSmallestBuffer = 64;
constexpr unichar kByteOrderMark = 0xfeff;
constexpr std::string_view kUTF8Mark = "\xef\xbb\xbf";

template <class Text>
std::span<const std::uint8_t> bytesOf(const Text &text) {
  return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size() * sizeof(text[0])};
}

/// Runs a whole text through a converter. `grow()` answers a longer buffer that begins with what the last one
/// held.
template <class Grow>
bool convertAll(TECConverter &converter, std::span<const std::uint8_t> input, Grow grow, std::size_t *written) {
  std::span<std::uint8_t> buffer = grow();
  *written = 0;
  for (bool flushes = false;;) {
    const std::span<std::uint8_t> output = buffer.subspan(*written);
    const TECResult result = flushes ? converter.flushText(output) : converter.convertText(input, output);
    input = input.subspan(result.consumedBytes);
    *written += result.writtenBytes;
    if (result.status == kTECOutputBufferFullStatus)
      buffer = grow();
    else if (result.status != noErr)
      return false;
    else if (std::exchange(flushes, true))
      return true;
  }
}

NSString decode(std::string_view bytes, CFStringEncoding encoding) {
  std::uint32_t markLength = 0;
  encoding = encodingWithByteOrderMark(encoding, bytes, &markLength);
  if (encoding == kCFStringEncodingUTF8 && bytes.starts_with(kUTF8Mark)) markLength = kUTF8Mark.size();
  bytes.remove_prefix(markLength);
  std::unique_ptr<TECConverter> converter;
  if (TECCreateConverter(converter, encoding, kCFStringEncodingUnicode) != noErr) return NSString();

  NSMutableString units;
  std::size_t written = 0;
  const auto grow = [&] {
    // Most encodings have no more units than bytes.
    const std::size_t length =
        units.length() ? 2 * std::size_t{units.length()} : std::max(bytes.size(), kSmallestBuffer);
    if (length > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("string too long");
    units.setLength(static_cast<std::uint32_t>(length));
    return std::span(reinterpret_cast<std::uint8_t *>(units.mutableCharacters()),
                     sizeof(unichar) * units.length());
  };
  if (!convertAll(*converter, bytesOf(bytes), grow, &written)) return NSString();
  units.setLength(static_cast<std::uint32_t>(written / sizeof(unichar)));
  return std::move(units).string();
}

bool isUnicode(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingUnicode:
    case kCFStringEncodingUTF16BE:
    case kCFStringEncodingUTF16LE:
    case kCFStringEncodingUTF8:
    case kCFStringEncodingUTF32:
    case kCFStringEncodingUTF32BE:
    case kCFStringEncodingUTF32LE:
      return true;
    default:
      return false;
  }
}

/// Nothing is written and false answered when the encoding lacks a character.
bool encode(const NSString &string, CFStringEncoding encoding, std::string *bytes) {
  std::unique_ptr<TECConverter> converter;
  if (TECCreateConverter(converter, kCFStringEncodingUnicode, encoding) != noErr) return false;
  std::u16string marked;
  std::u16string_view units = string.view();
  if ((encoding == kCFStringEncodingUnicode || encoding == kCFStringEncodingUTF32) && !units.empty()) {
    marked.reserve(units.size() + 1);
    marked.push_back(kByteOrderMark);
    marked.append(units);
    units = marked;
  }
  std::size_t written = 0;
  const auto grow = [&] {
    bytes->resize(bytes->empty() ? std::max(units.size(), kSmallestBuffer) : 2 * bytes->size());
    return std::span(reinterpret_cast<std::uint8_t *>(bytes->data()), bytes->size());
  };
  if (!convertAll(*converter, bytesOf(units), grow, &written)) return false;
  bytes->resize(written);
  // Tables may give two characters the same code.
  return isUnicode(encoding) || decode(*bytes, encoding) == string;
}

}  // namespace

NSString initWithData(const NSData &data, NSStringEncoding encoding) {
  const CFStringEncoding number = CFStringConvertNSStringEncodingToEncoding(encoding);
  if (!data || number == kCFStringEncodingInvalidId) return NSString();
  return decode(data.view(), number);
}

NSData dataUsingEncoding(const NSString &string, NSStringEncoding encoding) {
  const CFStringEncoding number = CFStringConvertNSStringEncodingToEncoding(encoding);
  std::string bytes;
  if (!string || number == kCFStringEncodingInvalidId || !encode(string, number, &bytes)) return NSData();
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

bool canBeConvertedToEncoding(const NSString &string, NSStringEncoding encoding) {
  return static_cast<bool>(dataUsingEncoding(string, encoding));
}

NSStringEncoding smallestEncoding(const NSString &string) {
  for (const NSStringEncoding encoding :
       {NSASCIIStringEncoding, NSISOLatin1StringEncoding, NSWindowsCP1252StringEncoding,
        NSMacOSRomanStringEncoding, NSISOLatin2StringEncoding, NSWindowsCP1250StringEncoding,
        NSWindowsCP1251StringEncoding, NSWindowsCP1253StringEncoding, NSWindowsCP1254StringEncoding})
    if (canBeConvertedToEncoding(string, encoding)) return encoding;
  const auto inUTF8 = encodeUTF8(string.view(), InvalidInput::refused);
  const std::size_t inUTF16 = sizeof(unichar) * (string.length() + std::size_t{1});
  return inUTF8 && inUTF8->size() <= inUTF16 ? NSUTF8StringEncoding : NSUnicodeStringEncoding;
}

NSStringEncoding fastestEncoding(const NSString &) {
  return NSUnicodeStringEncoding;
}

}  // namespace nimbo
