// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/ConnectionChannel.hpp"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

namespace nimbo {
namespace {

constexpr std::size_t kReceiveBytesPerTurn = 4u << 20;
/// Messages up to this size go through a buffer on the stack, so that one read takes a small message whole;
/// more than that is read straight to its place.
constexpr std::size_t kStackBufferBytes = 64u << 10;

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

/// Makes room for that many more bytes of the message, or more in proportion to what it has got so far.
void ConnectionChannel::growBody(std::size_t room) {
  if (capacity_ - length_ >= room) return;
  const std::size_t capacity = std::min(announced_, std::max(length_ + room, length_ * 2));
  void *larger = std::realloc(body_.get(), capacity);
  if (!larger) throw std::bad_alloc();
  (void)body_.release();
  body_.reset(static_cast<std::uint8_t *>(larger));
  capacity_ = capacity;
}

void ConnectionChannel::finishBody(std::vector<NSData> *bodies) {
  bodies->push_back(NSData::dataWithMallocedBytes(body_.release(), length_));
  headerLength_ = announced_ = capacity_ = length_ = 0;
}

bool ConnectionChannel::send(NSData body) {
  pendingBytes_ += kMessageLengthBytes + body.length();
  const auto header = encodeMessageLength(body.length());
  outgoing_.push_back({header, std::move(body)});
  return outgoing_.size() > 1 || flush();
}

bool ConnectionChannel::flush() {
  while (!outgoing_.empty()) {
    Outgoing &message = outgoing_.front();
    const std::size_t size = kMessageLengthBytes + message.body.length();
    const std::size_t ofHeader = std::min(message.written, kMessageLengthBytes);
    const std::size_t ofBody = message.written - ofHeader;
    iovec parts[2] = {
        {message.header.data() + ofHeader, kMessageLengthBytes - ofHeader},
        {const_cast<std::uint8_t *>(message.body.bytes()) + ofBody, message.body.length() - ofBody}};
    msghdr header = {};
    header.msg_iov = parts;
    header.msg_iovlen = 2;
    const ssize_t sent = ::sendmsg(socket_.get(), &header, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) return errno == EAGAIN;
    message.written += static_cast<std::size_t>(sent);
    pendingBytes_ -= static_cast<std::size_t>(sent);
    if (message.written < size) return true;
    outgoing_.pop_front();
  }
  return true;
}

}  // namespace nimbo
