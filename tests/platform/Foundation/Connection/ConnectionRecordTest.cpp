// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionRecord.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/Foundation/Connection/ConnectionClients.hpp"

namespace nimbo {
namespace {

using ConnectionRecordTest = ConnectionFixture;

TEST_F(ConnectionRecordTest, WritesDownWhatItDoes) {
  const int helper = startHelper();
  RawClient first, second;
  const NSString odd = u"/a\nb\xdcff"_ns;
  // The connection is taken.
  ASSERT_TRUE(second.next<ConnectionGreeting>());
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
  EXPECT_EQ(record->waiting, std::vector<int>{::getpid()});
  EXPECT_EQ(record->server.version, u"1.2"_ns);
  EXPECT_EQ(record->server.path.UTF8String(), TEST_HELPER);
  for (const NSDate &moment : {record->server.since, record->begun})
    EXPECT_LT(NSDate::date().timeIntervalSinceReferenceDate - moment.timeIntervalSinceReferenceDate, 60);
  ::kill(helper, SIGKILL);
}

TEST_F(ConnectionRecordTest, ARecordIsReadWholeOrNotAtAll) {
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

}  // namespace
}  // namespace nimbo
