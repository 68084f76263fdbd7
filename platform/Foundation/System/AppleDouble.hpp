// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Foundation/NSData.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a file has beside its content, in the format that RFC 1740 describes: numbered entries, each a row of
/// bytes. It stands in the companion "._name" of a file and in the extended attribute of file servers. It is a
/// plain value.
///
///     auto file = AppleDouble::appleDoubleWithData(data);
///     if (!file) return;
///     const NSData fork = file->entry(AppleDouble::kResourceFork);
///     file->setEntry(AppleDouble::kFinderInfo, info);
///     const NSData bytes = file->data();
class AppleDouble {
 public:
  /// The numbers of the entries that this system knows.
  enum EntryID : std::uint32_t {
    kResourceFork = 2,
    kComment = 4,
    kFileDates = 8,
    kFinderInfo = 9,
    kAFPFileInfo = 14,
  };

  /// The length of a Finder information entry in bytes; more may follow.
  static constexpr std::uint32_t kFinderInfoLength = 32;

  /// An empty companion: Finder information of zeros, and a resource fork of no bytes.
  static AppleDouble companion();
  /// Empty metadata as file servers keep it in an extended attribute: each entry has its place there, and they
  /// refuse other ones.
  static AppleDouble metadata();
  /// Reads the format. Nothing when the bytes are another one, are cut short, or their entries overlap or
  /// have the same number.
  static std::optional<AppleDouble> appleDoubleWithData(const NSData &data);

  /// The bytes of an entry; nil when there is none.
  NSData entry(std::uint32_t number) const;
  /// Makes or replaces an entry; nil removes it. One of the same length stays in its place; else the entries
  /// move together, in their order, with the resource fork behind all others.
  void setEntry(std::uint32_t number, const NSData &data);

  /// The bytes of the format; nil when they would be more than `NSNotFound`.
  NSData data() const;

 private:
  struct Entry {
    std::uint32_t number = 0;
    std::uint32_t offset = 0;
    NSData data;
  };

  AppleDouble() = default;

  /// Where the entry stands in the header; the count of entries when there is none.
  std::size_t indexOf(std::uint32_t number) const;
  /// Moves the entries together behind the header.
  void arrange();

  /// The 16 bytes behind the version, in which the maker may name itself.
  NSData filler_;
  /// In the order of the header.
  std::vector<Entry> entries_;
  /// The whole length in bytes, with what stands behind the last entry.
  std::uint64_t length_ = 0;
};

}  // namespace nimbo
