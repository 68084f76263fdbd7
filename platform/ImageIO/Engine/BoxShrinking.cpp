// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/BoxShrinking.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/ImageIO/Engine/ImageColors.hpp"

namespace nimbo::detail {
namespace {

/// More is left for the filter, whose result is better.
constexpr std::uint32_t kMinimumFilteredShrink = 2;
/// The averages are kept in memory.
constexpr std::uint64_t kMaximumShrunkBytes = std::uint64_t{64} << 20;
constexpr int kMaximumStripRows = 16;

/// Averages boxes of samples whose last band is alpha; a sum of 64 bits holds those of all pixels that there
/// are.
template <class Sample>
class BoxShrinking {
 public:
  BoxShrinking(PixelSize from, PixelSize to, std::size_t bands)
      : from_(from), to_(to), bands_(bands), sums_(to.width * bands), shrunk_(sums_.size() * to.height) {
    for (std::uint32_t x = 0; x <= to.width; ++x) columns_.push_back(start(x, from.width, to.width));
  }

  /// False when the image cannot be decoded by the deadline.
  bool read(VipsImage *image, const Deadline &deadline) {
    const VipsPointer<VipsRegion> region(vips_region_new(image));
    for (std::uint32_t y = 0; y < from_.height;) {
      const std::uint32_t rows = std::min<std::uint32_t>(kMaximumStripRows, from_.height - y);
      const VipsRect strip = {0, static_cast<int>(y), static_cast<int>(from_.width), static_cast<int>(rows)};
      if (deadline.isOver() || vips_region_prepare(region.get(), &strip) != 0) return false;
      for (const std::uint32_t end = y + rows; y < end; ++y) {
        addRow(reinterpret_cast<const Sample *>(VIPS_REGION_ADDR(region.get(), 0, static_cast<int>(y))));
        if (y + 1 == start(row_ + 1, from_.height, to_.height)) finishRow();
      }
    }
    return true;
  }

  /// A copy of the averages under the image's facts.
  VipsPointer<VipsImage> image(VipsImage *original) {
    const VipsPointer<VipsImage> averages(vips_image_new_from_memory_copy(
        shrunk_.data(), shrunk_.size() * sizeof(Sample), static_cast<int>(to_.width),
        static_cast<int>(to_.height), static_cast<int>(bands_), vips_image_get_format(original)));
    if (!averages) return nullptr;
    // A profile and the interpretation go along.
    auto image = applied(averages, [&](auto in, auto out) {
      return vips_copy(in, out, "interpretation", vips_image_get_interpretation(original), nullptr);
    });
    const void *profile = nullptr;
    std::size_t length = 0;
    if (image && vips_image_get_typeof(original, VIPS_META_ICC_NAME) &&
        vips_image_get_blob(original, VIPS_META_ICC_NAME, &profile, &length) == 0)
      vips_image_set_blob_copy(image.get(), VIPS_META_ICC_NAME, profile, length);
    return image;
  }

 private:
  /// Where a box begins: their sizes differ by one pixel at most.
  static std::uint32_t start(std::uint64_t box, std::uint32_t from, std::uint32_t to) {
    return static_cast<std::uint32_t>(box * from / to);
  }

  void addRow(const Sample *samples) {
    const std::size_t last = bands_ - 1;
    std::uint64_t *sums = sums_.data();
    for (std::uint32_t x = 0; x < to_.width; ++x, sums += bands_)
      for (std::uint32_t column = columns_[x]; column < columns_[x + 1]; ++column, samples += bands_) {
        const std::uint32_t alpha = samples[last];
        for (std::size_t band = 0; band < last; ++band) sums[band] += std::uint64_t{samples[band]} * alpha;
        sums[last] += alpha;
      }
  }

  void finishRow() {
    const std::uint32_t rows =
        start(row_ + 1, from_.height, to_.height) - start(row_, from_.height, to_.height);
    Sample *out = shrunk_.data() + row_ * sums_.size();
    for (std::uint32_t x = 0; x < to_.width; ++x) {
      const std::uint64_t *sums = sums_.data() + x * bands_;
      const std::uint64_t alpha = sums[bands_ - 1];
      const std::uint64_t count = std::uint64_t{columns_[x + 1] - columns_[x]} * rows;
      for (std::size_t band = 0; band + 1 < bands_; ++band)
        *out++ = static_cast<Sample>(alpha == 0 ? 0 : (sums[band] + alpha / 2) / alpha);
      *out++ = static_cast<Sample>((alpha + count / 2) / count);
    }
    std::ranges::fill(sums_, 0);
    ++row_;
  }

  const PixelSize from_;
  const PixelSize to_;
  const std::size_t bands_;
  std::vector<std::uint32_t> columns_;
  std::vector<std::uint64_t> sums_;
  std::vector<Sample> shrunk_;
  std::uint32_t row_ = 0;
};

template <class Sample>
VipsPointer<VipsImage> shrunk(VipsImage *image, PixelSize from, PixelSize to, const Deadline &deadline) {
  BoxShrinking<Sample> shrinking(from, to, static_cast<std::size_t>(vips_image_get_bands(image)));
  return shrinking.read(image, deadline) ? shrinking.image(image) : nullptr;
}

}  // namespace

VipsPointer<VipsImage> shrunkByBoxes(VipsPointer<VipsImage> image, PixelSize size, const Deadline &deadline) {
  const PixelSize from = pixelSizeOfImage(image.get());
  const std::uint32_t factor =
      std::min(from.width / size.width, from.height / size.height) / kMinimumFilteredShrink;
  const VipsBandFormat format = vips_image_get_format(image.get());
  const bool isWide = format == VIPS_FORMAT_USHORT;
  if (factor < 2 || !vips_image_hasalpha(image.get()) || (format != VIPS_FORMAT_UCHAR && !isWide)) return image;
  const PixelSize to = {from.width / factor, from.height / factor};
  if (std::uint64_t{to.width} * to.height * VIPS_IMAGE_SIZEOF_PEL(image.get()) > kMaximumShrunkBytes)
    return image;
  return isWide ? shrunk<std::uint16_t>(image.get(), from, to, deadline)
                : shrunk<std::uint8_t>(image.get(), from, to, deadline);
}

}  // namespace nimbo::detail
