// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace nimbo::detail {

/// A part of a picture's pixels, as those of `CGImage`.
struct PixelArea {
  const std::uint8_t *pixels = nullptr;  ///< The first one; borrowed.
  std::size_t bytesPerRow = 0;           ///< From one row to the next.
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

/// The number of boxes of `factor` pixels that a row or column of `length` pixels makes, a smaller last one
/// among them.
constexpr std::uint32_t boxCount(std::uint32_t length, std::uint32_t factor) {
  return (length + factor - 1) / factor;
}

/// The averages of boxes of `columns` by `rows` pixels, from the upper left corner on; those at the far edges
/// may be smaller. Rows follow each other without anything between them.
std::unique_ptr<std::uint8_t[]> reducedByBoxes(const PixelArea &area, std::uint32_t columns,
                                               std::uint32_t rows);

}  // namespace nimbo::detail
