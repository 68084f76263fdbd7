// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSConnection.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "platform/Foundation/Connection/ConnectionMessage.hpp"
#include "platform/Foundation/Connection/ConnectionName.hpp"
#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/NSRunLoop.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "tests/clients/HelperFixture.hpp"

namespace nimbo {
namespace {

std::string joined(const std::vector<NSData> &pieces) {
  std::string bytes;
  for (const NSData &piece : pieces) bytes += piece.view();
  return bytes;
}

NSData bodyOf(const std::vector<NSData> &pieces) {
  const std::string bytes = joined(pieces).substr(kMessageLengthBytes);
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

std::string message(const NSData &body) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(body.length() >> shift);
  return bytes.append(body.view());
}

std::string request(const NSString &selector, const NSDictionary &arguments = {}, std::int64_t serial = 1) {
  return joined(encodeMessage(ConnectionRequest{serial, selector, arguments}));
}

std::string propertyList(const id &value) {
  return message(NSPropertyListSerialization::dataWithPropertyList(value, NSPropertyListFormat::binary));
}

std::string note(int number, std::int64_t serial = 1) {
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

class NSConnectionTest : public HelperFixture {
 protected:
  int startHelper(const char *timeout = "15") {
    ::setenv("TEST_HELPER_TIMEOUT", timeout, 1);
    return HelperClient().helperProcessIdentifier();
  }
};

TEST_F(NSConnectionTest, MessagesKeepTheirContent) {
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

TEST_F(NSConnectionTest, AReplyIsWholeOrNone) {
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

TEST_F(NSConnectionTest, ObjectsDoNotCross) {
  const id object = makeShared<NSObject>();
  NSError error;
  EXPECT_TRUE(encodeMessage(ConnectionRequest{1, u"a:"_ns, {{u"a"_ns, object}}}, &error).empty());
  EXPECT_TRUE(error);
  EXPECT_TRUE(encodeMessage(ConnectionReply{1, NSArray{object}, {}, {}}, &error).empty());
  EXPECT_EQ(error.localizedFailureReason, u"an object is no property list"_ns);
}

TEST_F(NSConnectionTest, ABadMessageEndsItsConnectionAndNoOther) {
  const std::string cases[] = {
      std::string(4, '\0'),
      std::string(4, '\xff'),
      std::string("\x20\0\0\1", 4) + "beyond the largest message",
      std::string("\0\0\0\x07garbage", 11),
      std::string("\0\0\0\x42", 4) + std::string("bplist00").append(58, '\xff'),
      message(NSPropertyListSerialization::dataWithPropertyList(
          NSDictionary{{u"Request"_ns, 1}, {u"Selector"_ns, u"nil"_ns}}, NSPropertyListFormat::xml)),
      propertyList(NSArray{1}),
      propertyList(NSDictionary::dictionary()),
      propertyList(NSDictionary{{u"Request"_ns, 1}}),
      propertyList(NSDictionary{{u"Selector"_ns, u"nil"_ns}}),
      propertyList(NSDictionary{{u"Request"_ns, u"1"_ns}, {u"Selector"_ns, u"nil"_ns}}),
      propertyList(
          NSDictionary{{u"Request"_ns, 1}, {u"Selector"_ns, u"nil"_ns}, {u"Arguments"_ns, u"none"_ns}}),
  };
  const int helper = startHelper();
  RawClient good;
  // The second answer comes after the connection of the client that started the helper is closed.
  ASSERT_TRUE(good.answers() && good.answers());
  const long open = descriptors(std::to_string(helper));
  for (const std::string &bytes : cases) {
    RawClient bad;
    EXPECT_TRUE(bad.send(bytes));
    EXPECT_TRUE(bad.isEnded()) << testing::PrintToString(bytes);
    EXPECT_TRUE(good.answers() && good.answers());
  }
  EXPECT_EQ(descriptors(std::to_string(helper)), open);
}

TEST_F(NSConnectionTest, MessagesMayComeInAnyPieces) {
  startHelper();
  RawClient client;
  std::string bytes;
  for (int serial = 1; serial <= 3; ++serial) bytes += request(u"echo:"_ns, {{u"echo"_ns, serial}}, serial);
  for (const std::size_t piece : {std::size_t{1}, std::size_t{3}, bytes.size() / 2 + 1, bytes.size()}) {
    for (std::size_t i = 0; i < bytes.size(); i += piece) ASSERT_TRUE(client.send(bytes.substr(i, piece)));
    for (int serial = 1; serial <= 3; ++serial) {
      const auto reply = client.reply();
      ASSERT_TRUE(reply);
      EXPECT_EQ(reply->serial, serial);
    }
  }
}

TEST_F(NSConnectionTest, HalfAMessageThatStandsStillEndsItsConnection) {
  startHelper("0.2");
  RawClient idle, halfLength, halfBody, moving;
  const std::string whole = request(u"nil"_ns);
  halfLength.send(whole.substr(0, 2));
  halfBody.send(whole.substr(0, whole.size() / 2));
  // Together longer than the limit, but never still for so long.
  for (std::size_t i = 0; i < 6; ++i) {
    moving.send(whole.substr(i, 1));
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
  }
  EXPECT_TRUE(halfLength.isEnded());
  EXPECT_TRUE(halfBody.isEnded());
  moving.send(whole.substr(6));
  EXPECT_TRUE(moving.reply());
  EXPECT_TRUE(idle.answers());
}

TEST_F(NSConnectionTest, ALongRequestOfAnotherIsNoStandstill) {
  startHelper("0.1");
  RawClient slow, other;
  const std::string whole = request(u"nil"_ns);
  other.send(whole.substr(0, 9));
  slow.send(request(u"sleep:"_ns, {{u"sleep"_ns, 0.3}}));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  other.send(whole.substr(9));
  EXPECT_TRUE(other.reply());
}

TEST_F(NSConnectionTest, AClientThatNeverReadsHoldsUpNobody) {
  const int helper = startHelper("0.5");
  RawClient good;
  ASSERT_TRUE(good.answers());
  const long pages = residentPages(helper);
  RawClient deaf;
  for (int i = 0; i < 200; ++i) ASSERT_TRUE(deaf.send(request(u"bytes:"_ns, {{u"bytes"_ns, 2 << 20}})));
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(good.answers());
  EXPECT_LT(residentPages(helper), pages + (32 << 20) / 4096) << "replies pile up";
  EXPECT_TRUE(deaf.isEnded());
  EXPECT_TRUE(good.answers());
}

TEST_F(NSConnectionTest, AnAnswerThatIsTooLargeIsNil) {
  startHelper();
  RawClient client;
  ASSERT_TRUE(client.send(request(u"bytes:"_ns, {{u"bytes"_ns, (512 << 20) + 1}})));
  const auto reply = client.reply();
  ASSERT_TRUE(reply);
  EXPECT_FALSE(reply->exceptionName);
  EXPECT_EQ(reply->error.errorCode(), ErrorCode::tooLarge);
}

TEST_F(NSConnectionTest, ManyRequestsAheadAreAllAnsweredInOrder) {
  startHelper();
  RawClient client;
  constexpr int kRequests = 3000;
  std::thread writer([&client] {
    for (int serial = 0; serial < kRequests; ++serial) client.send(request(u"nil"_ns, {}, serial));
  });
  for (int serial = 0; serial < kRequests; ++serial) {
    const auto reply = client.reply();
    ASSERT_TRUE(reply);
    ASSERT_EQ(reply->serial, serial);
  }
  writer.join();
}

TEST_F(NSConnectionTest, ServesClientsInOrderAndDropsThoseThatLeave) {
  startHelper();
  RawClient first, second, third, gone, last;
  first.send(request(u"sleep:"_ns, {{u"sleep"_ns, 0.2}}) + note(1, 2));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  second.send(note(2) + note(3));
  third.send(note(4));
  gone.send(note(5));
  gone.close();
  last.send(request(u"notes"_ns));
  const auto notes = last.reply();
  ASSERT_TRUE(notes);
  EXPECT_EQ(notes->result, id(NSArray{1, 2, 3, 4}));
}

TEST_F(NSConnectionTest, AnOperationThatRunsTheRunLoopIsNotNested) {
  startHelper();
  // What comes in one turn counts in the order of the connections.
  RawClient second, first, leaving;
  leaving.send(request(u"runLoop:"_ns, {{u"runLoop"_ns, 0.2}}));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  second.send(note(1));
  leaving.close();
  first.send(request(u"runLoop:"_ns, {{u"runLoop"_ns, 0.1}}) + note(2, 2));
  EXPECT_EQ(first.reply()->serial, 1);
  EXPECT_EQ(first.reply()->serial, 2);
  first.send(request(u"notes"_ns));
  EXPECT_EQ(first.reply()->result, id(NSArray{1, 2}));
}

TEST_F(NSConnectionTest, TheIdlestClientMakesWayForAnother) {
  const int helper = startHelper();
  std::vector<std::unique_ptr<RawClient>> clients;
  for (int i = 0; i < 300; ++i) {
    clients.push_back(std::make_unique<RawClient>());
    ASSERT_TRUE(clients.back()->answers()) << i;
    // The first is used on, and so never the idlest.
    ASSERT_TRUE(clients.front()->answers()) << i;
  }
  EXPECT_LT(descriptors(std::to_string(helper)), 270);
  EXPECT_TRUE(clients[1]->isEnded());
  EXPECT_TRUE(clients.front()->answers());
}

TEST_F(NSConnectionTest, ClientsBeyondTheLimitWaitWhileAllAreBusy) {
  startHelper();
  const std::string half = request(u"nil"_ns).substr(0, 9);
  std::vector<std::unique_ptr<RawClient>> busy;
  for (int i = 0; i < 256; ++i) {
    busy.push_back(std::make_unique<RawClient>());
    // The greeting says that the connection is taken.
    ASSERT_TRUE(busy.back()->next<ConnectionGreeting>() && busy.back()->send(half));
  }
  RawClient late;
  ASSERT_TRUE(late.send(request(u"nil"_ns)));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_TRUE(late.isSilent());
  busy.front()->close();
  EXPECT_TRUE(late.reply());
}

TEST_F(NSConnectionTest, GreetsAndSaysWhenItBegins) {
  startHelper();
  RawClient client;
  const auto greeting = client.next<ConnectionGreeting>();
  ASSERT_TRUE(greeting);
  EXPECT_EQ(greeting->version, u"1.2"_ns);
  EXPECT_EQ(greeting->path.UTF8String(), TEST_HELPER);
  EXPECT_LT(NSDate::date().timeIntervalSinceReferenceDate - greeting->since.timeIntervalSinceReferenceDate, 60);
  client.send(request(u"sleep:"_ns, {{u"sleep"_ns, 0.2}}, 7) + request(u"nil"_ns, {}, 8));
  for (const int serial : {7, 8}) {
    EXPECT_EQ(client.next<ConnectionBegun>()->serial, serial);
    EXPECT_EQ(client.reply()->serial, serial);
  }
}

TEST_F(NSConnectionTest, ALongReplyIsOutBeforeTheNextRequestBegins) {
  const int helper = startHelper();
  RawClient first, second;
  constexpr std::uint32_t kBytes = 24u << 20;
  first.send(request(u"bytes:"_ns, {{u"bytes"_ns, kBytes}}));
  ASSERT_TRUE(first.next<ConnectionBegun>());
  second.send(request(u"sleep:"_ns, {{u"sleep"_ns, 30}}));
  const auto reply = first.reply();
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->result.data().length(), kBytes);
  ::kill(helper, SIGKILL);
}

TEST_F(NSConnectionTest, ALongRequestIsInBeforeTheNextOneBegins) {
  startHelper();
  RawClient first, second;
  const std::string bytes(24u << 20, 'x');
  const std::string large =
      request(u"length:"_ns, {{u"length"_ns, NSData::dataWithBytes(bytes.data(), bytes.size())}});
  first.send(request(u"sleep:"_ns, {{u"sleep"_ns, 0.3}}) + note(1, 2));
  ASSERT_TRUE(first.next<ConnectionBegun>());
  // The note is there first, but would wait for the large request only while that moves.
  std::thread sender([&] { second.send(large); });
  EXPECT_TRUE(second.reply());
  EXPECT_EQ(first.reply()->serial, 1);
  EXPECT_EQ(first.reply()->serial, 2);
  sender.join();
}

TEST_F(NSConnectionTest, AMessageThatNeverEndsHoldsUpNoRequestForEver) {
  startHelper();
  RawClient endless, honest;
  ASSERT_TRUE(honest.answers());
  std::atomic_bool isAnswered = false;
  std::thread sender([&] {
    const std::string part(3u << 20, 'x');
    endless.send(std::string("\x1f\0\0\0", 4));
    for (int i = 0; i < 100 && !isAnswered && endless.send(part); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_TRUE(isAnswered);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_TRUE(honest.answers());
  isAnswered = true;
  sender.join();
}

TEST_F(NSConnectionTest, WritesDownWhatItDoes) {
  const int helper = startHelper();
  RawClient first, second;
  const NSString odd = u"/a\nb\xdcff"_ns;
  first.send(request(u"sleep:"_ns, {{u"sleep"_ns, 0.1}}));
  ASSERT_TRUE(first.next<ConnectionBegun>());
  first.send(request(u"sleep:"_ns, {{u"sleep"_ns, 30}, {u"file"_ns, odd}}));
  second.send(request(u"nil"_ns));
  ASSERT_TRUE(first.next<ConnectionBegun>());
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  const auto record = readConnectionRecord(openConnectionRecord(name()));
  ASSERT_TRUE(record);
  EXPECT_TRUE(record->isWorking);
  EXPECT_EQ(record->process, helper);
  EXPECT_EQ(record->client, ::getpid());
  EXPECT_EQ(record->selector, u"sleep:"_ns);
  EXPECT_EQ(record->input, odd);
  EXPECT_EQ(record->server.version, u"1.2"_ns);
  ::kill(helper, SIGKILL);
}

TEST_F(NSConnectionTest, ARecordIsReadWholeOrNotAtAll) {
  EXPECT_FALSE(readConnectionRecord(openConnectionRecord(name())));
  const ConnectionListener listener = listenOnConnectionName(name(), {.process = 1});
  const auto first = readConnectionRecord(openConnectionRecord(name()));
  ASSERT_TRUE(first);
  EXPECT_EQ(first->process, 1);
  EXPECT_FALSE(first->isWorking);
  ConnectionRecord written = {.process = 2, .isWorking = true, .selector = u"x"_ns};
  written.input = NSString::stringWithCharacters(std::u16string(100'000, u'y'));
  writeConnectionRecord(listener.record, written);
  auto record = readConnectionRecord(openConnectionRecord(name()));
  ASSERT_TRUE(record && record->isWorking);
  EXPECT_LT(record->input.length(), 10'000u);
  writeConnectionRecordIsIdle(listener.record);
  record = readConnectionRecord(openConnectionRecord(name()));
  ASSERT_TRUE(record);
  EXPECT_EQ(record->process, 2);
  EXPECT_FALSE(record->isWorking);
  // A byte of the text that somebody is about to write over.
  {
    std::fstream content(file(".record"), std::ios::in | std::ios::out | std::ios::binary);
    content.seekp(2'000);
    ASSERT_EQ(content.peek(), 'y');
    content.put('z');
  }
  EXPECT_FALSE(readConnectionRecord(openConnectionRecord(name())));
  for (const std::uintmax_t size : {200u, 12u, 11u, 0u}) {
    std::filesystem::resize_file(file(".record"), size);
    EXPECT_FALSE(readConnectionRecord(openConnectionRecord(name()))) << size;
  }
  // What announces a length and ends there is not read behind its end.
  std::ofstream(file(".record"), std::ios::binary) << std::string(4, '\0') << std::string(4, '\xff');
  EXPECT_FALSE(readConnectionRecord(openConnectionRecord(name())));
}

TEST_F(NSConnectionTest, EndsWhenNobodyUsesItOrFindsIt) {
  const auto endsBy = [this](const char *setting, const std::function<void()> &event) {
    ::setenv(setting, "0.2", 1);
    const int helper = startHelper();
    RawClient client;
    EXPECT_TRUE(client.answers());
    event();
    EXPECT_TRUE(client.isEnded()) << setting;
    EXPECT_EQ(::waitpid(helper, nullptr, 0), helper);
    EXPECT_FALSE(std::filesystem::exists(file()));
    ::unsetenv(setting);
  };
  endsBy("TEST_HELPER_IDLE_SECONDS", [] {});
  endsBy("TEST_HELPER_LOOK_SECONDS", [this] { std::filesystem::remove(file()); });
  endsBy("TEST_HELPER_LOOK_SECONDS", [this] { std::filesystem::remove_all(folder); });
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(NSConnectionTest, EndsWhenNobodyHasEverAsked) {
  for (const bool isIdle : {true, false}) {
    NSConnection connection;
    ASSERT_TRUE(connection.registerName(name()));
    bool isOver = false;
    connection.setInvalidationHandler([&isOver] { isOver = true; });
    if (isIdle) {
      connection.setIdleLimit(0.05);
    } else {
      std::filesystem::remove(file());
      connection.setReachabilityInterval(0.05);
    }
    const Deadline deadline = Deadline::after(10);
    while (!isOver && !deadline.isOver())
      NSRunLoop::currentRunLoop().runUntilDate(NSDate{NSDate::date().timeIntervalSinceReferenceDate + 0.1});
    EXPECT_TRUE(isOver) << isIdle;
  }
}

TEST_F(NSConnectionTest, ATermSignalLetsTheRequestUnderWayEnd) {
  const int helper = startHelper();
  RawClient first, second;
  // Its answer is longer than a socket's buffer.
  first.send(
      request(u"sleep:"_ns, {{u"sleep"_ns, 0.3},
                             {u"large"_ns, NSData::dataWithBytes(std::string(2 << 20, 'x').data(), 2 << 20)}}) +
      request(u"nil"_ns, {}, 2));
  second.send(request(u"nil"_ns));
  ASSERT_TRUE(first.next<ConnectionBegun>());
  ::kill(helper, SIGTERM);
  std::this_thread::sleep_for(std::chrono::milliseconds(350));
  EXPECT_TRUE(first.reply());
  EXPECT_FALSE(first.next<ConnectionBegun>());
  EXPECT_FALSE(second.next<ConnectionBegun>());
}

TEST_F(NSConnectionTest, WorkForACallerThatHasGoneEnds) {
  ::setenv("TEST_HELPER_ABANDONED_SECONDS", "0.2", 1);
  const int helper = startHelper();
  RawClient stays, waits;
  // Whoever stays is served however long it takes.
  stays.send(request(u"sleep:"_ns, {{u"sleep"_ns, 0.5}}));
  EXPECT_TRUE(stays.reply());
  {
    RawClient goes;
    goes.send(request(u"sleep:"_ns, {{u"sleep"_ns, 600}}));
    ASSERT_TRUE(goes.next<ConnectionBegun>());
  }
  waits.send(request(u"nil"_ns));
  EXPECT_FALSE(waits.next<ConnectionBegun>());
  EXPECT_EQ(::waitpid(helper, nullptr, 0), helper);
}

TEST_F(NSConnectionTest, TakesClientsAgainAfterItsDescriptorsRanOut) {
  // One that is like it shows how many descriptors it needs with a client.
  const int model = startHelper();
  RawClient only;
  ASSERT_TRUE(only.answers() && only.answers());
  const auto open = static_cast<rlim_t>(descriptors(std::to_string(model)));
  HelperClient().stopHelper();
  rlimit before = {};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit few = {open + 1, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  const int helper = startHelper();
  ::setrlimit(RLIMIT_NOFILE, &before);
  RawClient first;
  ASSERT_TRUE(first.answers() && first.answers());
  ASSERT_EQ(descriptors(std::to_string(helper)), static_cast<long>(open));
  RawClient second, third;
  EXPECT_TRUE(second.answers());
  EXPECT_TRUE(third.send(request(u"nil"_ns)) && first.answers());
  second.close();
  EXPECT_TRUE(third.reply());
}

TEST_F(NSConnectionTest, CountsNoBytesOfRequestsThatAreDoneOrDropped) {
  startHelper();
  RawClient good;
  // Together more than the requests of all clients may hold at a time.
  const NSData large = NSData::dataWithMallocedBytes(std::calloc(96u << 20, 1), 96u << 20);
  const std::string whole = request(u"length:"_ns, {{u"length"_ns, large}});
  for (int round = 0; round < 12; ++round) {
    EXPECT_TRUE(good.send(whole) && good.reply());
    RawClient leaving, cut;
    leaving.send(whole);
    leaving.close();
    cut.send(std::string_view(whole).substr(0, whole.size() - 1));
  }
}

TEST_F(NSConnectionTest, ALivingOwnerKeepsItsNameAndADeadOneLosesIt) {
  const int helper = startHelper();
  NSConnection second;
  EXPECT_FALSE(second.registerName(name()));
  // Whoever listens is alive, even when somebody has removed its lock.
  std::filesystem::remove(file(".lock"));
  EXPECT_FALSE(second.registerName(name()));
  EXPECT_TRUE(RawClient().answers());

  ::kill(helper, SIGKILL);
  ::waitpid(helper, nullptr, 0);
  EXPECT_TRUE(std::filesystem::is_socket(file()));
  EXPECT_FALSE(connectToConnectionName(name()));
  EXPECT_TRUE(second.registerName(name()));
  EXPECT_TRUE(second.registerName(name()));
  EXPECT_TRUE(connectToConnectionName(name()));
}

TEST_F(NSConnectionTest, ACopyOfTheProcessListensUnderNoName) {
  auto first = std::make_unique<NSConnection>();
  NSConnection second;
  ASSERT_TRUE(first->registerName(u"first"_ns) && second.registerName(u"second"_ns));
  const auto countListeners = [] {
    int count = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
      int listens = 0;
      socklen_t length = sizeof listens;
      count += ::getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &length) == 0 && listens;
    }
    return count;
  };
  const auto listenersOfACopy = [&] {
    const pid_t copy = ::fork();
    if (copy == 0) ::_exit(countListeners());
    int status = -1;
    ::waitpid(copy, &status, 0);
    return WEXITSTATUS(status);
  };
  EXPECT_EQ(countListeners(), 2);
  EXPECT_EQ(listenersOfACopy(), 0);
  first.reset();
  EXPECT_EQ(countListeners(), 1);
  EXPECT_EQ(listenersOfACopy(), 0);
}

TEST_F(NSConnectionTest, NamesAndFoldersThatCannotBeTrustedAreRefused) {
  for (const NSString &bad : {NSString(), u""_ns, u"."_ns, u".."_ns, u"a/b"_ns, u"a\0b"_ns})
    EXPECT_FALSE(listenOnConnectionName(bad, {}));
  std::ofstream(file()) << "precious";
  EXPECT_FALSE(listenOnConnectionName(name(), {}));
  EXPECT_TRUE(std::filesystem::is_regular_file(file()));
  std::filesystem::remove(file());

  const ConnectionListener listener = listenOnConnectionName(name(), {});
  struct stat info = {};
  ASSERT_EQ(::stat(file().c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0600u);
  EXPECT_EQ(peerProcessIdentifier(connectToConnectionName(name())), ::getpid());
  ::chmod(file().c_str(), 0666);
  EXPECT_FALSE(connectToConnectionName(name()));
  ::chmod(file().c_str(), 0600);
  // Once the listener takes no more, a client waits no longer than its limit.
  bool isBusy = false;
  std::vector<FileDescriptor> waiting;
  while (!isBusy && waiting.size() < 1000) {
    waiting.push_back(connectToConnectionName(name(), 0.01, &isBusy));
    ASSERT_EQ(isBusy, !waiting.back());
  }
  EXPECT_TRUE(isBusy);

  ::chmod(folder.c_str(), 0777);
  EXPECT_FALSE(openConnectionFolder());
  ::chmod(folder.c_str(), 0700);
  ::setenv("QUIVERLEAF_RUNTIME_DIR", "relative", 1);
  EXPECT_FALSE(openConnectionFolder());
  // Longer than a socket's address may be.
  ::setenv("QUIVERLEAF_RUNTIME_DIR", (folder / std::string(150, 'x')).c_str(), 1);
  const ConnectionListener deep = listenOnConnectionName(name(), {});
  EXPECT_TRUE(deep);
  EXPECT_TRUE(connectToConnectionName(name()));
}

TEST_F(NSConnectionTest, OtherUsersAreTurnedAway) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  startHelper();
  ASSERT_EQ(::chown(folder.c_str(), 65534, 0), 0);
  EXPECT_FALSE(openConnectionFolder());
  ASSERT_EQ(::chown(folder.c_str(), 0, 0), 0);
  ASSERT_EQ(::chown(file().c_str(), 65534, 0), 0);
  EXPECT_FALSE(connectToConnectionName(name()));
  ASSERT_EQ(::chown(file().c_str(), 0, 0), 0);
  ::chmod(folder.c_str(), 0755);
  const FileDescriptor place = openConnectionFolder();
  ::chmod(file().c_str(), 0666);
  const pid_t other = ::fork();
  if (other == 0) {
    sockaddr_un address = {AF_UNIX, {}};
    const std::string path = "/proc/self/fd/" + std::to_string(place.get()) + "/" + name().UTF8String();
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    char byte;
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    if (::setuid(65534) != 0 || ::connect(socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
      ::_exit(2);
    ::_exit(::recv(socket, &byte, 1, 0) == 0 ? 0 : 1);
  }
  int status = 0;
  ::waitpid(other, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  ::chmod(file().c_str(), 0600);
  EXPECT_TRUE(RawClient().answers());
}

}  // namespace
}  // namespace nimbo
