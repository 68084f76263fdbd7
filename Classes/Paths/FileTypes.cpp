// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/FileTypes.hpp"

#include <algorithm>
#include <array>

#include "Classes/Characters/UnitPredicates.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr auto kRows = [] {
  using enum FileKinds;
  return std::to_array<FileType>({
#include "FileTypes.inc"
  });
}();

static_assert(std::ranges::all_of(kRows, [](const FileType &row) {
  return row.extension.size() <= kLongestFileTypeExtension;
}));

/// The rows in order of their extensions; those behind `count` are left over from the rows of one extension
/// becoming one.
struct SortedTypes {
  std::array<FileType, kRows.size()> types;
  std::size_t count;
};

constexpr SortedTypes kSorted = [] {
  SortedTypes sorted{kRows, 0};
  std::ranges::sort(sorted.types, {}, &FileType::extension);
  for (const FileType &row : sorted.types) {
    if (sorted.count > 0 && sorted.types[sorted.count - 1].extension == row.extension)
      sorted.types[sorted.count - 1].kinds = sorted.types[sorted.count - 1].kinds | row.kinds;
    else
      sorted.types[sorted.count++] = row;
  }
  return sorted;
}();

}  // namespace

std::span<const FileType> fileTypes() {
  return std::span(kSorted.types).first(kSorted.count);
}

FileKinds kindsOfExtension(std::u16string_view extension) {
  // The table's extensions are small already.
  const auto isBefore = [](const FileType &type, std::u16string_view wanted) {
    return std::ranges::lexicographical_compare(type.extension, wanted, {}, {}, toASCIILower<unichar>);
  };
  const auto types = fileTypes();
  const auto type = std::lower_bound(types.begin(), types.end(), extension, isBefore);
  const bool isKnown =
      type != types.end() && std::ranges::equal(type->extension, extension, {}, {}, toASCIILower<unichar>);
  return isKnown ? type->kinds : FileKinds::none;
}

bool isExtensionOfKinds(const NSString &extension, FileKinds kinds, const unichar *table) {
  unichar folded[kLongestFileTypeExtension];
  if (extension.length() > kLongestFileTypeExtension) return false;
  std::ranges::transform(extension.view(), folded, EntryOf{table});
  return intersects(kindsOfExtension({folded, extension.length()}), kinds);
}

std::vector<NSString> extensionsOfKinds(FileKinds kinds) {
  const auto isListed = [=](const FileType &row) { return intersects(row.kinds, kinds); };
  std::vector<NSString> extensions;
  extensions.reserve(static_cast<std::size_t>(std::ranges::count_if(kRows, isListed)));
  for (const FileType &row : kRows)
    if (isListed(row)) extensions.push_back(NSString::stringWithCharacters(row.extension));
  return extensions;
}

}  // namespace nimbo
