// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/AppKit/NSTextAttachment.hpp"
#include "platform/AppKit/RTF/RTFWords.hpp"

namespace nimbo {

/// A kind of picture that RTF holds as it is.
struct RTFPictureKind {
  RTFWord word;
  std::string_view control;
  std::string_view extension;
  /// What the files of the kind begin with.
  std::string_view signature;
};

/// The kind of picture that bytes are; null for others.
const RTFPictureKind *pictureKindOfBytes(std::string_view bytes);

/// A picture while it is read.
class RTFPicture {
 public:
  /// Takes a word of pictures; others say nothing.
  void take(RTFWord word, std::int32_t parameter);
  /// Takes hexadecimal digits; others do not count.
  void takeDigits(std::string_view digits);
  /// Takes bytes.
  void takeBytes(std::string_view bytes) { bytes_ += bytes; }
  /// Takes a property.
  void setProperty(std::u16string_view name, std::u16string_view value);
  std::size_t length() const { return bytes_.size(); }

  /// The picture, named by its number unless it has a name; nil when it is of an unknown kind.
  NSTextAttachment attachment(std::uint32_t number) const;

 private:
  std::optional<NSSize> size() const;

  const RTFPictureKind *kind_ = nullptr;
  std::string bytes_;
  std::uint8_t highDigit_ = 0;
  bool hasHighDigit_ = false;
  std::int32_t width_ = 0, height_ = 0, scaleX_ = 100, scaleY_ = 100;
  std::u16string name_, alternativeText_;
};

/// The name of the property that is a picture's name, and of that which says what it shows.
inline constexpr std::u16string_view kPictureNameProperty = u"wzName";
inline constexpr std::u16string_view kPictureDescriptionProperty = u"wzDescription";

}  // namespace nimbo
