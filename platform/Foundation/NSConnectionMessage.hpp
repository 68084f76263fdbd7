// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// The messages of a named connection. Each is a 4-byte big-endian length, which counts the bytes after it, and a binary
/// property list:
///
///   request  {"Request": serial, "Selector": full selector, "Arguments": {keyword: value, ...}}
///   reply    {"Reply": serial, "Result": value}       without "Result" when the answer is nil
///            {"Reply": serial, "Exception": {"Name": name, "Reason": reason}}
///
/// Keywords are the selector's parts without their colons: "attributed:stringWithPDF:" takes "attributed" and
/// "stringWithPDF". An absent argument is nil.
inline constexpr std::size_t kMessageLengthBytes = 4;
/// The largest property list that a message may hold.
inline constexpr std::uint32_t kMaximumMessageBytes = 512u << 20;

struct ConnectionRequest {
  std::int64_t serial = 0;
  NSString selector;
  NSDictionary arguments;
};

struct ConnectionReply {
  std::int64_t serial = 0;
  id result;
  /// Nil unless the operation raised an exception.
  NSString exceptionName;
  NSString exceptionReason;
};

/// The whole message, length included. Nil when a value cannot be written as a property list or the message would be too
/// large; `*error` then says why.
NSData encodeMessage(const ConnectionRequest &request, NSString *error = nullptr);
NSData encodeMessage(const ConnectionReply &reply, NSString *error = nullptr);

/// The length that the first `kMessageLengthBytes` bytes of a message announce.
std::uint32_t decodeMessageLength(const std::uint8_t *bytes);

/// Reads the property list of a message, without its length. Data objects in the result share `body`.
/// False when it is malformed: no property list, an unknown key's kind, a missing serial or selector.
bool decodeMessage(const NSData &body, ConnectionRequest *request);
bool decodeMessage(const NSData &body, ConnectionReply *reply);

}  // namespace nimbo
