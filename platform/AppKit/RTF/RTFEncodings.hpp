// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/CoreServices/TextEncodings/TECConverter.hpp"

namespace nimbo {

/// The bytes of one encoding as text. One thread uses it at a time.
class RTFDecoder {
 public:
  explicit RTFDecoder(CFStringEncoding encoding);

  /// What each byte is; null when characters of this encoding may have several bytes.
  const char16_t *singleBytes() const noexcept { return isSingleByte_ ? units_.data() : nullptr; }
  /// Whether the byte, at the beginning of a character, has others behind it that may be ASCII.
  bool isLeadByte(std::uint8_t byte) const noexcept;
  /// Appends the text that the bytes are; what is impossible becomes U+FFFD.
  void decode(std::string_view bytes, std::u16string *text);

 private:
  const CFStringEncoding encoding_;
  bool isSingleByte_ = false;
  std::array<char16_t, 256> units_{};
  std::unique_ptr<TECConverter> converter_;
};

/// The decoders of a document's fonts, made when they are first needed.
class RTFDecoders {
 public:
  /// The decoder of an available encoding, which lives as long as this.
  RTFDecoder *decoder(CFStringEncoding encoding);

 private:
  std::map<CFStringEncoding, RTFDecoder> decoders_;
};

/// The encoding of a code page of "\ansicpg" and "\cpg"; `kCFStringEncodingInvalidId` when there is none.
CFStringEncoding encodingOfCodePage(std::int32_t codePage);
/// The encoding of a character set of "\fcharset"; `kCFStringEncodingInvalidId` when it is the document's own.
CFStringEncoding encodingOfCharacterSet(std::int32_t characterSet);

}  // namespace nimbo
