// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSConnectionMessage.hpp"

#include <utility>

#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

NSData encode(const NSDictionary &message, NSString *error) {
  NSData body = NSPropertyListSerialization::dataWithPropertyList(message, NSPropertyListFormat::binary, error);
  if (body.length() <= kMaximumMessageBytes) return body;
  if (error) *error = u"The message is too large"_ns;
  return NSData();
}

NSDictionary decode(const NSData &body) {
  NSPropertyListFormat format = NSPropertyListFormat::xml;
  const id message = NSPropertyListSerialization::propertyListFromData(body, &format);
  return format == NSPropertyListFormat::binary ? message.dictionary() : NSDictionary();
}

bool crossesAsArgument(const id &value) {
  return value.isBoolean() || value.real() || value.string() || value.data();
}

bool crossAsArguments(const NSDictionary &arguments) {
  for (const auto &[keyword, value] : arguments)
    if (!crossesAsArgument(value)) return false;
  return true;
}

}  // namespace

NSData encodeMessage(const ConnectionRequest &request, NSString *error) {
  if (!request.selector || !crossAsArguments(request.arguments)) {
    if (error)
      *error = u"A request needs a selector, and arguments that are booleans, numbers, strings or data"_ns;
    return NSData();
  }
  return encode({{u"Request"_ns, request.serial},
                 {u"Selector"_ns, request.selector},
                 {u"Arguments"_ns, request.arguments ? request.arguments : NSDictionary::dictionary()}},
                error);
}

NSData encodeMessage(const ConnectionReply &reply, NSString *error) {
  NSDictionary message{{u"Reply"_ns, reply.serial}};
  if (!reply.exceptionName) {
    message.setObject(reply.result, u"Result"_ns);
  } else {
    const NSString reason = reply.exceptionReason ? reply.exceptionReason : NSString::string();
    message.setObject(NSDictionary{{u"Name"_ns, reply.exceptionName}, {u"Reason"_ns, reason}}, u"Exception"_ns);
  }
  return encode(message, error);
}

std::array<std::uint8_t, kMessageLengthBytes> encodeMessageLength(std::uint32_t length) {
  return {static_cast<std::uint8_t>(length >> 24), static_cast<std::uint8_t>(length >> 16),
          static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)};
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
  if (!serial || !selector || (arguments && !arguments.dictionary()) ||
      !crossAsArguments(arguments.dictionary()))
    return false;
  *request = {*serial, std::move(selector), arguments.dictionary()};
  return true;
}

bool decodeMessage(const NSData &body, ConnectionReply *reply) {
  const NSDictionary message = decode(body);
  const auto serial = message.objectForKey(u"Reply"_ns).integer();
  const id &exception = message.objectForKey(u"Exception"_ns);
  NSString name = exception.dictionary().objectForKey(u"Name"_ns).string();
  NSString reason = exception.dictionary().objectForKey(u"Reason"_ns).string();
  const id &result = message.objectForKey(u"Result"_ns);
  if (!serial || (exception && (!name || !reason || result))) return false;
  *reply = {*serial, result, std::move(name), std::move(reason)};
  return true;
}

}  // namespace nimbo
