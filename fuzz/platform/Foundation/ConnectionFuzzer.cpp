// SPDX-License-Identifier: Apache-2.0
// One end of a connection, fed through a socket in pieces. The first byte of the input chooses the pieces; the
// rest is the stream. What the channel makes of it must not depend on the pieces, and must be what a plain
// cutter of the whole finds.
#include <sys/socket.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/Foundation/Connection/ConnectionChannel.hpp"
#include "platform/Foundation/Connection/ConnectionMessage.hpp"

using namespace nimbo;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// The bodies of the complete messages of a stream. False when it announces a length that no message may have.
bool cut(const std::uint8_t *bytes, std::size_t count, std::vector<NSData> *bodies) {
  while (count >= kMessageLengthBytes) {
    const std::uint32_t length = decodeMessageLength(bytes);
    if (length == 0 || length > kMaximumMessageBytes) return false;
    bytes += kMessageLengthBytes;
    count -= kMessageLengthBytes;
    if (count < length) return true;
    bodies->push_back(NSData::dataWithBytes(bytes, length));
    bytes += length;
    count -= length;
  }
  return true;
}

/// The body of a message that has been written in pieces.
NSData bodyOf(const std::vector<NSData> &pieces) {
  std::string bytes;
  for (const NSData &piece : pieces) bytes += piece.view();
  require(bytes.size() > kMessageLengthBytes);
  return NSData::dataWithBytes(bytes.data() + kMessageLengthBytes, bytes.size() - kMessageLengthBytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t count) {
  if (count == 0) return 0;
  const std::size_t piece = std::size_t{bytes[0]} + 1;
  ++bytes;
  --count;
  std::vector<NSData> expected;
  const bool isGood = cut(bytes, count, &expected);

  int ends[2];
  require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
  const FileDescriptor feeder(ends[0]);
  ConnectionChannel channel{FileDescriptor(ends[1])};
  std::vector<NSData> bodies;
  bool isOpen = true;
  for (std::size_t at = 0; at < count && isOpen; at += piece) {
    const std::size_t part = std::min(piece, count - at);
    require(::send(feeder.get(), bytes + at, part, MSG_NOSIGNAL) == static_cast<ssize_t>(part));
    isOpen = channel.receive(&bodies);
  }
  require(isOpen == isGood);
  require(bodies == expected);
  for (const NSData &body : bodies) {
    // What is read as a message can be written, and reads the same again.
    ConnectionRequest request, sameRequest;
    if (decodeMessage(body, &request)) {
      require(decodeMessage(bodyOf(encodeMessage(request)), &sameRequest));
      require(request.serial == sameRequest.serial && request.selector == sameRequest.selector);
    }
    ConnectionAnswer answer, sameAnswer;
    if (!decodeMessage(body, &answer)) continue;
    if (const auto *reply = std::get_if<ConnectionReply>(&answer))
      require(decodeMessage(bodyOf(encodeMessage(*reply)), &sameAnswer));
  }
  return 0;
}
