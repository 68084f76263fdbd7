// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/CGContext.hpp"

#include <pixman.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include "platform/CoreGraphics/BoxReduction.hpp"

namespace nimbo {

namespace {

constexpr std::size_t kBytes = CGImage::kBytesPerPixel;

// Pixman is fastest with pixels of this order. It treats all colours alike, so that it does not matter that our
// red is its blue.
constexpr pixman_format_code_t kTransparentFormat = PIXMAN_a8r8g8b8;
constexpr pixman_format_code_t kOpaqueFormat = PIXMAN_x8r8g8b8;

struct Unref {
  void operator()(pixman_image_t *image) const { pixman_image_unref(image); }
};
using PixmanImage = std::unique_ptr<pixman_image_t, Unref>;

/// Raises std::bad_alloc for what could not be made.
PixmanImage made(pixman_image_t *image) {
  if (!image) throw std::bad_alloc();
  return PixmanImage(image);
}

/// Pixman's image of pixels that it borrows. It takes them as words, though it reads them only.
PixmanImage imageOfPixels(const std::uint8_t *pixels, std::uint32_t width, std::uint32_t height,
                          std::size_t bytesPerRow, bool hasAlpha) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-*)
  auto *const words = reinterpret_cast<std::uint32_t *>(const_cast<std::uint8_t *>(pixels));
  return made(pixman_image_create_bits_no_clear(hasAlpha ? kTransparentFormat : kOpaqueFormat,
                                                static_cast<int>(width), static_cast<int>(height), words,
                                                static_cast<int>(bytesPerRow)));
}

/// A length on one axis that pixels cut into: `begin` to `end`, from the left or from the top.
struct Extent {
  double begin = 0;
  double end = 0;

  double length() const { return end - begin; }
  /// Whether there is anything to see of it; what is shorter covers too little of a pixel.
  bool isVisible() const { return length() >= 1.0 / 256 && std::isfinite(length()); }
};

/// The whole pixels that an extent on a canvas of `length` pixels touches, from `first` to before `end`.
struct PixelRange {
  int first = 0;
  int end = 0;

  PixelRange(const Extent &extent, std::uint32_t length)
      : first(static_cast<int>(std::floor(std::clamp<double>(extent.begin, 0, length)))),
        end(static_cast<int>(std::ceil(std::clamp<double>(extent.end, 0, length)))) {}
  int count() const { return end - first; }
  /// Whether each of the pixels is covered wholly.
  bool isCoveredBy(const Extent &extent) const { return extent.begin <= first && extent.end >= end; }
};

/// Cuts `source` to an image of `length` pixels, and `canvas`, into which the whole of it is drawn, by as much.
void cutToImage(Extent &source, Extent &canvas, std::uint32_t length) {
  const double scale = canvas.length() / source.length();
  const Extent cut = {std::max<double>(source.begin, 0), std::min<double>(source.end, length)};
  canvas = {canvas.begin + (cut.begin - source.begin) * scale, canvas.end + (cut.end - source.end) * scale};
  source = cut;
}

/// The part of an image with its ends between pixels where they nearly are: resolutions are rounded, and a
/// sliver of a pixel beside the part must not be seen.
Extent withoutSlivers(const Extent &part) {
  constexpr double kSliver = 1.0 / 16;
  const auto snapped = [](double end) {
    const double whole = std::round(end);
    return std::abs(end - whole) < kSliver ? whole : end;
  };
  return {snapped(part.begin), snapped(part.end)};
}

/// How much of the pixel that begins at `pixel` lies in the extent, from 0 to 1.
double coverage(const Extent &extent, int pixel) {
  return std::clamp(std::min(extent.end, pixel + 1.0) - std::max(extent.begin, double(pixel)), 0.0, 1.0);
}

/// How the pixels of an image are found from those of the canvas, on one axis: canvas pixel 0 is at `offset`.
struct Mapping {
  double scale = 1;
  double offset = 0;
};

pixman_color_t solid(const CGColor &color) {
  const double alpha = std::clamp(color.alpha, 0.0, 1.0);
  const auto component = [alpha](double value) {
    return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, 1.0) * alpha * 0xffff));
  };
  // Red and blue change places here, as they do in the pixels.
  return {component(color.blue), component(color.green), component(color.red),
          static_cast<std::uint16_t>(std::lround(alpha * 0xffff))};
}

