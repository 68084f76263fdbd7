// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/VipsReader.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/ImageIO/Engine/EmbeddedThumbnail.hpp"
#include "platform/ImageIO/Engine/ImageColors.hpp"
#include "platform/ImageIO/Engine/ImageFormats.hpp"
#include "platform/ImageIO/Engine/SVGWork.hpp"
#include "platform/ImageIO/Engine/VipsHeader.hpp"

namespace nimbo::detail {
namespace {

/// What is left of the shrinking for the filter, so that the coarse steps of the decoder do not show.
constexpr double kMinimumFilteredShrink = 1.5;
/// libjpeg halves the sides three times at most.
constexpr int kMaximumHalvingsOfJPEG = 3;

/// The most halvings that leave the filter its part.
int halvings(double shrink, int maximum) {
  int steps = 0;
  while (steps < maximum && shrink / std::exp2(steps + 1) >= kMinimumFilteredShrink) ++steps;
  return steps;
}

/// The number of the image as libvips counts, which does not put the primary image of a HEIF file first.
int pageOfIndex(VipsImage *first, std::uint32_t index) {
  int primary = 0;
  if (vips_image_get_typeof(first, "heif-primary")) vips_image_get_int(first, "heif-primary", &primary);
  const int page = static_cast<int>(index);
  return page <= primary ? page - 1 : page;
}

/// A loader of libvips before it is run.
class Loader {
 public:
  Loader(const ImageFormat &format, VipsSource *source) : operation_(vips_operation_new(format.loader)) {
    set("source", source, "access", VIPS_ACCESS_SEQUENTIAL);
  }

  template <class... Values>
  void set(Values... values) {
    if (operation_) g_object_set(operation_.get(), values..., nullptr);
  }

  /// Null when it fails.
  VipsPointer<VipsImage> run() {
    VipsImage *image = nullptr;
    if (!operation_) return nullptr;
    if (vips_object_build(VIPS_OBJECT(operation_.get())) == 0)
      g_object_get(operation_.get(), "out", &image, nullptr);
    vips_object_unref_outputs(VIPS_OBJECT(operation_.get()));
    return VipsPointer<VipsImage>(image);
  }

 private:
  VipsPointer<VipsOperation> operation_;
};

/// What a decoder holds of an image in memory: all of it when it does not decode row by row.
std::int64_t decodedBytes(VipsImage *image, const ImageFormat &format) {
  const std::int64_t pixels = std::int64_t{vips_image_get_width(image)} * vips_image_get_height(image);
  if (vips_image_get_typeof(image, "jpeg-multiscan"))
    return pixels * vips_image_get_bands(image) * static_cast<std::int64_t>(sizeof(std::int16_t));
  int interlaced = 0;
  if (vips_image_get_typeof(image, "interlaced")) vips_image_get_int(image, "interlaced", &interlaced);
  return format.isDecodedWhole || interlaced ? pixels * static_cast<std::int64_t>(VIPS_IMAGE_SIZEOF_PEL(image))
                                             : 0;
}

bool isTooLarge(VipsImage *image, const ImageFormat &format) {
  return std::int64_t{vips_image_get_width(image)} * vips_image_get_height(image) > kMaximumPixels ||
         decodedBytes(image, format) > kMaximumDecodedBytes;
}

class VipsReader final : public ImageReader {
 public:
  VipsReader(const ImageInput &input, const ImageFormat &format, const Deadline &deadline)
      : input_(input), format_(format), source_(input, deadline) {}

  ImageHeader header(std::uint32_t index) override {
    const auto image = load(index);
    ImageHeader header;
    header.isKnown = true;
    if (image) header = headerOfImage(image.get(), format_, index);
    return header;
  }

  VipsPointer<VipsImage> open(std::uint32_t index, NSError *error) override {
    if (format_.type == u"public.svg-image"_ns && drawsTooMuch(wholeData(input_).view())) {
      setError(error, ErrorCode::tooLarge, "drawing the image would take too long");
      return nullptr;
    }
    auto image = load(index);
    if (!image || !isTooLarge(image.get(), format_)) return image;
    setError(error, ErrorCode::tooLarge, "the image has too many pixels");
    return nullptr;
  }

  VipsPointer<VipsImage> openSmaller(std::uint32_t index, double shrink,
                                     VipsPointer<VipsImage> image) override {
    if (shrink < kMinimumFilteredShrink && format_.shrinking != LoaderShrinking::scale) return image;
    Loader loader(format_, source_.source());
    if (index > 0) loader.set("page", pageOfIndex(image.get(), index));
    switch (format_.shrinking) {
      case LoaderShrinking::none:
        return image;
      case LoaderShrinking::factor:
        loader.set("shrink", 1 << halvings(shrink, kMaximumHalvingsOfJPEG));
        break;
      case LoaderShrinking::scale:
        loader.set("scale", 1 / shrink);
        break;
      case LoaderShrinking::resolutions:
        loader.set("page", halvings(shrink, vips_image_get_n_pages(image.get()) - 1));
        break;
    }
    return loader.run();
  }

  VipsPointer<VipsImage> openThumbnail(std::uint32_t longerSide, bool maySmaller) override {
    if (format_.hasThumbnails) {
      Loader loader(format_, source_.source());
      loader.set("thumbnail", TRUE);
      return loader.run();
    }
    if (format_.type != u"public.jpeg"_ns) return nullptr;
    thumbnail_.data = embeddedThumbnail(input_, longerSide, maySmaller);
    if (thumbnail_.size() == 0) return nullptr;
    thumbnailSource_.emplace(thumbnail_, Deadline::never());
    // Only such are asked for.
    return Loader(format_, thumbnailSource_->source()).run();
  }

 private:
  /// The image of that number at its full size; null when it cannot be read.
  VipsPointer<VipsImage> load(std::uint32_t index) {
    auto first = Loader(format_, source_.source()).run();
    if (index == 0 || !first) return decoded(std::move(first));
    if (!format_.hasPages || index >= static_cast<std::uint32_t>(vips_image_get_n_pages(first.get())))
      return nullptr;
    Loader loader(format_, source_.source());
    loader.set("page", pageOfIndex(first.get(), index));
    return decoded(loader.run());
  }

  /// Without the packing of three values in a word, which no operation takes.
  static VipsPointer<VipsImage> decoded(VipsPointer<VipsImage> image) {
    if (!image || vips_image_get_coding(image.get()) != VIPS_CODING_LABQ) return image;
    return applied(image, [](auto in, auto out) { return vips_LabQ2Lab(in, out, nullptr); });
  }

  const ImageInput &input_;
  const ImageFormat &format_;
  const VipsInput source_;
  ImageInput thumbnail_;
  std::optional<VipsInput> thumbnailSource_;
};

}  // namespace

std::unique_ptr<ImageReader> vipsReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                               const Deadline &deadline) {
  const ImageFormat *format = imageFormatOfBytes(firstBytes);
  if (!format) return nullptr;
  if (format->module) loadVipsModule(format->module);
  return std::make_unique<VipsReader>(input, *format, deadline);
}

}  // namespace nimbo::detail
