// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/CompoundFileDirectory.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kSignature("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", 8);
constexpr std::size_t kHeaderBytes = 512;
constexpr std::size_t kTableSectorsInHeader = 109;
constexpr std::size_t kEntryBytes = 128;
constexpr std::size_t kMaximumNameBytes = 64;
/// Sector numbers from here on are marks: free, end of chain, part of the allocation table itself.
constexpr std::uint32_t kFirstMark = 0xfffffffa;

/// The sectors of a compound file, and the allocation table that chains them.
class Sectors {
 public:
  Sectors(const RandomAccessFile &file, std::string header, unsigned shift)
      : file_(file), header_(std::move(header)), shift_(shift) {}

  std::size_t bytes() const { return std::size_t{1} << shift_; }
  std::string read(std::uint32_t sector) const {
    return sector >= kFirstMark ? std::string() : file_.read(offset(sector), bytes());
  }

  /// The sector that follows in its chain.
  std::uint32_t next(std::uint32_t sector) {
    const std::uint32_t perSector = static_cast<std::uint32_t>(bytes() / 4);
    const std::uint32_t table = tableSector(sector / perSector);
    if (table >= kFirstMark) return kFirstMark;
    const std::string entry = file_.read(offset(table) + std::uint64_t{sector % perSector} * 4, 4);
    return entry.size() == 4 ? littleEndian32(entry, 0) : kFirstMark;
  }

 private:
  std::uint64_t offset(std::uint32_t sector) const { return (std::uint64_t{sector} + 1) << shift_; }

  /// The sector that holds the allocation table's part `index`: listed in the header, then in a chain of its
  /// own.
  std::uint32_t tableSector(std::uint32_t index) {
    if (index < kTableSectorsInHeader) return littleEndian32(header_, 76 + std::size_t{index} * 4);
    index -= kTableSectorsInHeader;
    const std::uint32_t perSector = static_cast<std::uint32_t>(bytes() / 4 - 1);
    std::uint32_t list = littleEndian32(header_, 68);
    for (std::uint32_t skip = index / perSector; skip > 0; --skip) {
      if (++steps_ > kMaximumCompoundFileSectors) return kFirstMark;
      const std::string sector = read(list);
      if (sector.size() < bytes()) return kFirstMark;
      list = littleEndian32(sector, bytes() - 4);
    }
    const std::string sector = read(list);
    return sector.size() < bytes() ? kFirstMark : littleEndian32(sector, std::size_t{index % perSector} * 4);
  }

  const RandomAccessFile &file_;
  std::string header_;
  unsigned shift_;
  std::size_t steps_ = 0;
};

std::u16string nameOfEntry(std::string_view entry) {
  std::size_t length = littleEndian16(entry, 64);  // In bytes, with the terminating zero.
  length = length < 2 || length > kMaximumNameBytes ? 0 : length - 2;
  std::u16string name;
  for (std::size_t i = 0; i < length; i += 2) name.push_back(littleEndian16(entry, i));
  return name;
}

}  // namespace

std::optional<std::vector<std::u16string>> readCompoundFileRoot(const RandomAccessFile &file) {
  std::string header = file.read(0, kHeaderBytes);
  if (header.size() < kHeaderBytes || !header.starts_with(kSignature)) return std::nullopt;
  std::vector<std::u16string> names;
  const unsigned shift = littleEndian16(header, 30);
  if (shift != 9 && shift != 12) return names;

  std::uint32_t sector = littleEndian32(header, 48);
  Sectors sectors(file, std::move(header), shift);
  std::string directory;
  for (std::size_t count = 0; count < kMaximumCompoundFileSectors && sector < kFirstMark; ++count) {
    const std::string part = sectors.read(sector);
    directory += part;
    if (part.size() < sectors.bytes() || directory.size() >= kMaximumCompoundFileEntries * kEntryBytes) break;
    sector = sectors.next(sector);
  }

  // The children of a storage are a binary tree; entry 0 is the root. Every entry is visited at most once, so
  // that a cycle ends, and the depth costs no stack.
  const std::uint32_t count = static_cast<std::uint32_t>(directory.size() / kEntryBytes);
  std::vector<bool> seen(count);
  std::vector<std::uint32_t> waiting = {littleEndian32(directory, 76)};
  while (!waiting.empty()) {
    const std::uint32_t index = waiting.back();
    waiting.pop_back();
    if (index >= count || seen[index]) continue;
    seen[index] = true;
    const std::string_view entry = std::string_view(directory).substr(index * kEntryBytes, kEntryBytes);
    names.push_back(nameOfEntry(entry));
    waiting.push_back(littleEndian32(entry, 68));
    waiting.push_back(littleEndian32(entry, 72));
  }
  return names;
}

}  // namespace nimbo