/// Of Lanczos' kernel, whose negative parts would make colours brighter than their alpha allows, only images
/// without alpha have the benefit.
pixman_kernel_t kernelFor(CGInterpolationQuality quality, bool hasAlpha) {
  return quality == CGInterpolationQuality::high && !hasAlpha ? PIXMAN_KERNEL_LANCZOS3 : PIXMAN_KERNEL_LINEAR;
}

void setConvolution(pixman_image_t *image, const Mapping &x, const Mapping &y, pixman_kernel_t kernel) {
  // As many places between two pixels are told apart.
  constexpr int kPhaseBits = 5;
  const bool reducesX = x.scale > 1;
  const bool reducesY = y.scale > 1;
  int count = 0;
  // What is reduced is weighed over the width of a new pixel, what is enlarged over that of an old one.
  const std::unique_ptr<pixman_fixed_t, void (*)(void *)> parameters(
      pixman_filter_create_separable_convolution(
          &count, pixman_double_to_fixed(reducesX ? x.scale : 1),
          pixman_double_to_fixed(reducesY ? y.scale : 1), reducesX ? PIXMAN_KERNEL_IMPULSE : kernel,
          reducesY ? PIXMAN_KERNEL_IMPULSE : kernel, reducesX ? kernel : PIXMAN_KERNEL_IMPULSE,
          reducesY ? kernel : PIXMAN_KERNEL_IMPULSE, kPhaseBits, kPhaseBits),
      std::free);
  if (!parameters) throw std::bad_alloc();
  pixman_image_set_filter(image, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, parameters.get(), count);
}

/// Replaces the pixels by averages of them where the scale is so large that `rest` is left of it, and answers
/// what the new ones stand in; null when they stay. A convolution takes time by the square of the scale,
/// averages take it by the pixels alone; what is left to the convolution of a high quality is enough to hide
/// the boxes.
std::unique_ptr<std::uint8_t[]> reduceByBoxes(detail::PixelArea &area, Mapping &x, Mapping &y, double rest) {
  const auto factor = [rest](double scale, std::uint32_t length) {
    return static_cast<std::uint32_t>(std::clamp<double>(std::floor(scale / rest), 1, length));
  };
  const std::uint32_t columns = factor(x.scale, area.width);
  const std::uint32_t rows = factor(y.scale, area.height);
  if (columns == 1 && rows == 1) return nullptr;
  std::unique_ptr<std::uint8_t[]> reduced = detail::reducedByBoxes(area, columns, rows);
  area.width = detail::boxCount(area.width, columns);
  area.height = detail::boxCount(area.height, rows);
  area.pixels = reduced.get();
  area.bytesPerRow = area.width * kBytes;
  x = {x.scale / columns, x.offset / columns};
  y = {y.scale / rows, y.offset / rows};
  return reduced;
}

}  // namespace

struct CGContext::Storage {
  std::unique_ptr<std::uint8_t[]> pixels;
  PixmanImage canvas;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool shouldAntialias = true;
  CGInterpolationQuality quality = CGInterpolationQuality::standard;

  Extent columnsOf(const NSRect &rect) const { return {rect.origin.x, rect.origin.x + rect.size.width}; }
  Extent rowsOf(const NSRect &rect) const {
    return {height - rect.origin.y - rect.size.height, height - rect.origin.y};
  }
  /// The extent with its ends between pixels, unless these may be covered in part.
  Extent edges(const Extent &extent) const {
    return shouldAntialias ? extent : Extent{std::round(extent.begin), std::round(extent.end)};
  }
  void composite(pixman_image_t *source, const Extent &columns, const Extent &rows, CGBlendMode mode,
                 double fraction);
};

