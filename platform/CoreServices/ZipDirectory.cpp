// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ZipDirectory.hpp"

#include <algorithm>

namespace nimbo {
namespace {

constexpr std::string_view kLocalSignature("PK\3\4", 4);
constexpr std::string_view kCentralSignature("PK\1\2", 4);
constexpr std::string_view kEndSignature("PK\5\6", 4);
constexpr std::size_t kLocalHeaderBytes = 30;
constexpr std::size_t kCentralHeaderBytes = 46;
constexpr std::size_t kEndRecordBytes = 22;
constexpr std::size_t kMaximumCommentBytes = 0xffff;
constexpr std::uint16_t kSizesFollowData = 1 << 3;

struct LocalEntry {
  std::string name;
  bool stored = false;
  bool sizeKnown = false;
  std::uint64_t dataOffset = 0;
  std::uint32_t packedSize = 0;
};

std::optional<LocalEntry> readLocalEntry(const RandomAccessFile &file, std::uint64_t offset) {
  const std::string header = file.read(offset, kLocalHeaderBytes);
  if (header.size() < kLocalHeaderBytes || !header.starts_with(kLocalSignature)) return std::nullopt;
  const std::uint16_t nameLength = littleEndian16(header, 26);
  LocalEntry entry;
  entry.name = file.read(offset + kLocalHeaderBytes, nameLength);
  entry.stored = littleEndian16(header, 8) == 0;
  entry.sizeKnown = !(littleEndian16(header, 6) & kSizesFollowData);
  entry.packedSize = littleEndian32(header, 18);
  entry.dataOffset = offset + kLocalHeaderBytes + nameLength + littleEndian16(header, 28);
  return entry;
}

/// The bytes of the central directory, found through the record at the end of the file.
std::string centralDirectory(const RandomAccessFile &file) {
  const std::uint64_t tailSize = std::min<std::uint64_t>(file.size, kEndRecordBytes + kMaximumCommentBytes);
  const std::string tail = file.read(file.size - tailSize, static_cast<std::size_t>(tailSize));
  if (tail.size() < kEndRecordBytes) return std::string();
  const std::size_t end = tail.rfind(kEndSignature, tail.size() - kEndRecordBytes);
  if (end == std::string::npos) return std::string();
  // It stands right before the end record. The offset that the record holds is wrong when something precedes
  // the archive.
  const std::uint64_t size = littleEndian32(tail, end + 12);
  const std::uint64_t endOffset = file.size - tailSize + end;
  if (size > endOffset) return std::string();
  return file.read(endOffset - size, std::min<std::uint64_t>(size, ZipDirectory::kMaximumDirectoryBytes));
}

std::vector<std::string> namesOfCentralDirectory(std::string_view directory) {
  std::vector<std::string> names;
  while (names.size() < ZipDirectory::kMaximumEntries && directory.starts_with(kCentralSignature)) {
    const std::size_t nameLength = littleEndian16(directory, 28);
    const std::size_t length =
        kCentralHeaderBytes + nameLength + littleEndian16(directory, 30) + littleEndian16(directory, 32);
    if (length > directory.size()) break;
    names.emplace_back(directory.substr(kCentralHeaderBytes, nameLength));
    directory.remove_prefix(length);
  }
  return names;
}

/// Reads archives whose end is missing: goes from entry to entry, as long as their sizes are known.
std::vector<std::string> namesOfLocalEntries(const RandomAccessFile &file) {
  std::vector<std::string> names;
  std::uint64_t offset = 0;
  std::size_t bytes = 0;
  while (names.size() < ZipDirectory::kMaximumEntries && bytes < ZipDirectory::kMaximumDirectoryBytes) {
    std::optional<LocalEntry> entry = readLocalEntry(file, offset);
    if (!entry) break;
    bytes += entry->name.size();
    names.push_back(std::move(entry->name));
    if (!entry->sizeKnown) break;
    offset = entry->dataOffset + entry->packedSize;
  }
  return names;
}

}  // namespace

std::optional<ZipDirectory> readZipDirectory(const RandomAccessFile &file) {
  const std::optional<LocalEntry> first = readLocalEntry(file, 0);
  if (!first) return std::nullopt;
  ZipDirectory directory;
  if (first->name == "mimetype" && first->stored && first->packedSize <= ZipDirectory::kMaximumMIMETypeBytes)
    directory.mimetype = file.read(first->dataOffset, first->packedSize);
  directory.names = namesOfCentralDirectory(centralDirectory(file));
  if (directory.names.empty()) directory.names = namesOfLocalEntries(file);
  return directory;
}

}  // namespace nimbo
