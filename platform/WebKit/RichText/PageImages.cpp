// SPDX-License-Identifier: Apache-2.0
#include <unordered_map>

#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/WebKit/RichText/ImageSize.hpp"
#include "platform/WebKit/RichText/PageText.hpp"
#include "platform/WebKit/RichText/Points.hpp"

namespace nimbo::detail {

namespace {

/// A picture that is in the text, perhaps in many places.
struct Picture {
  NSFileWrapper file;
  std::optional<NSSize> sizeInPixels;
};

/// The file's name: what the address calls it, or "image", with the extension of its kind.
NSString fileNameOf(const WebResource &resource, std::string_view pathExtension) {
  const NSURL url = resource.URL();
  std::string name;
  if (const NSString path = url.escapedPath(); path && !url.isOpaque()) {
    name = path.UTF8String();
    name = bytesByReplacingPercentEscapes(name.substr(name.rfind('/') + 1));
  }
  const std::string suffix = "." + std::string(pathExtension);
  std::string stem = name.substr(0, name.rfind('.'));
  if (stem.empty()) stem = "image";
  const bool hasSuffix = name.ends_with(suffix) || (suffix == ".jpg" && name.ends_with(".jpeg"));
  return NSString::stringWithLossyUTF8String(hasSuffix ? name : stem + suffix);
}

/// The size in points, of what the page says and what the picture says; nothing when neither does.
std::optional<NSSize> sizeOf(const PageImage &image, const std::optional<NSSize> &own) {
  double width = image.width.value_or(own ? own->width : 0);
  double height = image.height.value_or(own ? own->height : 0);
  if (own && image.width && !image.height) height = *image.width * own->height / own->width;
  if (own && image.height && !image.width) width = *image.height * own->width / own->height;
  width = std::min(width, kMaximumImagePixels);
  height = std::min(height, kMaximumImagePixels);
  if (!(width > 0 && height > 0)) return {};
  return NSSize{pointsOfPixels(width), pointsOfPixels(height)};
}

/// Appends parts of a text in their order.
class RunCopier {
 public:
  RunCopier(const NSAttributedString &text, NSMutableAttributedString *output)
      : units_(text.string()), runs_(text.runs()), output_(output) {}

  /// Appends what is in front of the index and was not appended yet.
  void copyUpTo(std::uint32_t index) {
    while (position_ < index) {
      skipRuns();
      const std::uint32_t end = std::min(runs_[run_].end, index);
      output_->append(units_.view().substr(position_, end - position_), runs_[run_].attributes);
      position_ = end;
    }
  }
  /// The attributes of the next unit.
  const TextAttributes &nextAttributes() {
    skipRuns();
    return *runs_[run_].attributes;
  }
  /// Whether the next unit is all of a paragraph that may go.
  bool isParagraph() const {
    const std::u16string_view text = units_.view();
    return text[position_ + 1] == u'\n' && (position_ == 0 || text[position_ - 1] == u'\n');
  }
  /// Passes over units.
  void skip(std::uint32_t count) { position_ += count; }

 private:
  void skipRuns() {
    while (runs_[run_].end <= position_) ++run_;
  }

  NSString units_;
  std::span<const AttributeRun> runs_;
  NSMutableAttributedString *output_;
  std::uint32_t position_ = 0;
  std::size_t run_ = 0;
};

}  // namespace

NSAttributedString textWithImages(const PageText &page, std::span<const WebResource> loaded) {
  if (page.images.empty()) return page.text;
  NSMutableAttributedString output;
  output.reserve(page.text.length(), page.text.runs().size());
  RunCopier copier(page.text, &output);
  std::unordered_map<std::size_t, Picture> pictures;
  for (std::size_t i = 0; i < page.images.size(); ++i) {
    const PageImage &image = page.images[i];
    copier.copyUpTo(image.index);
    TextAttributes attributes = copier.nextAttributes();
    const WebResource resource = i < loaded.size() ? loaded[i] : WebResource();
    const NSData data = resource.data();
    const auto [place, isNew] = pictures.try_emplace(data.identityHash());
    Picture &picture = place->second;
    if (isNew && data)
      if (const auto header = imageHeader(data.view())) {
        picture.sizeInPixels = header->sizeInPixels;
        picture.file =
            NSFileWrapper::regularFileWithContents(data, fileNameOf(resource, header->pathExtension));
      }
    if (picture.file) {
      attributes.attachment =
          NSTextAttachment(picture.file, sizeOf(image, picture.sizeInPixels), image.alternativeText);
      output.append({&NSAttachmentCharacter, 1}, attributes);
    } else {
      output.append(image.alternativeText.view(), attributes);
      const bool isInCell = !attributes.paragraphStyle->textBlocks.empty();
      if (image.alternativeText.length() == 0 && copier.isParagraph() && !isInCell) copier.skip(1);
    }
    copier.skip(1);
  }
  copier.copyUpTo(page.text.length());
  return std::move(output).attributedString();
}

}  // namespace nimbo::detail
