// SPDX-License-Identifier: Apache-2.0
#include "clients/cpp/HelperClient.hpp"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Foundation/Connection/ConnectionName.hpp"
#include "tests/clients/HelperFixture.hpp"
#include "tests/support/Interruptions.hpp"

namespace nimbo {
namespace {

using Status = HelperClient::Status;

class HelperClientTest : public HelperFixture {
 protected:
  static HelperClient clientWithTimeout(double seconds, bool endsHungHelper = true) {
    HelperClient::Options options;
    options.timeoutSeconds = seconds;
    options.endsHungHelper = endsHungHelper;
    return HelperClient(options);
  }
  static HelperClient::Answer sleepFor(HelperClient &client, double seconds) {
    return client.call(u"sleep:"_ns, {{u"sleep"_ns, seconds}});
  }
};

TEST_F(HelperClientTest, TellsApartHowACallEnds) {
  const struct {
    NSString selector;
    Status status;
    NSString exceptionName;
    NSString exceptionReason;
  } cases[] = {
      {u"anything"_ns, Status::answered, {}, {}},
      {u"nil"_ns, Status::nil, {}, {}},
      {u"raise"_ns, Status::exception, u"TestException"_ns, u"as it was told"_ns},
      {u"exhaust"_ns, Status::exception, u"NSGenericException"_ns, u"std::bad_alloc"_ns},
      {u"throwNumber"_ns, Status::exception, u"NSGenericException"_ns, u"Unknown exception"_ns},
      {u"crash"_ns, Status::died, {}, {}},
      {NSString(), Status::invalid, {}, {}},
  };
  HelperClient client;
  for (const auto &[selector, status, exceptionName, exceptionReason] : cases) {
    const auto answer = client.call(selector, {});
    EXPECT_EQ(answer.status, status) << selector.UTF8String() << ": " << answer.message;
    EXPECT_EQ(answer.exceptionName, exceptionName) << selector.UTF8String();
    EXPECT_EQ(answer.exceptionReason, exceptionReason) << selector.UTF8String();
  }
  EXPECT_EQ(client.call(u"unwritable"_ns, {}).exceptionName, u"NSGenericException"_ns);
  EXPECT_EQ(client.call(u"list:"_ns, {{u"list"_ns, NSArray{1}}}).status, Status::answered);
}

TEST_F(HelperClientTest, HandsOnWhyAnAnswerIsNilOrNotWhole) {
  const struct {
    NSString selector;
    Status status;
    ErrorCode code;
    NSString reason;
  } cases[] = {
      {u"fail"_ns, Status::nil, ErrorCode::damaged, u"the test asked for it"_ns},
      {u"leaveOut"_ns, Status::answered, ErrorCode::timeLimit, u"pages are left out"_ns},
      {u"failOddly"_ns, Status::answered, ErrorCode::other, {}},
      {u"nil"_ns, Status::nil, ErrorCode::none, {}},
      {u"raise"_ns, Status::exception, ErrorCode::none, {}},
  };
  HelperClient client;
  for (const auto &[selector, status, code, reason] : cases) {
    const auto answer = client.call(selector, {});
    EXPECT_EQ(answer.status, status) << selector.UTF8String();
    EXPECT_EQ(answer.code, code) << selector.UTF8String();
    EXPECT_EQ(answer.reason, reason) << selector.UTF8String();
  }
}

TEST_F(HelperClientTest, SendsWhatTheContractSays) {
  HelperClient client;
  const NSData data = NSData::dataWithBytes("\0bytes", 6);
  const NSString text = u"/a/text"_ns;
  const HelperClient::Answer answers[] = {
      client.metaDataForFile(text),
      client.searchableTextOfWebArchive(text),
      client.attributedStringWithPDF(true, data),
      client.attributedStringWithContentsOfFile(text),
      client.writeRTFDData(data, text),
      client.RTFDWithHTML(data, text, true),
      client.PDFImageRepOfFile(text),
      client.posterImageForMovieWithFile(text),
      client.imageWithContentsOfFile(text, true, true),
      client.stringWithPDF(data, {{text, true}}),
  };
  ASSERT_EQ(std::size(answers), NimboImExport.size());
  for (std::size_t i = 0; i < NimboImExport.size(); ++i) {
    NSDictionary expected = NSDictionary::dictionary();
    for (const auto &[keyword, kind] : NimboImExport[i].arguments) {
      if (keyword.empty()) continue;
      const id value = kind == RemoteKind::data         ? id(data)
                       : kind == RemoteKind::boolean    ? id(true)
                       : kind == RemoteKind::dictionary ? id(NSDictionary{{text, true}})
                                                        : id(text);
      expected.setObject(value, NSString::stringWithCharacters(keyword));
    }
    const NSDictionary sent = answers[i].result.dictionary();
    EXPECT_EQ(sent.objectForKey(u"Selector"_ns).string().view(), NimboImExport[i].selector);
    EXPECT_EQ(sent.objectForKey(u"Arguments"_ns), id(expected)) << i;
  }
  const auto withoutBase = client.RTFDWithHTML(data, NSString(), false).result.dictionary();
  EXPECT_EQ(withoutBase.objectForKey(u"Arguments"_ns).dictionary().count(), 2u);
}

TEST_F(HelperClientTest, FilesAreNamedFromTheWorkingDirectory) {
  HelperClient client;
  const struct {
    NSString keyword;
    std::function<HelperClient::Answer(const NSString &)> call;
  } operations[] = {
      {u"metaDataForFile"_ns, [&](auto &path) { return client.metaDataForFile(path); }},
      {u"searchableTextOfWebArchive"_ns, [&](auto &path) { return client.searchableTextOfWebArchive(path); }},
      {u"attributedStringWithContentsOfFile"_ns,
       [&](auto &path) { return client.attributedStringWithContentsOfFile(path); }},
      {u"toFile"_ns, [&](auto &path) { return client.writeRTFDData(NSData(), path); }},
      {u"PDFImageRepOfFile"_ns, [&](auto &path) { return client.PDFImageRepOfFile(path); }},
      {u"posterImageForMovieWithFile"_ns, [&](auto &path) { return client.posterImageForMovieWithFile(path); }},
      {u"imageWithContentsOfFile"_ns,
       [&](auto &path) { return client.imageWithContentsOfFile(path, false, false); }},
  };
  const auto before = std::filesystem::current_path();
  const auto here = std::filesystem::canonical(folder) / "h\xffre";
  std::filesystem::create_directory(here);
  std::filesystem::current_path(here);
  for (const auto &[keyword, call] : operations) {
    const auto sent = [&](const NSString &path) {
      return call(path)
          .result.dictionary()
          .objectForKey(u"Arguments"_ns)
          .dictionary()
          .objectForKey(keyword)
          .string();
    };
    for (const char *name : {"x/../y", "caf\xc3\xa9", "caf\xe9", "~", "~/x", ".", "a\nb"})
      EXPECT_EQ(sent(NSString::stringWithFileSystemRepresentation(name)),
                NSString::stringWithFileSystemRepresentation((here / name).native()))
          << keyword.UTF8String() << " " << name;
    for (const NSString &path : {u"/x/../y"_ns, u"/\xdcff"_ns, u""_ns, u"a\0b"_ns, NSString()})
      EXPECT_EQ(sent(path), path) << keyword.UTF8String() << " " << path.UTF8String();
  }
  std::filesystem::remove(here);
  for (const auto &[keyword, call] : operations) {
    EXPECT_EQ(call(u"/x"_ns).status, Status::answered);
    const auto answer = call(u"x"_ns);
    EXPECT_EQ(answer.status, Status::invalid) << keyword.UTF8String();
    EXPECT_NE(answer.message.find("working directory"), std::string::npos) << answer.message;
  }
  std::filesystem::current_path(before);
}

TEST_F(HelperClientTest, TheProgramIsNamedFromTheWorkingDirectory) {
  const auto before = std::filesystem::current_path();
  const std::filesystem::path program = TEST_HELPER;
  HelperClient::Options options;
  options.helperPath = program.filename();
  std::filesystem::current_path(program.parent_path());
  HelperClient client(options);
  std::filesystem::current_path("/");
  EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::nil);
  EXPECT_TRUE(client.stopHelper());

