// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/Contents.hpp"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace nimbo {
namespace {

constexpr std::size_t kReadBytes = 1 << 20;

}  // namespace

Contents::Contents(std::vector<std::string> types, FileDescriptor feed)
    : types_(std::move(types)), feed_(std::move(feed)) {
  for (const std::string &type : types_) entries_[type];
  ::fcntl(feed_.get(), F_SETFL, O_NONBLOCK);
}

PasteboardRecord Contents::record() const {
  PasteboardRecord record;
  std::memcpy(&record, head_.data(), std::min(head_.size(), sizeof record));
  return record;
}

std::size_t Contents::missingBytes() const {
  if (head_.size() < sizeof(PasteboardRecord)) return sizeof(PasteboardRecord) - head_.size();
  const std::size_t headBytes = sizeof(PasteboardRecord) + record().nameBytes;
  if (head_.size() < headBytes) return headBytes - head_.size();
  return record().dataBytes == PasteboardRecord::kMissing ? 0 : record().dataBytes - data_.size();
}

void Contents::finishRecord() {
  const bool isMissing = record().dataBytes == PasteboardRecord::kMissing;
  const Bytes bytes = isMissing ? nullptr : std::make_shared<const std::string>(std::move(data_));
  for (std::size_t first = sizeof(PasteboardRecord); first < head_.size();) {
    const std::size_t end = std::min(head_.find('\n', first), head_.size());
    const auto entry = entries_.find(head_.substr(first, end - first));
    if (entry != entries_.end()) entry->second = {isMissing, bytes};
    first = end + 1;
  }
  head_.clear();
  data_.clear();
}

void Contents::receive() {
  while (feed_) {
    const std::size_t wanted = missingBytes();
    const bool hasNumbers = head_.size() >= sizeof(PasteboardRecord);
    const bool isHeadWhole = hasNumbers && head_.size() == sizeof(PasteboardRecord) + record().nameBytes;
    if (isHeadWhole && wanted == 0) {
      finishRecord();
      continue;
    }
    const bool isMissing = record().dataBytes == PasteboardRecord::kMissing;
    if (hasNumbers &&
        (record().nameBytes > kMaximumNamesBytes || (!isMissing && record().dataBytes > kMaximumContentBytes)))
      return closeFeed();
    std::string &part = isHeadWhole ? data_ : head_;
    if (isHeadWhole) part.reserve(part.size() + wanted);
    const std::size_t before = part.size();
    part.resize(before + std::min(wanted, kReadBytes));
    const ssize_t got = ::read(feed_.get(), part.data() + before, part.size() - before);
    const int number = errno;
    part.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got > 0 || (got < 0 && number == EINTR)) continue;
    if (got == 0 || number != EAGAIN) closeFeed();
    return;
  }
}

void Contents::closeFeed() {
  feed_.close();
  head_.clear();
  data_ = {};
}

Contents::State Contents::stateOf(const std::string &type) const {
  const auto entry = entries_.find(type);
  if (entry == entries_.end()) return State::notOffered;
  if (entry->second.bytes) return State::given;
  return feed_ && !entry->second.isMissing ? State::awaited : State::missing;
}

Bytes Contents::bytesOf(const std::string &type) const {
  const auto entry = entries_.find(type);
  return entry == entries_.end() ? nullptr : entry->second.bytes;
}

bool Contents::isWorthKeeping() const {
  return feed_ ||
         std::ranges::any_of(entries_, [](const auto &entry) { return entry.second.bytes != nullptr; });
}

}  // namespace nimbo
