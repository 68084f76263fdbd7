// SPDX-License-Identifier: Apache-2.0
//
// The messages of a named connection. Each is a 4-byte big-endian length, which counts the bytes after it, and
// a binary property list:
//
//   request  {"Request": serial, "Selector": full selector, "Arguments": {keyword: value, ...}}
//   greeting {"Helper": {"Version": text, "Path": program, "Since": date}}
//   begun    {"Begun": serial}
//   reply    {"Reply": serial, "Result": value, "Reason": reason, "Code": code}
//            {"Reply": serial, "Exception": {"Name": name, "Reason": reason}}
//
// The greeting is the first message to a client. "Begun" comes when work on a request begins, before its reply.
// There is no "Result" when the answer is nil; "Reason" and "Code" are there when it says why it is, or why
// the result is not whole. Keywords are the selector's parts without their colons: "attributed:stringWithPDF:"
// takes "attributed" and "stringWithPDF". An absent argument is nil. Any thread may encode and decode.
//
//     ConnectionRequest request;
//     if (!decodeMessage(data, &request)) return;
//     const ConnectionReply reply{.serial = request.serial, .result = u"2.0"_ns};
//     for (const NSData &piece : encodeMessage(reply)) NSLog(u"%d bytes", piece.length());
#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How many bytes the length in front of a message has.
inline constexpr std::size_t kMessageLengthBytes = 4;
/// The largest property list that a message may hold.
inline constexpr std::uint32_t kMaximumMessageBytes = 512u << 20;

/// What a client asks.
struct ConnectionRequest {
  /// The number that the replies repeat; the client counts its requests.
  std::int64_t serial = 0;
  /// The full selector of the operation, as "metaDataForFile:".
  NSString selector;
  /// The arguments by keyword; those that are nil are left out.
  NSDictionary arguments;
};

/// Who answers: the program's version and path, and since when it runs. Nil when it is not known.
struct ConnectionGreeting {
  /// The version of the program, as text.
  NSString version;
  /// The absolute path of the program.
  NSString path;
  /// When the program began.
  NSDate since;
};

/// The work on a request has begun.
struct ConnectionBegun {
  /// The number of the request.
  std::int64_t serial = 0;
};

/// What a request is answered.
struct ConnectionReply {
  /// The number of the request.
  std::int64_t serial = 0;
  /// The answer of the operation; nil when it has none.
  id result;
  /// Nil unless the operation raised an exception.
  NSString exceptionName;
  /// The reason of that exception, for people.
  NSString exceptionReason;
  /// Why there is no result, or not a whole one; nil when it is not told. An error of `NimboErrorDomain`; one
  /// of another domain arrives as `other`.
  NSError error = {};
};

/// What the serving side sends. `std::monostate` is a message that this side does not know, and passes over.
using ConnectionAnswer = std::variant<std::monostate, ConnectionGreeting, ConnectionBegun, ConnectionReply>;

/// The whole message of a request, length included, in pieces to be sent one after the other; large data is
/// not copied. Empty when a value cannot be written, an argument is of a kind that does not cross, the
/// selector is missing, or the message would be too large (`tooLarge`); `*error` then says why.
std::vector<NSData> encodeMessage(const ConnectionRequest &request, NSError *error = nullptr);
/// The whole message of a reply, as above.
std::vector<NSData> encodeMessage(const ConnectionReply &reply, NSError *error = nullptr);
/// The whole message of a greeting; one that is not known has no parts.
std::vector<NSData> encodeMessage(const ConnectionGreeting &greeting);
/// The whole message that says that a request has begun.
std::vector<NSData> encodeMessage(ConnectionBegun begun);
/// How many bytes the pieces have in all.
std::size_t lengthOfPieces(const std::vector<NSData> &pieces);

/// The length that the first `kMessageLengthBytes` bytes of a message announce.
std::uint32_t decodeMessageLength(const std::uint8_t *bytes);

/// Reads the property list of a request, without its length. Data objects in the result share `body`.
/// False when it is malformed: no property list, a value of another kind than its key takes, a missing serial
/// or selector. Keys that are not known are passed over.
bool decodeMessage(const NSData &body, ConnectionRequest *request);
/// Reads the property list of what the serving side sends, as above.
bool decodeMessage(const NSData &body, ConnectionAnswer *answer);

}  // namespace nimbo