/// Lays the source over the rectangle; its pixel 0, 0 is that of the canvas where the rectangle begins.
void CGContext::Storage::composite(pixman_image_t *source, const Extent &columns, const Extent &rows,
                                   CGBlendMode mode, double fraction) {
  const PixelRange x(columns, width);
  const PixelRange y(rows, height);
  const bool replaces = mode == CGBlendMode::copy;
  const auto apply = [&](pixman_op_t operation, pixman_image_t *from, pixman_image_t *mask) {
    pixman_image_composite32(operation, from, mask, canvas.get(), 0, 0, 0, 0, x.first, y.first, x.count(),
                             y.count());
  };
  const auto alpha = static_cast<std::uint16_t>(std::lround(std::clamp(fraction, 0.0, 1.0) * 0xffff));
  const pixman_color_t fractionColor = {0, 0, 0, alpha};
  const PixmanImage constant = made(pixman_image_create_solid_fill(&fractionColor));
  pixman_image_t *const factor = alpha == 0xffff ? nullptr : constant.get();
  if (x.isCoveredBy(columns) && y.isCoveredBy(rows)) {
    apply(replaces ? PIXMAN_OP_SRC : PIXMAN_OP_OVER, source, factor);
    return;
  }
  const auto edgesOf = [&](double whole) {
    PixmanImage mask = made(pixman_image_create_bits(PIXMAN_a8, x.count(), y.count(), nullptr, 0));
    // The row stride is in bytes, though the address is one of words.
    auto *const bytes = static_cast<std::uint8_t *>(static_cast<void *>(pixman_image_get_data(mask.get())));
    for (int row = 0; row < y.count(); ++row) {
      const double part = whole * coverage(rows, y.first + row) * 0xff;
      std::uint8_t *const line = bytes + std::ptrdiff_t{row} * pixman_image_get_stride(mask.get());
      for (int column = 0; column < x.count(); ++column)
        line[column] = static_cast<std::uint8_t>(std::lround(part * coverage(columns, x.first + column)));
    }
    return mask;
  };
  const PixmanImage mask = edgesOf(alpha / double{0xffff});
  if (!replaces) {
    apply(PIXMAN_OP_OVER, source, mask.get());
    return;
  }
  const pixman_color_t opaque = {0, 0, 0, 0xffff};
  const PixmanImage all = made(pixman_image_create_solid_fill(&opaque));
  apply(PIXMAN_OP_OUT_REVERSE, all.get(), edgesOf(1).get());
  apply(PIXMAN_OP_ADD, source, mask.get());
}

CGContext::CGContext(std::uint32_t width, std::uint32_t height) : storage_(std::make_unique<Storage>()) {
  if (width == 0 || height == 0 || width > CGImage::kMaximumSide || height > CGImage::kMaximumSide ||
      std::uint64_t{width} * height > kMaximumPixels)
    return;
  storage_->pixels.reset(new (std::nothrow) std::uint8_t[width * kBytes * height]());
  if (!storage_->pixels) return;
  storage_->width = width;
  storage_->height = height;
  storage_->canvas = imageOfPixels(storage_->pixels.get(), width, height, width * kBytes, true);
}

CGContext::~CGContext() = default;
CGContext::CGContext(CGContext &&) noexcept = default;
CGContext &CGContext::operator=(CGContext &&) noexcept = default;

bool CGContext::isValid() const noexcept {
  return storage_ && storage_->canvas;
}

std::uint32_t CGContext::width() const noexcept {
  return storage_->width;
}

std::uint32_t CGContext::height() const noexcept {
  return storage_->height;
}

bool CGContext::shouldAntialias() const noexcept {
  return storage_->shouldAntialias;
}

void CGContext::setShouldAntialias(bool shouldAntialias) noexcept {
  storage_->shouldAntialias = shouldAntialias;
}

CGInterpolationQuality CGContext::interpolationQuality() const noexcept {
  return storage_->quality;
}

void CGContext::setInterpolationQuality(CGInterpolationQuality quality) noexcept {
  storage_->quality = quality;
}

void CGContext::fillRect(const NSRect &rect, const CGColor &color, CGBlendMode mode) {
  const Extent columns = storage_->edges(storage_->columnsOf(rect));
  const Extent rows = storage_->edges(storage_->rowsOf(rect));
  if (!isValid() || !columns.isVisible() || !rows.isVisible()) return;
  const pixman_color_t value = solid(color);
  const PixmanImage source = made(pixman_image_create_solid_fill(&value));
  storage_->composite(source.get(), columns, rows, mode, 1);
}