  const auto gone = folder / "gone";
  std::filesystem::create_directory(gone);
  std::filesystem::current_path(gone);
  std::filesystem::remove(gone);
  HelperClient::Answer failure;
  options.helperPath = "bin/true";  // Not the one below "/", where a helper starts.
  EXPECT_EQ(HelperClient(options).helperProcessIdentifier(&failure), 0);
  EXPECT_EQ(failure.status, Status::unreachable);
  EXPECT_NE(failure.message.find("working directory"), std::string::npos) << failure.message;
  std::filesystem::current_path(before);
}

TEST_F(HelperClientTest, AHungHelperCostsOneRequest) {
  HelperClient client = clientWithTimeout(0.2);
  const int hung = client.helperProcessIdentifier();
  EXPECT_EQ(sleepFor(client, 30).status, Status::timedOut);
  EXPECT_NE(::kill(hung, 0), 0);
  EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::nil);
  EXPECT_NE(client.helperProcessIdentifier(), hung);
}

TEST_F(HelperClientTest, TheTimeLimitIsOfWork) {
  // Three that take 0.6 s each are all answered, though the last waits for longer than it may take.
  std::vector<Status> statuses(3, Status::invalid);
  std::vector<std::thread> callers;
  const int helper = HelperClient().helperProcessIdentifier();
  for (Status &status : statuses)
    callers.emplace_back([&status] {
      HelperClient client = clientWithTimeout(1);
      status = sleepFor(client, 0.6).status;
    });
  for (std::thread &caller : callers) caller.join();
  EXPECT_EQ(statuses, std::vector(3, Status::answered));
  EXPECT_EQ(HelperClient().helperProcessIdentifier(), helper);
}

