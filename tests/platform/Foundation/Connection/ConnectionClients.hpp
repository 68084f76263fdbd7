// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Foundation/Connection/ConnectionMessage.hpp"
#include "platform/Foundation/Connection/ConnectionName.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "tests/clients/HelperFixture.hpp"

namespace nimbo {

inline std::string joined(const std::vector<NSData> &pieces) {
  std::string bytes;
  for (const NSData &piece : pieces) bytes += piece.view();
  return bytes;
}

inline NSData bodyOf(const std::vector<NSData> &pieces) {
  const std::string bytes = joined(pieces).substr(kMessageLengthBytes);
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

inline std::string message(const NSData &body) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(body.length() >> shift);
  return bytes.append(body.view());
}

inline std::string request(const NSString &selector, const NSDictionary &arguments = {},
                           std::int64_t serial = 1) {
  return joined(encodeMessage(ConnectionRequest{serial, selector, arguments}));
}

inline std::string propertyList(const id &value) {
  return message(NSPropertyListSerialization::dataWithPropertyList(value, NSPropertyListFormat::binary));
}

inline std::string note(int number, std::int64_t serial = 1) {
  return request(u"note:"_ns, {{u"note"_ns, number}}, serial);
}

/// A client that writes what it likes.
class RawClient {
 public:
  static constexpr int kWaitMilliseconds = 20'000;

  RawClient() : socket_(connectToConnectionName(NSString::stringWithCharacters(kHelperConnectionName))) {
    ::fcntl(socket_.get(), F_SETFL, 0);
  }

  bool send(std::string_view bytes) {
    return ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
  }
  /// The next message of a kind; others are passed over. Nothing when the connection ends first.
  template <class Kind>
  std::optional<Kind> next() {
    for (;;) {
      std::uint8_t length[kMessageLengthBytes];
      if (!read(length, sizeof length)) return std::nullopt;
      std::vector<std::uint8_t> bytes(decodeMessageLength(length));
      ConnectionAnswer message;
      if (!read(bytes.data(), bytes.size()) ||
          !decodeMessage(NSData::dataWithBytes(bytes.data(), bytes.size()), &message))
        return std::nullopt;
      if (Kind *found = std::get_if<Kind>(&message)) return std::move(*found);
    }
  }
  std::optional<ConnectionReply> reply() { return next<ConnectionReply>(); }
  /// Waits until the other side closes. False when it still stands after a long time.
  bool isEnded() {
    pollfd state = {socket_.get(), 0, 0};
    return ::poll(&state, 1, kWaitMilliseconds) == 1 && (state.revents & POLLHUP);
  }
  bool answers() { return send(request(u"nil"_ns)) && reply(); }
  /// Whether nothing has come that was not read.
  bool isSilent() {
    pollfd state = {socket_.get(), POLLIN, 0};
    return ::poll(&state, 1, 0) == 0;
  }
  void close() { socket_.close(); }

 private:
  bool read(std::uint8_t *bytes, std::size_t count) {
    for (std::size_t got = 0; got < count;) {
      pollfd state = {socket_.get(), POLLIN, 0};
      if (::poll(&state, 1, kWaitMilliseconds) != 1) return false;
      const ssize_t part = ::recv(socket_.get(), bytes + got, count - got, 0);
      if (part <= 0) return false;
      got += static_cast<std::size_t>(part);
    }
    return true;
  }

  FileDescriptor socket_;
};

class ConnectionFixture : public HelperFixture {
 protected:
  int startHelper(const char *timeout = "15") {
    ::setenv("TEST_HELPER_TIMEOUT", timeout, 1);
    return HelperClient().helperProcessIdentifier();
  }
};

}  // namespace nimbo
