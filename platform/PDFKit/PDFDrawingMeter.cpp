// SPDX-License-Identifier: Apache-2.0
#include <mupdf/fitz.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

#include <jpeglib.h>

#include "platform/Foundation/System/BigEndian.hpp"
#include "platform/PDFKit/PDFBudget.hpp"

// What takes long where a page is drawn and asks for no memory. The linker sends calls between MuPDF's parts,
// and those into libjpeg, here (--wrap), where they are counted.

namespace nimbo::detail {
namespace {

/// Of what is painted.
constexpr double kPixelsPerWork = 64;
/// A picture of JPEG 2000 is decoded at once; so many samples take about four seconds and four times as many
/// bytes, which come from beside the document's memory.
constexpr std::uint64_t kMaximumSamplesOfJPX = 40'000'000;
/// What libjpeg may hold for a picture whose parts come in several scans.
constexpr long kMaximumMemoryOfJPEG = 256L << 20;
/// Those of real pictures have about ten.
constexpr int kMaximumScansOfJPEG = 100;

void spend(fz_context *context, std::uint64_t work) {
  PDFBudget *const budget = PDFBudget::ofContext(context);
  if (budget && !budget->spend(work)) fz_throw(context, FZ_ERROR_ABORT, "over the limits");
}

/// What is no number is more than any limit.
std::uint64_t workOf(double units) {
  constexpr double kMost = 1e18;
  return units < kMost ? 1 + static_cast<std::uint64_t>(std::max(units, 0.0))
                       : static_cast<std::uint64_t>(kMost);
}

std::uint64_t workOfArea(double width, double height) {
  return workOf(std::max(width, 0.0) * std::max(height, 0.0) / kPixelsPerWork);
}

/// A shading's own functions, which `fz_process_shade` calls by those below.
struct MeteredShade {
  fz_rect scissor;
  fz_shade_prepare_fn *prepare;
  fz_shade_process_fn *process;
  void *argument;
};

void prepareMetered(fz_context *context, void *argument, fz_vertex *vertex, const float *color) {
  const auto &shade = *static_cast<MeteredShade *>(argument);
  shade.prepare(context, shade.argument, vertex, color);
}

void processMetered(fz_context *context, void *argument, fz_vertex *a, fz_vertex *b, fz_vertex *c) {
  const auto &shade = *static_cast<MeteredShade *>(argument);
  const auto [left, right] = std::minmax({a->p.x, b->p.x, c->p.x});
  const auto [top, bottom] = std::minmax({a->p.y, b->p.y, c->p.y});
  const fz_rect seen = fz_intersect_rect({left, top, right, bottom}, shade.scissor);
  spend(context, workOfArea(double{seen.x1} - seen.x0, double{seen.y1} - seen.y0));
  shade.process(context, shade.argument, a, b, c);
}

/// The number of samples that the codestream's header names; 0 when there is none.
std::uint64_t samplesOfJPX(std::string_view data) {
  // The start of the codestream and its first marker; then come two bytes of length, two of capabilities, the
  // width, the height, their offsets, the sides of a tile, their offsets, and the number of components.
  constexpr std::string_view kStart = "\xff\x4f\xff\x51";
  constexpr std::size_t kSides = 8;
  constexpr std::size_t kComponents = 40;
  const std::size_t start = data.find(kStart);
  if (start == data.npos || data.size() - start < kComponents + 2) return 0;
  const auto *const header = reinterpret_cast<const std::uint8_t *>(data.data()) + start;
  const std::uint64_t width = bigEndian(header + kSides, 4);
  const std::uint64_t height = bigEndian(header + kSides + 4, 4);
  const std::uint64_t components = bigEndian(header + kComponents, 2);
  std::uint64_t samples = 0;
  const bool isTooMany = __builtin_mul_overflow(width * components, height, &samples);
  return isTooMany ? UINT64_MAX : samples;
}

void stopAfterManyScans(j_common_ptr decoder) {
  const auto &jpeg = *reinterpret_cast<j_decompress_ptr>(decoder);
  if (jpeg.input_scan_number <= kMaximumScansOfJPEG) return;
  decoder->err->msg_code = 0;
  decoder->err->error_exit(decoder);
}

}  // namespace

extern "C" {

// The linker fixes these names. NOLINTBEGIN(bugprone-reserved-identifier)
decltype(fz_process_shade) __real_fz_process_shade, __wrap_fz_process_shade;
decltype(fz_load_jpx) __real_fz_load_jpx, __wrap_fz_load_jpx;
decltype(jpeg_CreateDecompress) __real_jpeg_CreateDecompress, __wrap_jpeg_CreateDecompress;
decltype(fz_begin_tile_id) __real_fz_begin_tile_id, __wrap_fz_begin_tile_id;

void __wrap_fz_process_shade(fz_context *context, fz_shade *shade, fz_matrix matrix, fz_rect scissor,
                             fz_shade_prepare_fn *prepare, fz_shade_process_fn *process, void *argument) {
  MeteredShade metered{scissor, prepare, process, argument};
  __real_fz_process_shade(context, shade, matrix, scissor, prepareMetered, processMetered, &metered);
}

// The tiles of a pattern may be as many, and each as large, as the canvas lets them.
int __wrap_fz_begin_tile_id(fz_context *context, fz_device *device, fz_rect area, fz_rect view, float stepX,
                            float stepY, fz_matrix matrix, int id) {
  const PDFBudget *const budget = PDFBudget::ofContext(context);
  if (budget && budget->draws()) {
    const double tileX = std::hypot(matrix.a, matrix.b) * std::abs(stepX);
    const double tileY = std::hypot(matrix.c, matrix.d) * std::abs(stepY);
    const fz_rect tile = fz_transform_rect(view, matrix);
    const double width = budget->canvasWidth();
    const double height = budget->canvasHeight();
    const double tiles = (width / tileX + 1) * (height / tileY + 1);
    const double pixels =
        std::min<double>(tile.x1 - tile.x0, width) * std::min<double>(tile.y1 - tile.y0, height);
    spend(context, workOf(tiles * (1 + pixels / kPixelsPerWork)));
  }
  return __real_fz_begin_tile_id(context, device, area, view, stepX, stepY, matrix, id);
}

fz_pixmap *__wrap_fz_load_jpx(fz_context *context, const unsigned char *data, std::size_t size,
                              fz_colorspace *colorspace) {
  const std::uint64_t samples = samplesOfJPX({reinterpret_cast<const char *>(data), size});
  if (samples > kMaximumSamplesOfJPX) fz_throw(context, FZ_ERROR_MINOR, "a picture is too large");
  spend(context, samples);
  return __real_fz_load_jpx(context, data, size, colorspace);
}

void __wrap_jpeg_CreateDecompress(j_decompress_ptr decoder, int version, std::size_t size) {
  static thread_local jpeg_progress_mgr progress = {stopAfterManyScans, 0, 0, 0, 0};
  __real_jpeg_CreateDecompress(decoder, version, size);
  decoder->mem->max_memory_to_use = kMaximumMemoryOfJPEG;
  decoder->progress = &progress;
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"

}  // namespace nimbo::detail