void CGContext::drawImage(const NSRect &rect, const CGImage &image, const NSRect &from, CGBlendMode mode,
                          double fraction) {
  Extent columns = storage_->columnsOf(rect);
  Extent rows = storage_->rowsOf(rect);
  Extent fromColumns = withoutSlivers({from.origin.x, from.origin.x + from.size.width});
  Extent fromRows =
      withoutSlivers({image.height() - from.origin.y - from.size.height, image.height() - from.origin.y});
  if (!isValid() || !image || !fromColumns.isVisible() || !fromRows.isVisible()) return;
  cutToImage(fromColumns, columns, image.width());
  cutToImage(fromRows, rows, image.height());
  columns = storage_->edges(columns);
  rows = storage_->edges(rows);
  if (!fromColumns.isVisible() || !fromRows.isVisible() || !columns.isVisible() || !rows.isVisible()) return;
  const PixelRange sourceX(fromColumns, image.width());
  const PixelRange sourceY(fromRows, image.height());
  const PixelRange x(columns, storage_->width);
  const PixelRange y(rows, storage_->height);
  if (sourceX.count() <= 0 || sourceY.count() <= 0 || x.count() <= 0 || y.count() <= 0) return;

  // Only what is asked for is seen of the image, so that nothing beside it gets into its edges.
  detail::PixelArea area = {.pixels = image.pixels() +
                                      static_cast<std::size_t>(sourceY.first) * image.bytesPerRow() +
                                      static_cast<std::size_t>(sourceX.first) * kBytes,
                            .bytesPerRow = image.bytesPerRow(),
                            .width = static_cast<std::uint32_t>(sourceX.count()),
                            .height = static_cast<std::uint32_t>(sourceY.count())};
  const auto mapping = [](const Extent &source, int firstSource, const Extent &canvas, int firstCanvas) {
    const double scale = source.length() / canvas.length();
    return Mapping{scale, source.begin - firstSource + (firstCanvas - canvas.begin) * scale};
  };
  Mapping mapX = mapping(fromColumns, sourceX.first, columns, x.first);
  Mapping mapY = mapping(fromRows, sourceY.first, rows, y.first);

  std::unique_ptr<std::uint8_t[]> reduced;
  const CGInterpolationQuality quality = storage_->quality;
  if (quality != CGInterpolationQuality::none)
    reduced = reduceByBoxes(area, mapX, mapY, quality == CGInterpolationQuality::high ? 2 : 1);

  // What is reduced more is smaller than a pixel.
  const auto fixed = [](double value) {
    return pixman_double_to_fixed(std::min<double>(value, CGImage::kMaximumSide));
  };
  const PixmanImage source =
      imageOfPixels(area.pixels, area.width, area.height, area.bytesPerRow, image.hasAlpha());
  pixman_transform_t transform = {{{fixed(mapX.scale), 0, fixed(mapX.offset)},
                                   {0, fixed(mapY.scale), fixed(mapY.offset)},
                                   {0, 0, pixman_fixed_1}}};
  pixman_image_set_transform(source.get(), &transform);
  pixman_image_set_repeat(source.get(), PIXMAN_REPEAT_PAD);
  const auto isWhole = [](const Mapping &map) {
    return map.scale == 1 && map.offset == std::floor(map.offset);
  };
  if (quality == CGInterpolationQuality::none || (isWhole(mapX) && isWhole(mapY)))
    pixman_image_set_filter(source.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
  else if (quality == CGInterpolationQuality::low)
    pixman_image_set_filter(source.get(), PIXMAN_FILTER_BILINEAR, nullptr, 0);
  else
    setConvolution(source.get(), mapX, mapY, kernelFor(quality, image.hasAlpha()));
  storage_->composite(source.get(), columns, rows, mode, fraction);
}

CGImage CGContext::makeImage() const {
  if (!isValid()) return {};
  const std::size_t size = storage_->width * kBytes * storage_->height;
  std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[size]);
  std::memcpy(copy.get(), storage_->pixels.get(), size);
  return CGImage::imageWithPixels(storage_->width, storage_->height, std::move(copy));
}

}  // namespace nimbo
