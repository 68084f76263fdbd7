// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// The messages of a named connection. Each is a 4-byte big-endian length, which counts the bytes after it, and
/// a binary property list:
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

/// The property list of a message, without its length. Nil when a value cannot be written, an argument is of a
/// kind that does not cross, the selector is missing, or the message would be too large; `*error` then says
/// why.
NSData encodeMessage(const ConnectionRequest &request, NSString *error = nullptr);
NSData encodeMessage(const ConnectionReply &reply, NSString *error = nullptr);

/// The bytes that announce a property list of that length, and the length that they announce.
std::array<std::uint8_t, kMessageLengthBytes> encodeMessageLength(std::uint32_t length);
std::uint32_t decodeMessageLength(const std::uint8_t *bytes);

/// Reads the property list of a message, without its length. Data objects in the result share `body`.
/// False when it is malformed: no property list, a value of another kind than its key takes, a missing serial
/// or selector. Keys that are not known are passed over.
bool decodeMessage(const NSData &body, ConnectionRequest *request);
bool decodeMessage(const NSData &body, ConnectionReply *reply);

}  // namespace nimbo
