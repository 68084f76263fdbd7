// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <memory>
#include <vector>

#include "platform/Foundation/Connection/ConnectionMessage.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// One end of a connection: cuts what arrives on a non-blocking stream socket into messages and writes messages
/// out as far as the socket takes them. It never waits. Memory follows what has arrived, never what a length
/// announces. One thread uses it at a time.
///
///     ConnectionChannel channel(connectToConnectionName(name));
///     channel.send(encodeMessage(ConnectionRequest{.serial = 1, .selector = u"version"_ns}));
///     std::vector<NSData> bodies;
///     while (channel.receive(&bodies) && bodies.empty()) wait(channel.socket());
class ConnectionChannel {
 public:
  /// Takes the socket over, which must not block.
  explicit ConnectionChannel(FileDescriptor socket) : socket_(std::move(socket)) {}

  /// The socket, borrowed from the channel.
  const FileDescriptor &socket() const noexcept NIMBO_LIFETIMEBOUND { return socket_; }
  /// Closes the socket; nothing can be received or sent any more.
  void close() noexcept { socket_.close(); }

  /// Reads what is there until a message is complete, or `kReceiveBytesPerTurn` have come, and appends the
  /// property lists of complete messages. False when the stream has ended, is broken, or announces an empty or
  /// too large message; what was appended is whole all the same. Throws std::bad_alloc.
  bool receive(std::vector<NSData> *bodies);
  /// How many bytes of a message that is not complete yet have come, its length included.
  std::size_t incompleteBytes() const noexcept { return headerLength_ + length_; }
  /// How many bytes that message has behind its length; 0 when that is not known yet.
  std::size_t announcedBytes() const noexcept { return announced_; }
  /// How many bytes ever came in.
  std::uint64_t receivedBytes() const noexcept { return receivedBytes_; }
  /// How many bytes ever went out.
  std::uint64_t sentBytes() const noexcept { return sentBytes_; }

  /// Queues a message, length included, behind those that are still on their way, and writes what the socket
  /// takes. False when the other side is gone.
  bool send(std::vector<NSData> pieces);
  /// Writes what the socket takes of what is queued. False when the other side is gone.
  bool flush();
  /// The bytes that are still to be written.
  std::size_t pendingBytes() const noexcept { return pendingBytes_; }

 private:
  bool consume(const std::uint8_t *bytes, std::size_t count, std::vector<NSData> *bodies);
  void growBody(std::size_t room);
  void removeOutgoing(std::size_t sent);
  void finishBody(std::vector<NSData> *bodies);

  FileDescriptor socket_;
  std::array<std::uint8_t, kMessageLengthBytes> header_ = {};
  std::size_t headerLength_ = 0;
  /// The message under way, once its header is complete, with room for `capacity_` bytes: `length_` of
  /// `announced_` have come.
  std::unique_ptr<std::uint8_t, decltype(&std::free)> body_{nullptr, &std::free};
  std::size_t announced_ = 0;
  std::size_t capacity_ = 0;
  std::size_t length_ = 0;
  /// The pieces of messages that are still to be written.
  std::deque<NSData> outgoing_;
  /// How many bytes of the first piece have been written.
  std::uint32_t writtenOfFirst_ = 0;
  std::size_t pendingBytes_ = 0;
  std::uint64_t receivedBytes_ = 0;
  std::uint64_t sentBytes_ = 0;
};

}  // namespace nimbo
