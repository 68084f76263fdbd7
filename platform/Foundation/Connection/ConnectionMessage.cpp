// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionMessage.hpp"

#include <numeric>
#include <utility>

#include "platform/Foundation/PropertyLists/BinaryPropertyListFormat.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListReader.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListWriter.hpp"
#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"

namespace nimbo {
namespace {

using Pieces = std::vector<NSData>;

Pieces encode(const NSDictionary &message, NSError *error) {
  try {
    Pieces pieces = binaryPiecesWithPropertyList(message);
    const std::size_t length = lengthOfPieces(pieces);
    if (length > kMaximumMessageBytes) {
      setError(error, ErrorCode::tooLarge, "the message is too large");
      return {};
    }
    const std::uint8_t announced[kMessageLengthBytes] = {
        static_cast<std::uint8_t>(length >> 24), static_cast<std::uint8_t>(length >> 16),
        static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)};
    pieces.insert(pieces.begin(), NSData::dataWithBytes(announced, sizeof announced));
    return pieces;
  } catch (const PropertyListError &failure) {
    setError(error, ErrorCode::other, failure.reason);
    return {};
  }
}

/// Nil when the body is anything but a binary property list with a dictionary; no other form is looked into.
NSDictionary decode(const NSData &body) {
  if (!body.view().starts_with(BinaryPropertyList::kMagic)) return NSDictionary();
  try {
    return propertyListFromBinaryData(body).dictionary();
  } catch (const PropertyListError &) {
    return NSDictionary();
  }
}

ConnectionGreeting readGreeting(const NSDictionary &helper) {
  return {helper.objectForKey(u"Version"_ns).string(), helper.objectForKey(u"Path"_ns).string(),
          helper.objectForKey(u"Since"_ns).date().value_or(NSDate())};
}

bool readReply(const NSDictionary &message, ConnectionReply *reply) {
  const auto serial = message.objectForKey(u"Reply"_ns).integer();
  const id &exception = message.objectForKey(u"Exception"_ns);
  NSString name = exception.dictionary().objectForKey(u"Name"_ns).string();
  NSString reason = exception.dictionary().objectForKey(u"Reason"_ns).string();
  const id &result = message.objectForKey(u"Result"_ns);
  const id &why = message.objectForKey(u"Reason"_ns), &code = message.objectForKey(u"Code"_ns);
  if (!serial || (exception && (!name || !reason || result)) || (why && !why.string()) ||
      (code && !code.integer()))
    return false;
  *reply = {*serial, result, std::move(name), std::move(reason)};
  if (why || code)
    reply->error = {NimboErrorDomain(), code.integer().value_or(static_cast<std::int64_t>(ErrorCode::other)),
                    why.string()};
  return true;
}

}  // namespace

std::vector<NSData> encodeMessage(const ConnectionRequest &request, NSError *error) {
  if (!request.selector) {
    setError(error, ErrorCode::other, "A request needs a selector");
    return {};
  }
  return encode({{u"Request"_ns, request.serial},
                 {u"Selector"_ns, request.selector},
                 {u"Arguments"_ns, request.arguments ? request.arguments : NSDictionary::dictionary()}},
                error);
}

std::vector<NSData> encodeMessage(const ConnectionReply &reply, NSError *error) {
  NSDictionary message{{u"Reply"_ns, reply.serial}};
  if (!reply.exceptionName) {
    message.setObject(reply.result, u"Result"_ns);
    message.setObject(reply.error.localizedFailureReason, u"Reason"_ns);
    if (reply.error) message.setObject(static_cast<std::int64_t>(reply.error.errorCode()), u"Code"_ns);
  } else {
    const NSString reason = reply.exceptionReason ? reply.exceptionReason : NSString::string();
    message.setObject(NSDictionary{{u"Name"_ns, reply.exceptionName}, {u"Reason"_ns, reason}}, u"Exception"_ns);
  }
  return encode(message, error);
}

std::vector<NSData> encodeMessage(const ConnectionGreeting &greeting) {
  return encode({{u"Helper"_ns, NSDictionary{{u"Version"_ns, greeting.version},
                                             {u"Path"_ns, greeting.path},
                                             {u"Since"_ns, greeting.since}}}},
                nullptr);
}

std::vector<NSData> encodeMessage(ConnectionBegun begun) {
  return encode({{u"Begun"_ns, begun.serial}}, nullptr);
}

std::size_t lengthOfPieces(const std::vector<NSData> &pieces) {
  return std::accumulate(pieces.begin(), pieces.end(), std::size_t{0},
                         [](std::size_t sum, const NSData &piece) { return sum + piece.length(); });
}

std::uint32_t decodeMessageLength(const std::uint8_t *bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
         bytes[3];
}

bool decodeMessage(const NSData &body, ConnectionRequest *request) {
  const NSDictionary message = decode(body);
  const auto serial = message.objectForKey(u"Request"_ns).integer();
  NSString selector = message.objectForKey(u"Selector"_ns).string();
  const id &arguments = message.objectForKey(u"Arguments"_ns);
  if (!serial || !selector || (arguments && !arguments.dictionary())) return false;
  *request = {*serial, std::move(selector), arguments.dictionary()};
  return true;
}

bool decodeMessage(const NSData &body, ConnectionAnswer *answer) {
  const NSDictionary message = decode(body);
  if (!message) return false;
  if (message.objectForKey(u"Reply"_ns)) return readReply(message, &answer->emplace<ConnectionReply>());
  *answer = std::monostate();
  if (const auto serial = message.objectForKey(u"Begun"_ns).integer()) *answer = ConnectionBegun{*serial};
  if (const NSDictionary helper = message.objectForKey(u"Helper"_ns).dictionary())
    *answer = readGreeting(helper);
  return true;
}

}  // namespace nimbo
