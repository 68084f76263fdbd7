// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionChannel.hpp"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include "platform/Foundation/System/LargeBytes.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kReceiveBytesPerTurn = 4u << 20;
/// A message of which this much has come is taken at its word.
constexpr std::size_t kLargeMessageBytes = 1u << 20;
/// Messages up to this size go through a buffer on the stack, so that one read takes a small message whole;
/// more than that is read straight to its place.
constexpr std::size_t kStackBufferBytes = 64u << 10;

constexpr std::size_t kPiecesPerWrite = 16;

}  // namespace

bool ConnectionChannel::receive(std::vector<NSData> *bodies) {
  const std::size_t before = bodies->size();
  for (std::size_t total = 0; total < kReceiveBytesPerTurn && bodies->size() == before;) {
    std::array<std::uint8_t, kStackBufferBytes> buffer;
    std::uint8_t *target = buffer.data();
    std::size_t room = buffer.size();
    const bool readsInPlace = announced_ - length_ >= kStackBufferBytes;
    if (readsInPlace) {
      growBody(kStackBufferBytes);
      target = body_.get() + length_;
      room = capacity_ - length_;
    }
    const ssize_t got = ::recv(socket_.get(), target, room, MSG_DONTWAIT);
    if (got == 0) return false;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno == EAGAIN;
    const auto count = static_cast<std::size_t>(got);
    receivedBytes_ += count;
    if (readsInPlace) {
      length_ += count;
      if (length_ == announced_) finishBody(bodies);
    } else if (!consume(target, count, bodies)) {
      return false;
    }
    if (count < room) return true;
    total += count;
  }
  return true;
}

bool ConnectionChannel::consume(const std::uint8_t *bytes, std::size_t count, std::vector<NSData> *bodies) {
  while (count > 0) {
    if (headerLength_ < kMessageLengthBytes) {
      header_[headerLength_++] = *bytes++;
      --count;
      if (headerLength_ < kMessageLengthBytes) continue;
      announced_ = decodeMessageLength(header_.data());
      if (announced_ == 0 || announced_ > kMaximumMessageBytes) return false;
    }
    const std::size_t part = std::min(count, announced_ - length_);
    if (part > 0) {
      growBody(part);
      std::memcpy(body_.get() + length_, bytes, part);
      length_ += part;
      bytes += part;
      count -= part;
    }
    if (length_ == announced_) finishBody(bodies);
  }
  return true;
}

/// Makes room for that many more bytes of the message, or more in proportion to what it has got so far. A
/// message that has shown itself to be large gets room for all of it: what has not come is not touched, and so
/// takes no memory.
void ConnectionChannel::growBody(std::size_t room) {
  if (capacity_ - length_ >= room) return;
  const std::size_t capacity =
      length_ >= kLargeMessageBytes ? announced_ : std::min(announced_, std::max(length_ + room, length_ * 4));
  auto *larger = static_cast<std::uint8_t *>(allocateBytes(capacity));
  if (!larger) throw std::bad_alloc();
  if (length_ > 0) std::memcpy(larger, body_.get(), length_);
  body_.reset(larger);
  capacity_ = capacity;
}

void ConnectionChannel::finishBody(std::vector<NSData> *bodies) {
  bodies->push_back(NSData::dataWithMallocedBytes(body_.release(), length_));
  headerLength_ = announced_ = capacity_ = length_ = 0;
}

bool ConnectionChannel::send(std::vector<NSData> pieces) {
  const bool waits = !outgoing_.empty();
  pendingBytes_ += lengthOfPieces(pieces);
  outgoing_.insert(outgoing_.end(), std::make_move_iterator(pieces.begin()),
                   std::make_move_iterator(pieces.end()));
  return waits || flush();
}

bool ConnectionChannel::flush() {
  while (!outgoing_.empty()) {
    std::array<iovec, kPiecesPerWrite> parts;
    const std::size_t count = std::min(outgoing_.size(), parts.size());
    std::size_t asked = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint32_t written = i == 0 ? writtenOfFirst_ : 0;
      parts[i] = {const_cast<std::uint8_t *>(outgoing_[i].bytes()) + written, outgoing_[i].length() - written};
      asked += parts[i].iov_len;
    }
    msghdr header = {};
    header.msg_iov = parts.data();
    header.msg_iovlen = count;
    const ssize_t result = ::sendmsg(socket_.get(), &header, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (result < 0 && errno == EINTR) continue;
    if (result < 0) return errno == EAGAIN;
    const auto sent = static_cast<std::size_t>(result);
    pendingBytes_ -= sent;
    sentBytes_ += sent;
    removeOutgoing(sent);
    if (sent < asked) return true;
  }
  return true;
}

void ConnectionChannel::removeOutgoing(std::size_t sent) {
  sent += writtenOfFirst_;
  while (!outgoing_.empty() && sent >= outgoing_.front().length()) {
    sent -= outgoing_.front().length();
    outgoing_.pop_front();
  }
  writtenOfFirst_ = static_cast<std::uint32_t>(sent);
}

}  // namespace nimbo