TEST_F(HelperClientTest, WhoOnlyWaitsEndsNoHelper) {
  HelperClient::Options options;
  options.waitingSeconds = 0.3;
  options.timeoutSeconds = 0.1;
  HelperClient working, waiting(options);
  const int helper = HelperClient().helperProcessIdentifier();
  std::thread caller([&] { EXPECT_EQ(sleepFor(working, 1.5).status, Status::answered); });
  while (!working.helperState()->record.isWorking) std::this_thread::yield();
  const auto answer = waiting.call(u"nil"_ns, {});
  EXPECT_EQ(answer.status, Status::timedOut);
  EXPECT_NE(answer.message.find("it works on sleep:"), std::string::npos) << answer.message;
  // Whatever becomes of the record: the helper's first words count.
  std::ofstream(file(".record")) << "no record";
  EXPECT_EQ(HelperClient(options).call(u"nil"_ns, {}).status, Status::timedOut);
  EXPECT_TRUE(working.helperState());
  caller.join();
  EXPECT_EQ(HelperClient().helperProcessIdentifier(), helper);
}

TEST_F(HelperClientTest, AHelperThatStopsBetweenRequestsIsReplaced) {
  HelperClient::Options options;
  options.waitingSeconds = 0.5;
  HelperClient client(options);
  const int stopped = client.helperProcessIdentifier();
  while (client.helperState()->record.isWorking) std::this_thread::yield();
  ::kill(stopped, SIGSTOP);
  EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::timedOut);
  EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::nil);
  EXPECT_NE(client.helperProcessIdentifier(), stopped);
}

TEST_F(HelperClientTest, ARequestThatHadNotBegunIsSentToTheNextHelper) {
  HelperClient working;
  const int helper = working.helperProcessIdentifier();
  std::vector<Status> statuses(4, Status::invalid);
  std::thread lost([&] { EXPECT_EQ(sleepFor(working, 600).status, Status::died); });
  while (!working.helperState()->record.isWorking) std::this_thread::yield();
  std::vector<std::thread> callers;
  for (Status &status : statuses)
    callers.emplace_back([&status] { status = HelperClient().call(u"nil"_ns, {}).status; });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  ::kill(helper, SIGKILL);
  for (std::thread &caller : callers) caller.join();
  lost.join();
  EXPECT_EQ(statuses, std::vector(4, Status::nil));
  EXPECT_EQ(startedHelpers(), 2);
}

TEST_F(HelperClientTest, AHelperThatBeginsNothingIsGivenUpSoon) {
  const ConnectionListener listener = listenOnConnectionName(name(), {});
  std::atomic_bool isOver = false;
  std::thread closer([&] {
    while (!isOver) {
      pollfd waited = {listener.socket.get(), POLLIN, 0};
      if (::poll(&waited, 1, 10) > 0) FileDescriptor(::accept(listener.socket.get(), nullptr, nullptr));
    }
  });
  const auto answer = HelperClient().call(u"nil"_ns, {});
  HelperClient::Options options;
  options.waitingSeconds = 0.05;
  const auto hasty = HelperClient(options).call(u"nil"_ns, {});
  isOver = true;
  closer.join();
  EXPECT_EQ(answer.status, Status::unreachable);
  EXPECT_NE(answer.message.find("10 times"), std::string::npos) << answer.message;
  EXPECT_EQ(hasty.status, Status::timedOut);
  EXPECT_EQ(hasty.message, "The helper did not begin within 0.05 seconds");
}

