// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "importers/Packages/DocumentBudget.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

struct archive;

namespace nimbo {

/// Takes the bytes of a part as they are unpacked, and no bytes at their end; answers whether it wants more.
using PartReader = std::function<bool(std::string_view bytes)>;

/// A document that is a zip archive of parts. Parts come in the order of the archive, as often as it is read.
///
///     Package package(path, budget);
///     package.read([&](const std::string &name) {
///       return name == "meta.xml" ? [&](std::string_view bytes) { return stream.read(bytes); } : PartReader();
///     });
class Package {
 public:
  /// Parts behind so many are not looked at.
  static constexpr std::uint32_t kMaximumParts = 1u << 16;

  /// Opens the file; the budget is borrowed. What is wrong goes to the budget.
  Package(const NSString &path, DocumentBudget &budget);

  /// Asks `readerOf` for each part, by its name, who shall read it; nobody to pass over it. Whether the archive
  /// could be read to its end. What is wrong goes to the budget.
  bool read(const std::function<PartReader(const std::string &name)> &readerOf);

  /// The name by which a part is known, whatever its case and its slashes: "word/document.xml".
  static std::string nameOfPart(std::string_view name);
  /// The name of what `target` means in the part: "word/document.xml" and "../a.xml" give "a.xml".
  static std::string nameOfTarget(std::string_view part, std::string_view target);

 private:
  bool readPart(::archive *archive, const PartReader &reader);

  FileDescriptor file_;
  DocumentBudget &budget_;
};

}  // namespace nimbo
