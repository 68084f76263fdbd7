// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "platform/PDFKit/PDFEngine.hpp"

namespace nimbo {

namespace {

/// What turns the page as MuPDF shows it into the picture: the area's upper left corner becomes the origin.
fz_matrix matrixOfArea(const NSRect &area, const fz_rect &page, std::uint32_t width, std::uint32_t height) {
  const double x = width / area.size.width;
  const double y = height / area.size.height;
  const double top = page.y1 - area.origin.y - area.size.height;
  const double left = page.x0 + area.origin.x;
  return {static_cast<float>(x),       0, 0, static_cast<float>(y), static_cast<float>(-left * x),
          static_cast<float>(-top * y)};
}

/// Draws the page into pixels that are transparent; throws as MuPDF does.
void drawPage(fz_context *context, pdf_page *page, fz_pixmap *pixels, const fz_matrix &matrix) {
  fz_device *device = nullptr;
  fz_var(device);
  fz_try(context) {
    device = fz_new_draw_device(context, matrix, pixels);
    pdf_run_page(context, page, device, fz_identity, nullptr);
    fz_close_device(context, device);
  }
  fz_always(context) fz_drop_device(context, device);
  fz_catch(context) fz_rethrow(context);
}

}  // namespace

NSSize PDFPage::sizeAsShown() const {
  NSSize size = boundsForBox(PDFDisplayBox::cropBox).size;
  if (rotation() % 180 != 0) std::swap(size.width, size.height);
  return size;
}

CGImage PDFPage::imageOfArea(const NSRect &area, std::uint32_t width, std::uint32_t height,
                             const PDFDrawingOptions &options, NSError *error) const {
  constexpr int kSmoothBits = 8;
  if (width == 0 || height == 0 || width > CGImage::kMaximumSide || height > CGImage::kMaximumSide ||
      std::uint64_t{width} * height > engine_->limits().drawnPixels || !(area.size.width > 0) ||
      !(area.size.height > 0)) {
    setError(error, ErrorCode::tooLarge, "there is no picture of that size");
    return {};
  }
  if (engine_->isLocked()) {
    setError(error, ErrorCode::locked, "the PDF is locked; its pages need a password");
    return {};
  }
  const std::size_t bytesPerRow = width * CGImage::kBytesPerPixel;
  std::unique_ptr<std::uint8_t[]> samples(new std::uint8_t[bytesPerRow * height]());
  bool isFound = false;
  try {
    engine_->runDrawing(width, height, options.deadline, [&](fz_context *context) {
      pdf_page *const page = engine_->pages().loadPage(context, index_);
      isFound = page != nullptr;
      if (!isFound) return;
      fz_pixmap *pixels = nullptr;
      fz_var(pixels);
      fz_try(context) {
        fz_set_aa_level(context, options.shouldAntialias ? kSmoothBits : 0);
        pixels = fz_new_pixmap_with_data(context, fz_device_rgb(context), static_cast<int>(width),
                                         static_cast<int>(height), nullptr, 1, static_cast<int>(bytesPerRow),
                                         samples.get());
        drawPage(context, page, pixels, matrixOfArea(area, pdf_bound_page(context, page), width, height));
      }
      fz_always(context) {
        fz_drop_pixmap(context, pixels);
        fz_drop_page(context, &page->super);
      }
      fz_catch(context) fz_rethrow(context);
    });
    if (const NSError loss = engine_->loss(); loss && error) *error = loss;
  } catch (const detail::PDFFailure &failure) {
    if (error) *error = failure.error;
    if (!isFound || failure.error.errorCode() != ErrorCode::damaged) return {};
  }
  if (!isFound) {
    setError(error, ErrorCode::damaged, "the PDF is damaged: the page is missing");
    return {};
  }
  return CGImage::imageWithPixels(width, height, std::move(samples));
}

}  // namespace nimbo