TEST_F(HelperClientTest, AHelperThatAnOperationSpoiltMakesWayUnnoticed) {
  // Too many files are left open, no more can be, a copy of the process outlives it.
  for (const NSString &operation : {u"leave:"_ns, u"lowerLimit"_ns, u"crashBesideCopy"_ns}) {
    const int before = HelperClient().helperProcessIdentifier();
    std::vector<Status> statuses(4, Status::invalid);
    std::vector<std::thread> callers;
    HelperClient client;
    std::thread spoiler([&] { client.call(operation, {{u"leave"_ns, 600}}); });
    for (Status &status : statuses)
      callers.emplace_back([&status] { status = clientWithTimeout(2).call(u"nil"_ns, {}).status; });
    spoiler.join();
    for (std::thread &caller : callers) caller.join();
    EXPECT_EQ(statuses, std::vector(4, Status::nil)) << operation.UTF8String();
    EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::nil);
    EXPECT_NE(client.helperProcessIdentifier(), before);
  }
}

TEST_F(HelperClientTest, AMovedClientKeepsItsHelper) {
  HelperClient client;
  const int helper = client.helperProcessIdentifier();
  HelperClient moved = std::move(client);
  EXPECT_EQ(moved.call(u"nil"_ns, {}).status, Status::nil);
  HelperClient other;
  other = std::move(moved);
  EXPECT_EQ(other.helperProcessIdentifier(), helper);
}

TEST_F(HelperClientTest, TellsWhyNoHelperCanBeStarted) {
  std::filesystem::create_directory(file(".start"));
  HelperClient::Answer failure;
  EXPECT_EQ(HelperClient().helperProcessIdentifier(&failure), 0);
  EXPECT_EQ(failure.status, Status::unreachable);
  EXPECT_EQ(failure.message, "Cannot open the lock of the name: Is a directory");
  std::filesystem::remove(file(".start"));

  std::ofstream(file()) << "no socket";
  EXPECT_EQ(HelperClient().helperProcessIdentifier(&failure), 0);
  EXPECT_EQ(failure.status, Status::unreachable);
  EXPECT_EQ(failure.message, "A file that is no socket has the name of the connection");
  std::filesystem::remove(file());

  // One that never answers is ended.
  HelperClient::Options options;
  options.helperPath = folder / "silent";
  std::ofstream(options.helperPath) << "#!/bin/sh\necho $$ >'" << (folder / "process").native()
                                    << "'\nexec sleep 600\n";
  std::filesystem::permissions(options.helperPath, std::filesystem::perms::owner_all);
  EXPECT_EQ(HelperClient(options).helperProcessIdentifier(&failure), 0);
  EXPECT_EQ(failure.status, Status::unreachable);
  EXPECT_EQ(failure.message, options.helperPath + " does not answer");
  int process = 0;
  std::ifstream(folder / "process") >> process;
  ASSERT_GT(process, 0);
  EXPECT_NE(::kill(process, 0), 0);
}

TEST_F(HelperClientTest, AHelperWhoseProgramIsGoneIsReplaced) {
  const auto program = folder / "helper";
  std::filesystem::copy_file(TEST_HELPER, program);
  HelperClient::Options options;
  options.helperPath = program;
  HelperClient old(options);
  const int first = old.helperProcessIdentifier();
  std::filesystem::rename(program, folder / "aside");
  std::filesystem::copy_file(TEST_HELPER, program);
  EXPECT_EQ(HelperClient().helperState()->record.process, first);
  EXPECT_NE(HelperClient().helperProcessIdentifier(), first);
  // One that has nothing to start, or may not, takes what is there.
  HelperClient().stopHelper();
  const int second = HelperClient(options).helperProcessIdentifier();
  std::filesystem::remove(program);
  options.startsHelper = false;
  EXPECT_EQ(HelperClient(options).helperProcessIdentifier(), second);
}

TEST_F(HelperClientTest, ALateReplyIsNotMistaken) {
  // The second call has what the first one's overrun leaves of a second, enough on a loaded machine, too.
  HelperClient client = clientWithTimeout(1, false);
  const int helper = client.helperProcessIdentifier();
  EXPECT_EQ(sleepFor(client, 1.2).status, Status::timedOut);
  EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::nil);
  EXPECT_EQ(client.helperProcessIdentifier(), helper);
}

