// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFPicture.hpp"

#include <algorithm>
#include <array>

#include "platform/AppKit/RTF/RTFUnits.hpp"

namespace nimbo {

namespace {

using namespace std::string_view_literals;

constexpr RTFPictureKind kKinds[] = {
    {RTFWord::pngblip_, "\\pngblip", "png", "\x89PNG\r\n\x1a\n"sv},
    {RTFWord::jpegblip_, "\\jpegblip", "jpg", "\xff\xd8\xff"sv},
    {RTFWord::emfblip_, "\\emfblip", "emf", "\x01\x00\x00\x00"sv},
    {RTFWord::wmetafile_, "\\wmetafile8", "wmf", "\x01\x00\x09\x00"sv},
};

/// Where the signature of an enhanced metafile stands, which begins as other files do.
constexpr std::size_t kEMFSignatureOffset = 40;
constexpr std::string_view kEMFSignature = " EMF";

/// The header of a placeable metafile, which pictures of RTF do without.
constexpr std::string_view kPlaceableSignature = "\xd7\xcd\xc6\x9a"sv;

constexpr std::int32_t kMaximumScale = 100'000;
constexpr std::uint8_t kNoDigit = 0xff;

constexpr auto kDigits = [] {
  std::array<std::uint8_t, 256> digits{};
  digits.fill(kNoDigit);
  for (std::uint8_t i = 0; i < 10; ++i) digits['0' + i] = i;
  for (std::uint8_t i = 10; i < 16; ++i) digits['a' + i - 10] = digits['A' + i - 10] = i;
  return digits;
}();

NSString stringOf(std::u16string_view units) {
  return NSString::stringWithCharacters(units);
}

}  // namespace

const RTFPictureKind *pictureKindOfBytes(std::string_view bytes) {
  if (bytes.starts_with(kPlaceableSignature)) return nullptr;
  for (const RTFPictureKind &kind : kKinds)
    if (bytes.starts_with(kind.signature) &&
        (kind.word != RTFWord::emfblip_ ||
         (bytes.size() > kEMFSignatureOffset && bytes.substr(kEMFSignatureOffset).starts_with(kEMFSignature))))
      return &kind;
  return nullptr;
}

void RTFPicture::take(RTFWord word, std::int32_t parameter) {
  const auto *const kind =
      std::find_if(std::begin(kKinds), std::end(kKinds), [&](const auto &k) { return k.word == word; });
  if (kind != std::end(kKinds)) {
    kind_ = kind;
    return;
  }
  switch (word) {
    case RTFWord::picwgoal_:
      width_ = std::clamp(parameter, 0, kMaximumTwips);
      return;
    case RTFWord::pichgoal_:
      height_ = std::clamp(parameter, 0, kMaximumTwips);
      return;
    case RTFWord::picscalex_:
      scaleX_ = std::clamp(parameter, 1, kMaximumScale);
      return;
    case RTFWord::picscaley_:
      scaleY_ = std::clamp(parameter, 1, kMaximumScale);
      return;
    default:
      return;
  }
}

void RTFPicture::takeDigits(std::string_view digits) {
  bytes_.reserve(std::max(bytes_.capacity(), bytes_.size() + digits.size() / 2 + 1));
  for (const char c : digits) {
    const std::uint8_t digit = kDigits[static_cast<std::uint8_t>(c)];
    if (digit == kNoDigit) continue;
    if (hasHighDigit_)
      bytes_.push_back(static_cast<char>(highDigit_ << 4 | digit));
    else
      highDigit_ = digit;
    hasHighDigit_ = !hasHighDigit_;
  }
}

void RTFPicture::setProperty(std::u16string_view name, std::u16string_view value) {
  if (name == kPictureNameProperty) name_ = value;
  if (name == kPictureDescriptionProperty) alternativeText_ = value;
}

std::optional<NSSize> RTFPicture::size() const {
  if (width_ == 0 || height_ == 0) return {};
  return NSSize{pointsOfTwips(width_) * scaleX_ / 100, pointsOfTwips(height_) * scaleY_ / 100};
}

NSTextAttachment RTFPicture::attachment(std::uint32_t number) const {
  if (!kind_ || bytes_.empty()) return {};
  NSString name = stringOf(name_);
  if (name_.empty()) {
    const std::string plain = "picture" + std::to_string(number) + "." + std::string(kind_->extension);
    name = NSString::stringWithUTF8String(plain);
  }
  const NSFileWrapper file =
      NSFileWrapper::regularFileWithContents(NSData::dataWithBytes(bytes_.data(), bytes_.size()), name);
  return NSTextAttachment(file, size(), alternativeText_.empty() ? NSString() : stringOf(alternativeText_));
}

}  // namespace nimbo
