// SPDX-License-Identifier: Apache-2.0
//
// Conversions in pieces, to or from UTF-16:
//
//     std::unique_ptr<TECConverter> converter;
//     if (TECCreateConverter(converter, kCFStringEncodingUTF8, kCFStringEncodingUnicode) != noErr) return;
//     std::array<std::uint8_t, 64> output;
//     const TECResult result = converter->convertText(data.span(), output);
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The status of a call: one of the numbers below.
using OSStatus = std::int32_t;

/// What conversions answer.
enum : OSStatus {
  noErr = 0,
  kTextUnsupportedEncodingErr = -8738,
  /// The next bytes are impossible in their encoding.
  kTextMalformedInputErr = -8739,
  /// There is no converter.
  kTECCorruptConverterErr = -8748,
  /// Neither side is UTF-16.
  kTECNoConversionPathErr = -8749,
  /// The input ends within a character.
  kTECPartialCharErr = -8753,
  /// The next character does not exist in the encoding of the output.
  kTECUnmappableElementErr = -8754,
  /// All is converted, but U+FFFD stands where a table gives a code no meaning.
  kTECUsedFallbacksStatus = -8783,
  kTECOutputBufferFullStatus = -8785,
};

/// What one call did.
struct TECResult {
  /// Why it did no more: one of the statuses above.
  OSStatus status = noErr;
  /// How many bytes of the input are done with.
  std::size_t consumedBytes = 0;
  /// How many bytes of output there are.
  std::size_t writtenBytes = 0;
};

/// Converts text from one encoding to another, one text at a time, in as many calls as one likes. It carries
/// state between calls, so no two threads may use the same at once. Destroying it disposes of it.
class TECConverter {
 public:
  virtual ~TECConverter() = default;

  /// Goes on with the text. Give what was not consumed again, with what follows: after `kTECPartialCharErr`,
  /// when the input ends within a character (whose first bytes may be kept here, or be left unconsumed), and
  /// after `kTECOutputBufferFullStatus`, even if nothing is left. The buffers must not overlap; those of UTF-16
  /// stand at even addresses. An empty one may be null.
  virtual TECResult convertText(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) = 0;

  /// Ends the text: writes what is held back, as the escape sequence that leads back to the initial state.
  virtual TECResult flushText(std::span<std::uint8_t> output) = 0;

  /// Forgets the text, ready for another.
  virtual void clearContextInfo() = 0;
};

/// Makes a converter of which one side is `kCFStringEncodingUnicode`: UTF-16 in the order of this machine, in
/// which a byte order mark is a character like any other. Answers `noErr`, or a status without making one.
OSStatus TECCreateConverter(std::unique_ptr<TECConverter> &converter, CFStringEncoding from,
                            CFStringEncoding to);

}  // namespace nimbo
