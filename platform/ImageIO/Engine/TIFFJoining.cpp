// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/TIFFJoining.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {
namespace {

static_assert(std::endian::native == std::endian::little, "libtiff writes in the machine's byte order");

constexpr std::size_t kOffsetOfFirstDirectory = 4;
constexpr std::size_t kEntryLength = 12;
constexpr std::uint16_t kStripOffsets = 273;

/// The sizes of the types of values by their numbers.
constexpr std::uint32_t kTypeSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};

template <class Number>
Number numberAt(const std::vector<std::uint8_t> &bytes, std::size_t offset) {
  Number number;
  std::memcpy(&number, &bytes.at(offset), sizeof number);
  return number;
}

template <class Number>
void add(std::vector<std::uint8_t> &bytes, std::size_t offset, std::size_t summand) {
  const auto number = static_cast<Number>(numberAt<Number>(bytes, offset) + summand);
  std::memcpy(&bytes.at(offset), &number, sizeof number);
}

/// Moves what the entry points at; false when it cannot be moved.
bool moveEntry(std::vector<std::uint8_t> &bytes, std::size_t entry, std::size_t base) {
  const auto tag = numberAt<std::uint16_t>(bytes, entry);
  const auto type = numberAt<std::uint16_t>(bytes, entry + 2);
  const auto count = numberAt<std::uint32_t>(bytes, entry + 4);
  if (type >= std::size(kTypeSizes)) return false;
  const std::size_t size = kTypeSizes[type];
  std::size_t values = entry + 8;
  if (size * count > 4) {
    add<std::uint32_t>(bytes, values, base);
    values = numberAt<std::uint32_t>(bytes, values);
  }
  if (tag != kStripOffsets) return true;
  // Short ones would not hold what they become.
  if (size != 4) return base == 0;
  for (std::size_t i = 0; i < count; ++i) add<std::uint32_t>(bytes, values + i * size, base);
  return true;
}

/// Moves the directory of the file that begins at `base`; answers where the number stands that leads to the
/// next one.
std::optional<std::size_t> moveDirectory(std::vector<std::uint8_t> &bytes, std::size_t directory,
                                         std::size_t base) {
  const auto entries = numberAt<std::uint16_t>(bytes, directory);
  std::size_t entry = directory + 2;
  for (int i = 0; i < entries; ++i, entry += kEntryLength)
    if (!moveEntry(bytes, entry, base)) return std::nullopt;
  return entry;
}

}  // namespace

NSData joinedTIFFs(std::span<const NSData> files) {
  std::vector<std::uint8_t> joined;
  std::size_t link = kOffsetOfFirstDirectory;
  for (const NSData &file : files) {
    if (!file.view().starts_with(std::string_view("II*\0", 4))) return {};
    // Numbers stand at even places.
    joined.resize((joined.size() + 1) / 2 * 2);
    const std::size_t base = joined.size();
    if (base + file.length() > NSNotFound) return {};
    joined.insert(joined.end(), file.span().begin(), file.span().end());
    const std::size_t directory = base + numberAt<std::uint32_t>(joined, base + kOffsetOfFirstDirectory);
    const auto next = moveDirectory(joined, directory, base);
    if (!next) return {};
    const auto place = static_cast<std::uint32_t>(directory);
    std::memcpy(&joined.at(link), &place, sizeof place);
    link = *next;
  }
  return NSData::dataWithBytes(joined.data(), joined.size());
}

}  // namespace nimbo::detail
