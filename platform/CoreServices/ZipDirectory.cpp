// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ZipDirectory.hpp"

#include <gio/gio.h>

#include <algorithm>
#include <memory>

namespace nimbo {
namespace {

using Entry = ZipDirectory::Entry;

constexpr std::string_view kLocalSignature("PK\3\4", 4);
constexpr std::string_view kCentralSignature("PK\1\2", 4);
constexpr std::string_view kEndSignature("PK\5\6", 4);
constexpr std::size_t kLocalHeaderBytes = 30;
constexpr std::size_t kCentralHeaderBytes = 46;
constexpr std::size_t kEndRecordBytes = 22;
constexpr std::size_t kMaximumCommentBytes = 0xffff;
constexpr std::uint16_t kSizesFollowData = 1 << 3;

constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;

struct LocalEntry {
  std::string name;
  std::uint16_t method = kStored;
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
  entry.method = littleEndian16(header, 8);
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

std::vector<Entry> entriesOfCentralDirectory(std::string_view directory) {
  std::vector<Entry> entries;
  while (entries.size() < ZipDirectory::kMaximumEntries && directory.starts_with(kCentralSignature)) {
    const std::size_t nameLength = littleEndian16(directory, 28);
    const std::size_t length =
        kCentralHeaderBytes + nameLength + littleEndian16(directory, 30) + littleEndian16(directory, 32);
    if (length > directory.size()) break;
    entries.push_back({std::string(directory.substr(kCentralHeaderBytes, nameLength)),
                       littleEndian32(directory, 42), littleEndian32(directory, 20)});
    directory.remove_prefix(length);
  }
  return entries;
}

/// Reads archives whose end is missing: goes from entry to entry, as long as their sizes are known.
std::vector<Entry> localEntries(const RandomAccessFile &file) {
  std::vector<Entry> entries;
  std::uint64_t offset = 0;
  std::size_t bytes = 0;
  while (entries.size() < ZipDirectory::kMaximumEntries && bytes < ZipDirectory::kMaximumDirectoryBytes) {
    std::optional<LocalEntry> entry = readLocalEntry(file, offset);
    if (!entry) break;
    bytes += entry->name.size();
    entries.push_back({std::move(entry->name), offset, entry->packedSize});
    if (!entry->sizeKnown) break;
    offset = entry->dataOffset + entry->packedSize;
  }
  return entries;
}

std::string inflated(std::string_view packed, std::size_t count) {
  const std::unique_ptr<GZlibDecompressor, decltype(&g_object_unref)> inflater(
      g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_RAW), &g_object_unref);
  std::string content(count, '\0');
  std::size_t length = 0;
  while (length < count && !packed.empty()) {
    gsize taken = 0, made = 0;
    const GConverterResult result =
        g_converter_convert(G_CONVERTER(inflater.get()), packed.data(), packed.size(), content.data() + length,
                            count - length, G_CONVERTER_NO_FLAGS, &taken, &made, nullptr);
    packed.remove_prefix(taken);
    length += made;
    if (result != G_CONVERTER_CONVERTED) break;
  }
  content.resize(length);
  return content;
}

}  // namespace

const Entry *ZipDirectory::entryNamed(std::string_view name) const {
  const auto found = std::ranges::find(entries, name, &Entry::name);
  return found == entries.end() ? nullptr : &*found;
}

std::optional<ZipDirectory> readZipDirectory(const RandomAccessFile &file) {
  if (!readLocalEntry(file, 0)) return std::nullopt;
  ZipDirectory directory{entriesOfCentralDirectory(centralDirectory(file))};
  if (directory.entries.empty()) directory.entries = localEntries(file);
  return directory;
}

std::string readZipEntry(const RandomAccessFile &file, const ZipDirectory::Entry &entry, std::size_t count) {
  const std::optional<LocalEntry> local = readLocalEntry(file, entry.headerOffset);
  if (!local || (local->method != kStored && local->method != kDeflated)) return std::string();
  std::string content = file.read(local->dataOffset, std::min<std::size_t>(count, entry.packedSize));
  return local->method == kStored ? content : inflated(content, count);
}

}  // namespace nimbo
