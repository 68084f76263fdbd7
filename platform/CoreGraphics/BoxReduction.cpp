// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/BoxReduction.hpp"

#include <algorithm>
#include <vector>

#include "platform/CoreGraphics/CGImage.hpp"

namespace nimbo::detail {

std::unique_ptr<std::uint8_t[]> reducedByBoxes(const PixelArea &area, std::uint32_t columns,
                                               std::uint32_t rows) {
  constexpr std::size_t kBytes = CGImage::kBytesPerPixel;
  const std::uint32_t width = boxCount(area.width, columns);
  const std::uint32_t height = boxCount(area.height, rows);
  std::unique_ptr<std::uint8_t[]> reduced(new std::uint8_t[std::size_t{width} * height * kBytes]);
  std::uint8_t *out = reduced.get();
  // A column of at most `kMaximumSide` bytes fits, and so does the box below.
  std::vector<std::uint32_t> sums(std::size_t{area.width} * kBytes);
  for (std::uint32_t y = 0; y < area.height; y += rows) {
    const std::uint32_t boxRows = std::min(rows, area.height - y);
    std::ranges::fill(sums, 0);
    for (std::uint32_t row = y; row < y + boxRows; ++row) {
      const std::uint8_t *const bytes = area.pixels + row * area.bytesPerRow;
      for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += bytes[i];
    }
    for (std::uint32_t x = 0; x < area.width; x += columns) {
      const std::uint32_t boxColumns = std::min(columns, area.width - x);
      std::uint64_t box[kBytes] = {};
      for (std::uint32_t column = x; column < x + boxColumns; ++column)
        for (std::size_t i = 0; i < kBytes; ++i) box[i] += sums[column * kBytes + i];
      const std::uint64_t count = std::uint64_t{boxColumns} * boxRows;
      for (const std::uint64_t sum : box) *out++ = static_cast<std::uint8_t>((sum + count / 2) / count);
    }
  }
  return reduced;
}

}  // namespace nimbo::detail
