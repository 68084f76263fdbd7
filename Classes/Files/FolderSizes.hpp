// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

namespace nimbo {

/// Sums the sizes of files in folders that may stand in each other in circles. Folders are numbered from 0, the
/// outermost; each is added, under the next number, to the first one that it is found in, and later, under its
/// number, to all others. Sums that do not fit are the largest number. One thread uses it.
///
///     FolderSizes sizes;
///     sizes.addFile(0, 100);
///     sizes.addFolder(0, 1);
///     sizes.addFolder(1, 0);  // A circle.
///     sizes.total();  // 100
class FolderSizes {
 public:
  /// Adds a file of so many bytes to a folder.
  void addFile(std::uint32_t folder, std::uint64_t bytes);
  /// Adds the folder `inner` to the folder `outer`.
  void addFolder(std::uint32_t outer, std::uint32_t inner);
  /// The size of the outermost folder: of its files, and of the folders in it each time that they are found.
  /// Folders in a circle are like one folder with the files of all. Linear in what was added.
  std::uint64_t total() const;

 private:
  /// That a folder is in another one.
  struct Place {
    std::uint32_t outer;
    std::uint32_t inner;
  };

  std::uint64_t totalOfCircles() const;

  /// The bytes in files of each folder.
  std::vector<std::uint64_t> files_ = {0};
  std::vector<Place> places_;
};

}  // namespace nimbo
