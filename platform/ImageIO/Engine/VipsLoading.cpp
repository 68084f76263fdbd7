// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/VipsLoading.hpp"

#include <algorithm>
#include <cmath>

#include "platform/ImageIO/Engine/ICCProfile.hpp"

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
    if (operation_) set("source", source, "access", VIPS_ACCESS_SEQUENTIAL);
  }

  template <class... Values>
  void set(Values... values) {
    g_object_set(operation_.get(), values..., nullptr);
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

  explicit operator bool() const { return static_cast<bool>(operation_); }

 private:
  VipsPointer<VipsOperation> operation_;
};

/// The image of that number at its full size.
VipsPointer<VipsImage> openPage(const ImageFormat &format, const VipsInput &input, std::uint32_t index) {
  auto first = Loader(format, input.source()).run();
  if (index == 0 || !first) return first;
  if (!format.hasPages) return nullptr;
  Loader loader(format, input.source());
  loader.set("page", pageOfIndex(first.get(), index));
  return loader.run();
}

}  // namespace

VipsPointer<VipsImage> openWithVips(const ImageFormat &format, const VipsInput &input, std::uint32_t index) {
  return openPage(format, input, index);
}

VipsPointer<VipsImage> openSmallerWithVips(const ImageFormat &format, const VipsInput &input,
                                           std::uint32_t index, double shrink) {
  VipsPointer<VipsImage> whole = openPage(format, input, index);
  if (!whole || (shrink < kMinimumFilteredShrink && format.shrinking != LoaderShrinking::scale)) return whole;
  Loader loader(format, input.source());
  if (!loader) return whole;
  if (index > 0) loader.set("page", pageOfIndex(whole.get(), index));
  switch (format.shrinking) {
    case LoaderShrinking::none:
      return whole;
    case LoaderShrinking::factor:
      loader.set("shrink", 1 << halvings(shrink, kMaximumHalvingsOfJPEG));
      break;
    case LoaderShrinking::scale:
      loader.set("scale", 1 / shrink);
      break;
    case LoaderShrinking::resolutions:
      loader.set("page", halvings(shrink, vips_image_get_n_pages(whole.get()) - 1));
      break;
  }
  return loader.run();
}

VipsPointer<VipsImage> openThumbnailWithVips(const ImageFormat &format, const VipsInput &input) {
  Loader loader(format, input.source());
  if (!loader) return nullptr;
  loader.set("thumbnail", TRUE);
  return loader.run();
}

NSString profileNameOfImage(VipsImage *image) {
  const void *bytes = nullptr;
  std::size_t length = 0;
  if (!vips_image_get_typeof(image, VIPS_META_ICC_NAME) ||
      vips_image_get_blob(image, VIPS_META_ICC_NAME, &bytes, &length))
    return {};
  return descriptionOfICCProfile({static_cast<const std::uint8_t *>(bytes), length});
}

}  // namespace nimbo::detail
