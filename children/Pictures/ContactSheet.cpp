// SPDX-License-Identifier: Apache-2.0
#include "children/Pictures/ContactSheet.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "platform/CoreGraphics/CGContext.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/ImageIO/CGImageSource.hpp"
#include "platform/ImageIO/TextImage.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kMostColumns = 8;
/// In pixels: around a picture in its tile, and around a tile with its name.
constexpr double kMargin = 8;
constexpr double kGap = 8;
constexpr double kNamePointSize = 12;
constexpr double kNameHeight = 20;

constexpr CGColor kSheetColor = {1, 1, 1};
constexpr CGColor kTileColor = {0.94, 0.94, 0.95};
constexpr CGColor kEdgeColor = {0.78, 0.78, 0.8};
constexpr CGColor kNameColor = {0.15, 0.15, 0.15};
constexpr CGColor kKindColor = {0.6, 0.6, 0.63};

void drawWhole(CGContext &context, const CGImage &image, const NSRect &rect) {
  context.drawImage(rect, image, {{0, 0}, {double(image.width()), double(image.height())}});
}

/// A rectangle of a size in the middle of a larger one, on whole pixels.
NSRect centred(NSSize size, const NSRect &room) {
  return {{room.origin.x + std::floor((room.size.width - size.width) / 2),
           room.origin.y + std::floor((room.size.height - size.height) / 2)},
          size};
}

/// A picture on white with an edge, so that pages and transparent parts are seen.
void drawPicture(CGContext &context, const CGImage &image, const NSRect &room) {
  const NSSize whole = {double(image.width()), double(image.height())};
  const double factor = std::min({room.size.width / whole.width, room.size.height / whole.height, 1.0});
  const NSRect rect = centred(
      {std::max(std::round(whole.width * factor), 1.0), std::max(std::round(whole.height * factor), 1.0)},
      room);
  context.fillRect({{rect.origin.x - 1, rect.origin.y - 1}, {rect.size.width + 2, rect.size.height + 2}},
                   kEdgeColor);
  context.fillRect(rect, {1, 1, 1});
  drawWhole(context, image, rect);
}

void drawText(CGContext &context, const NSString &text, double pointSize, const CGColor &color,
              const NSRect &room) {
  const auto widest = static_cast<std::uint32_t>(room.size.width);
  if (const CGImage line = imageWithText(text, pointSize, widest, color))
    drawWhole(context, line, centred({double(line.width()), double(line.height())}, room));
}

void drawCell(CGContext &context, const NSDictionary &cell, const NSRect &tile) {
  context.fillRect(tile, kTileColor);
  const NSRect room = {{tile.origin.x + kMargin, tile.origin.y + kMargin},
                       {tile.size.width - 2 * kMargin, tile.size.height - 2 * kMargin}};
  const NSData data = cell.objectForKey(u"Thumbnail"_ns).data();
  const auto source = data ? CGImageSource::sourceWithData(data) : nullptr;
  if (const CGImage image = source ? source->createImageAtIndex(0, {}) : CGImage())
    drawPicture(context, image, room);
  else
    drawText(context, cell.objectForKey(u"Kind"_ns).string(), tile.size.width / 8, kKindColor, room);
  drawText(context, cell.objectForKey(u"Name"_ns).string(), kNamePointSize, kNameColor,
           {{tile.origin.x, tile.origin.y - kNameHeight}, {tile.size.width, kNameHeight}});
}

}  // namespace

CGImage contactSheet(const NSDictionary &sheet, NSError *error) {
  const NSArray cells = sheet.objectForKey(u"Cells"_ns).array();
  const auto count = static_cast<std::uint32_t>(cells.count());
  if (count == 0) {
    setError(error, ErrorCode::incomplete, "there are no files");
    return {};
  }
  // Cells are a little higher than wide, so the sheet is about as wide as high.
  const auto columns = std::min(static_cast<std::uint32_t>(std::ceil(std::sqrt(double(count)))), kMostColumns);
  const std::uint32_t rows = (count + columns - 1) / columns;
  const double tileSide = double(sheet.objectForKey(u"Side"_ns).integer().value_or(0)) + 2 * kMargin;
  const double cellWidth = tileSide + kGap, cellHeight = tileSide + kNameHeight + kGap;
  const NSSize size = {columns * cellWidth + kGap, rows * cellHeight + kGap};
  CGContext context(static_cast<std::uint32_t>(std::min(size.width, double(CGImage::kMaximumSide) + 1)),
                    static_cast<std::uint32_t>(std::min(size.height, double(CGImage::kMaximumSide) + 1)));
  if (!context.isValid()) {
    setError(error, ErrorCode::tooLarge, "there are too many files for a sheet");
    return {};
  }
  context.setInterpolationQuality(CGInterpolationQuality::high);
  context.fillRect({{0, 0}, size}, kSheetColor);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t row = i / columns;
    const std::uint32_t column = i % columns;
    drawCell(
        context, cells[i].dictionary(),
        {{kGap + column * cellWidth, size.height - kGap - tileSide - row * cellHeight}, {tileSide, tileSide}});
  }
  return context.makeImage();
}

}  // namespace nimbo