TEST_F(HelperClientTest, ACrashCostsExactlyOneRequest) {
  HelperClient client;
  for (int i = 0; i < 30; ++i) {
    const int helper = client.helperProcessIdentifier();
    // Between two calls a death costs nothing.
    if (i == 20) {
      ::kill(helper, SIGKILL);
      ::waitpid(helper, nullptr, 0);
    }
    const Interruptions interruptions;
    const Status status = client.call(i == 10 ? u"crash"_ns : u"nil"_ns, {}).status;
    EXPECT_EQ(status, i == 10 ? Status::died : Status::nil) << i;
    EXPECT_EQ(::kill(helper, 0) != 0, i == 10 || i == 20) << "the call ends after its helper";
  }
  EXPECT_EQ(startedHelpers(), 3);
}

TEST_F(HelperClientTest, AKillDuringARequestCostsThatRequest) {
  HelperClient client;
  HelperClient waiting;
  const int helper = client.helperProcessIdentifier();
  std::thread killer([helper, &waiting] {
    while (!waiting.helperState()->record.isWorking) std::this_thread::yield();
    ::kill(helper, SIGKILL);
  });
  EXPECT_EQ(sleepFor(client, 30).status, Status::died);
  killer.join();
  EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::nil);
  EXPECT_EQ(waiting.call(u"nil"_ns, {}).status, Status::nil);
}

TEST_F(HelperClientTest, ClientsThatStartAtOnceMakeOneHelper) {
  constexpr int kClients = 5;
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  for (int i = 0; i < kClients; ++i) {
    if (::fork() == 0) {
      const int helper = HelperClient().helperProcessIdentifier();
      ::_exit(::write(ends[1], &helper, sizeof helper) == sizeof helper ? 0 : 1);
    }
  }
  std::set<int> helpers;
  for (int i = 0; i < kClients; ++i) {
    int helper = 0;
    ASSERT_EQ(::read(ends[0], &helper, sizeof helper), static_cast<ssize_t>(sizeof helper));
    helpers.insert(helper);
    ::wait(nullptr);
  }
  ::close(ends[0]);
  ::close(ends[1]);
  EXPECT_EQ(helpers.size(), 1u);
  EXPECT_FALSE(helpers.contains(0));
  EXPECT_EQ(startedHelpers(), 1);
}

TEST_F(HelperClientTest, StopsAndStartsAndLeavesNothing) {
  HelperClient client;
  const long before = descriptors("self");
  EXPECT_FALSE(client.stopHelper());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(client.call(u"nil"_ns, {}).status, Status::nil);
    EXPECT_TRUE(client.stopHelper());
    EXPECT_FALSE(std::filesystem::exists(file())) << "it did not end by itself";
  }
  EXPECT_EQ(descriptors("self"), before);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child was not reaped";

  HelperClient::Options options;
  options.startsHelper = false;
  EXPECT_EQ(HelperClient(options).call(u"nil"_ns, {}).status, Status::unreachable);
  options.startsHelper = true;
  for (const char *path : {"/nowhere/helper", "/bin/true"}) {
    options.helperPath = path;
    const auto answer = HelperClient(options).call(u"nil"_ns, {});
    EXPECT_EQ(answer.status, Status::unreachable);
    EXPECT_NE(answer.message.find(path), std::string::npos) << answer.message;
  }
  EXPECT_EQ(descriptors("self"), before);
}

TEST_F(HelperClientTest, LargeDataCrossesAndItsMemoryComesBack) {
  HelperClient client;
  const int helper = client.helperProcessIdentifier();
  client.call(u"nil"_ns, {});
  const long pages = residentPages(helper);
  const long open = descriptors(std::to_string(helper));
  for (const std::uint32_t bytes : {3u << 20, 24u << 20, 64u << 20, 24u << 20}) {
    const NSData data = NSData::dataWithMallocedBytes(std::calloc(bytes, 1), bytes);
    EXPECT_EQ(client.call(u"length:"_ns, {{u"length"_ns, data}}).result, id(bytes));
    EXPECT_EQ(client.call(u"bytes:"_ns, {{u"bytes"_ns, bytes}}).result, id(data));
  }
#ifdef __SANITIZE_ADDRESS__
  constexpr long kAllowedPages = (512 << 20) / 4096;  // The sanitizer keeps freed memory for a while.
#else
  constexpr long kAllowedPages = (8 << 20) / 4096;
#endif
  EXPECT_LT(residentPages(helper), pages + kAllowedPages);
  EXPECT_EQ(descriptors(std::to_string(helper)), open);
  EXPECT_EQ(client.helperProcessIdentifier(), helper);
}

}  // namespace
}  // namespace nimbo
