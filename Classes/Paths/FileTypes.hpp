// SPDX-License-Identifier: Apache-2.0
//
// What files are by their path extensions, from the table Classes/Paths/FileTypes.tsv, which is made at
// compile time. Any thread may ask.
//
//     const FileKinds kinds = kindsOfExtension(u"JPG");
//     intersects(kinds, FileKinds::image | FileKinds::media);  // true
//     for (const NSString &extension : extensionsOfKinds(FileKinds::archive)) NSLog(extension);
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a file is by its path extension: a set of bits, named as in Classes/Paths/FileTypes.tsv.
enum class FileKinds : std::uint32_t {
  none = 0,
  image = 1 << 0,
  /// All sounds and movies, and what plays them.
  media = 1 << 1,
  /// The sounds of the media that browsers play.
  audio = 1 << 2,
  /// The movies of the media that browsers play.
  video = 1 << 3,
  /// The media that need a plug-in.
  embedded = 1 << 4,
  archive = 1 << 5,
  executable = 1 << 6,
  /// Spreadsheets and presentations.
  office = 1 << 7,
  word = 1 << 8,
  openOffice = 1 << 9,
  starOffice = 1 << 10,
  pdf = 1 << 11,
  postScript = 1 << 12,
  richText = 1 << 13,
  data = 1 << 14,
  markup = 1 << 15,
  feed = 1 << 16,
  /// The images that all browsers show.
  webImage = 1 << 17,
  /// What is PDF or has a form as PDF.
  pdfForm = 1 << 18,
  /// Folders that hold a PDF file and what belongs to it.
  pdfBundle = 1 << 19,
};

/// The kinds of both sets.
constexpr FileKinds operator|(FileKinds a, FileKinds b) {
  return static_cast<FileKinds>(static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b));
}

/// The kinds that are in both sets.
constexpr FileKinds operator&(FileKinds a, FileKinds b) {
  return static_cast<FileKinds>(static_cast<std::uint32_t>(a) & static_cast<std::uint32_t>(b));
}

/// Whether a kind is in both sets.
constexpr bool intersects(FileKinds a, FileKinds b) {
  return (a & b) != FileKinds::none;
}

/// How many units the longest extension of the table has.
inline constexpr std::size_t kLongestFileTypeExtension = 11;

/// A row of the table.
struct FileType {
  /// What files of the type are.
  FileKinds kinds;
  /// ASCII without capitals, at most `kLongestFileTypeExtension`.
  std::u16string_view extension;
};

/// All types, one for each extension, in ascending order of these.
std::span<const FileType> fileTypes();

/// What files of this extension are, whatever the case of its ASCII letters; none when it is unknown.
FileKinds kindsOfExtension(std::u16string_view extension);

/// Whether the extension is of one of the kinds, its units compared by a table of `CharacterTables.hpp`. False
/// for nil.
bool isExtensionOfKinds(const NSString &extension, FileKinds kinds, const unichar *table);

/// The extensions that are of one of these kinds, in the order of the table; one that stands in several of its
/// rows may be in the list as often.
std::vector<NSString> extensionsOfKinds(FileKinds kinds);

}  // namespace nimbo
