// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A big-endian number in what a file server keeps of a file, and the bits of it that are meant.
struct FinderField {
  /// The entries of the metadata.
  enum class Entry { finderInfo, fileDates, AFPFileInfo };

  /// The one in which it stands.
  Entry entry;
  /// Where it stands there, in bytes.
  std::uint32_t offset;
  /// How long it is, in bytes.
  std::uint32_t size;
  /// The bits that are meant.
  std::uint64_t mask;
};

/// Four characters that tell the type of a file. Folders have none: something else stands there.
inline constexpr FinderField kFinderType = {FinderField::Entry::finderInfo, 0, 4, 0xffffffff};
/// Four characters that tell which program made a file.
inline constexpr FinderField kFinderCreator = {FinderField::Entry::finderInfo, 4, 4, 0xffffffff};
/// The creator behind the type.
inline constexpr FinderField kFinderTypeAndCreator = {FinderField::Entry::finderInfo, 0, 8, ~std::uint64_t{0}};
/// The colour of the label, 0 to 7, one bit further up.
inline constexpr FinderField kFinderLabel = {FinderField::Entry::finderInfo, 8, 2, 0x000e};
/// Whether the name is shown without its extension.
inline constexpr FinderField kFinderHidesExtension = {FinderField::Entry::finderInfo, 8, 2, 0x0010};
/// Whether the resource fork has an icon of the file's own.
inline constexpr FinderField kFinderHasCustomIcon = {FinderField::Entry::finderInfo, 8, 2, 0x0400};
/// When the file was made, in seconds since 2000-01-01 UTC, of two's complement.
inline constexpr FinderField kServerCreationDate = {FinderField::Entry::fileDates, 0, 4, 0xffffffff};
/// Whether the file must not be written, renamed and deleted.
inline constexpr FinderField kServerLock = {FinderField::Entry::AFPFileInfo, 2, 2, 0x01a0};

/// A creation date that is not known.
inline constexpr std::uint64_t kNoServerDate = 0x80000000;

/// The bits of the field; those that nobody set are 0, and the date is `kNoServerDate`.
///
///     const bool isHidden = finderField(path, kFinderHidesExtension) != 0;
///     NSError error;
///     if (!setFinderField(path, kFinderHidesExtension, 0x10, &error)) NSLog(error.localizedFailureReason);
std::uint64_t finderField(const NSString &path, const FinderField &field);
/// Sets the bits of the field that are meant and no others, in the extended attribute of the file. False when
/// that is not possible; `*error` says why.
bool setFinderField(const NSString &path, const FinderField &field, std::uint64_t value,
                    NSError *error = nullptr);

}  // namespace nimbo
