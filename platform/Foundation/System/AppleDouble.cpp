// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/AppleDouble.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/System/BigEndian.hpp"

namespace nimbo {
namespace {

using namespace std::string_view_literals;

constexpr std::uint32_t kMagic = 0x00051607;
constexpr std::uint32_t kVersion = 0x00020000;
constexpr std::uint32_t kFillerOffset = 8;
constexpr std::uint32_t kFillerLength = 16;
constexpr std::uint32_t kCountOffset = kFillerOffset + kFillerLength;
constexpr std::uint32_t kHeaderLength = kCountOffset + 2;
/// Number, offset and length of an entry, four bytes each.
constexpr std::uint32_t kDescriptorLength = 12;

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

NSData zeros(std::size_t length) {
  return dataOf(std::string(length, '\0'));
}

}  // namespace

AppleDouble AppleDouble::companion() {
  AppleDouble result;
  result.filler_ = zeros(kFillerLength);
  result.entries_ = {{kFinderInfo, 0, zeros(kFinderInfoLength)}, {kResourceFork, 0, NSData::data()}};
  result.arrange();
  return result;
}

AppleDouble AppleDouble::metadata() {
  // "No date": the earliest one, which each of the four dates holds.
  constexpr std::string_view kNoDates = "\x80\0\0\0\x80\0\0\0\x80\0\0\0\x80\0\0\0"sv;
  AppleDouble result;
  result.filler_ = zeros(kFillerLength);
  // The last four are the server's cache of the file's device, inode, time and number.
  result.entries_ = {
      {kFinderInfo, 122, zeros(kFinderInfoLength)},
      {kComment, 154, NSData::data()},
      {kFileDates, 354, dataOf(kNoDates)},
      {kAFPFileInfo, 370, zeros(4)},
      {0x80444556, 374, NSData::data()},
      {0x80494e4f, 382, NSData::data()},
      {0x8053594e, 390, NSData::data()},
      {0x8053567e, 398, NSData::data()},
  };
  result.length_ = 402;
  return result;
}

std::optional<AppleDouble> AppleDouble::appleDoubleWithData(const NSData &data) {
  const std::uint8_t *bytes = data.bytes();
  const std::uint64_t length = data.length();
  if (length < kHeaderLength || bigEndian(bytes, 4) != kMagic || bigEndian(bytes + 4, 4) != kVersion)
    return std::nullopt;
  const std::uint64_t count = bigEndian(bytes + kCountOffset, 2);
  const std::uint64_t first = kHeaderLength + count * kDescriptorLength;
  if (first > length) return std::nullopt;
  AppleDouble result;
  result.filler_ = data.subdataWithRange({kFillerOffset, kFillerLength});
  result.length_ = length;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> places;
  std::vector<std::uint32_t> numbers;
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint8_t *descriptor = bytes + kHeaderLength + i * kDescriptorLength;
    const std::uint64_t offset = bigEndian(descriptor + 4, 4), size = bigEndian(descriptor + 8, 4);
    if (offset < first || offset + size > length) return std::nullopt;
    if (size > 0) places.emplace_back(offset, offset + size);
    numbers.push_back(static_cast<std::uint32_t>(bigEndian(descriptor, 4)));
    const NSRange range = {static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(size)};
    result.entries_.push_back({numbers.back(), range.location, data.subdataWithRange(range)});
  }
  std::sort(numbers.begin(), numbers.end());
  if (std::adjacent_find(numbers.begin(), numbers.end()) != numbers.end()) return std::nullopt;
  std::sort(places.begin(), places.end());
  const auto overlap = [](const auto &a, const auto &b) { return b.first < a.second; };
  if (std::adjacent_find(places.begin(), places.end(), overlap) != places.end()) return std::nullopt;
  return result;
}

std::size_t AppleDouble::indexOf(std::uint32_t number) const {
  return static_cast<std::size_t>(std::find_if(entries_.begin(), entries_.end(),
                                               [=](const Entry &entry) { return entry.number == number; }) -
                                  entries_.begin());
}

NSData AppleDouble::entry(std::uint32_t number) const {
  const std::size_t index = indexOf(number);
  return index < entries_.size() ? entries_[index].data : NSData();
}

void AppleDouble::setEntry(std::uint32_t number, const NSData &data) {
  const std::size_t index = indexOf(number);
  if (index == entries_.size()) {
    if (!data) return;
    entries_.push_back({number, static_cast<std::uint32_t>(length_), data});
  } else if (!data) {
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
  } else {
    const bool staysInPlace = entries_[index].data.length() == data.length();
    entries_[index].data = data;
    if (staysInPlace) return;
  }
  arrange();
}

void AppleDouble::arrange() {
  std::stable_sort(entries_.begin(), entries_.end(), [](const Entry &a, const Entry &b) {
    return std::pair(a.number == kResourceFork, a.offset) < std::pair(b.number == kResourceFork, b.offset);
  });
  length_ = kHeaderLength + entries_.size() * kDescriptorLength;
  for (Entry &entry : entries_) {
    entry.offset = static_cast<std::uint32_t>(length_);
    length_ += entry.data.length();
  }
}

NSData AppleDouble::data() const {
  if (length_ > NSNotFound || entries_.size() > 0xffff) return NSData();
  std::string bytes;
  bytes.reserve(length_);
  appendBigEndian(bytes, kMagic, 4);
  appendBigEndian(bytes, kVersion, 4);
  bytes += filler_.view();
  appendBigEndian(bytes, entries_.size(), 2);
  for (const Entry &entry : entries_) {
    appendBigEndian(bytes, entry.number, 4);
    appendBigEndian(bytes, entry.offset, 4);
    appendBigEndian(bytes, entry.data.length(), 4);
  }
  bytes.resize(length_, '\0');
  for (const Entry &entry : entries_) bytes.replace(entry.offset, entry.data.length(), entry.data.view());
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

}  // namespace nimbo
