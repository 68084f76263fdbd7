// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionMessage.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <variant>

#include "platform/Foundation/NSObject.hpp"
#include "tests/platform/Foundation/Connection/ConnectionClients.hpp"

namespace nimbo {
namespace {

using ConnectionMessageTest = ConnectionFixture;

TEST_F(ConnectionMessageTest, MessagesKeepTheirContent) {
  NSDictionary arguments = {{u"flag"_ns, true},
                            {u"count"_ns, -7},
                            {u"ratio"_ns, 0.5},
                            {u"text"_ns, u"\xd800"_ns},
                            {u"data"_ns, NSData::data()},
                            {u"wrong"_ns, NSArray{NSNull(), NSDictionary{{u"deep"_ns, NSArray::array()}}}}};
  // Large data, which is not copied into the message, among other values.
  for (const NSString &key : {u"large"_ns, u"after"_ns, u"larger"_ns}) {
    const std::string bytes(100'000u + key.length(), static_cast<char>(key.length()));
    arguments.setObject(NSData::dataWithBytes(bytes.data(), bytes.size()), key);
    arguments.setObject(key, key.substringWithRange({1, 3}));
  }
  ConnectionRequest decoded;
  ASSERT_TRUE(
      decodeMessage(bodyOf(encodeMessage(ConnectionRequest{INT64_MAX, u"a:b:"_ns, arguments})), &decoded));
  EXPECT_EQ(decoded.serial, INT64_MAX);
  EXPECT_EQ(decoded.selector, u"a:b:"_ns);
  EXPECT_EQ(decoded.arguments, arguments);

  for (const ConnectionReply &reply :
       {ConnectionReply{1, id(), {}, {}}, ConnectionReply{-2, NSArray{NSNull()}, {}, {}},
        ConnectionReply{3, id(), u"Name"_ns, NSString::string()},
        ConnectionReply{4, id(), {}, {}, NSError::errorWithCode(ErrorCode::locked, "it is \xe2\x82\xac")},
        ConnectionReply{5, true, {}, {}, {NimboErrorDomain(), 1234}}}) {
    ConnectionAnswer answer;
    ASSERT_TRUE(decodeMessage(bodyOf(encodeMessage(reply)), &answer));
    const auto &copy = std::get<ConnectionReply>(answer);
    EXPECT_EQ(copy.serial, reply.serial);
    EXPECT_EQ(copy.result, reply.result);
    EXPECT_EQ(copy.exceptionName, reply.exceptionName);
    EXPECT_EQ(copy.exceptionReason, reply.exceptionReason);
    EXPECT_EQ(copy.error, reply.error);
  }
}

TEST_F(ConnectionMessageTest, AReplyIsWholeOrNone) {
  const auto read = [](const NSDictionary &message, ConnectionAnswer *answer) {
    return decodeMessage(
        NSPropertyListSerialization::dataWithPropertyList(message, NSPropertyListFormat::binary), answer);
  };
  const id name = u"Name"_ns, reason = u"reason"_ns;
  const NSDictionary whole = {{u"Name"_ns, name}, {u"Reason"_ns, reason}};
  for (const NSDictionary &bad : {NSDictionary{{u"Reply"_ns, u"1"_ns}},
                                  {{u"Reply"_ns, 1}, {u"Reason"_ns, 1}},
                                  {{u"Reply"_ns, 1}, {u"Code"_ns, u"1"_ns}},
                                  {{u"Reply"_ns, 1}, {u"Exception"_ns, name}},
                                  {{u"Reply"_ns, 1}, {u"Exception"_ns, NSDictionary{{u"Name"_ns, name}}}},
                                  {{u"Reply"_ns, 1}, {u"Exception"_ns, NSDictionary{{u"Reason"_ns, reason}}}},
                                  {{u"Reply"_ns, 1}, {u"Exception"_ns, whole}, {u"Result"_ns, 1}}}) {
    ConnectionAnswer answer;
    EXPECT_FALSE(read(bad, &answer)) << testing::PrintToString(
        NSPropertyListSerialization::dataWithPropertyList(bad, NSPropertyListFormat::xml).view());
  }
  ConnectionAnswer answer;
  ASSERT_TRUE(read({{u"Reply"_ns, 1}, {u"Exception"_ns, whole}}, &answer));
  EXPECT_EQ(std::get<ConnectionReply>(answer).exceptionReason, reason.string());
  // A reason alone is one of no known kind, and a code may have no reason.
  ASSERT_TRUE(read({{u"Reply"_ns, 1}, {u"Reason"_ns, reason}}, &answer));
  EXPECT_EQ(std::get<ConnectionReply>(answer).error,
            NSError::errorWithCode(ErrorCode::other, reason.string().UTF8String()));
  ASSERT_TRUE(read({{u"Reply"_ns, 1}, {u"Code"_ns, 1234}}, &answer));
  EXPECT_EQ(std::get<ConnectionReply>(answer).error, (NSError{NimboErrorDomain(), 1234}));
  // What has neither name is of a later version.
  ASSERT_TRUE(read({{u"News"_ns, 1}}, &answer));
  EXPECT_TRUE(std::holds_alternative<std::monostate>(answer));
}

TEST_F(ConnectionMessageTest, MessagesAreAtMostAsLongAsTheyMayBe) {
  const auto encoded = [](std::size_t length, NSError *error) {
    // Nobody touches these bytes, which take no memory.
    const NSData data = NSData::dataWithMallocedBytes(std::calloc(length, 1), length);
    return lengthOfPieces(encodeMessage(ConnectionRequest{1, u"a:"_ns, {{u"a"_ns, data}}}, error));
  };
  constexpr std::size_t kNearly = kMaximumMessageBytes - 1000;
  NSError error;
  const std::size_t longest = kMaximumMessageBytes - (encoded(kNearly, &error) - kMessageLengthBytes - kNearly);
  EXPECT_EQ(encoded(longest, &error), kMaximumMessageBytes + kMessageLengthBytes);
  EXPECT_FALSE(error);
  EXPECT_EQ(encoded(longest + 1, &error), 0u);
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
}

TEST_F(ConnectionMessageTest, ObjectsDoNotCross) {
  const id object = makeShared<NSObject>();
  NSError error;
  EXPECT_TRUE(encodeMessage(ConnectionRequest{1, u"a:"_ns, {{u"a"_ns, object}}}, &error).empty());
  EXPECT_TRUE(error);
  EXPECT_TRUE(encodeMessage(ConnectionReply{1, NSArray{object}, {}, {}}, &error).empty());
  EXPECT_EQ(error.localizedFailureReason, u"an object is no property list"_ns);
}

}  // namespace
}  // namespace nimbo
