// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSConnection.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/Foundation/NSRunLoop.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "tests/platform/Foundation/Connection/ConnectionClients.hpp"

namespace nimbo {
namespace {

using NSConnectionTest = ConnectionFixture;

TEST_F(NSConnectionTest, ABadMessageEndsItsConnectionAndNoOther) {
  const std::string cases[] = {
      std::string(4, '\0'),
      std::string(4, '\xff'),
      std::string("\x20\0\0\1", 4) + "beyond the largest message",
      std::string("\0\0\0\x07garbage", 11),
      std::string("\0\0\0\x42", 4) + std::string("bplist00").append(58, '\xff'),
      message(NSPropertyListSerialization::dataWithPropertyList(
          NSDictionary{{u"Request"_ns, 1}, {u"Selector"_ns, u"nil"_ns}}, NSPropertyListFormat::xml)),
      request(u"nil"_ns).replace(4, 8, "bplist01"),
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

}  // namespace
}  // namespace nimbo
