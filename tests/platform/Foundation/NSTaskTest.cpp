// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSTask.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tests/support/Interruptions.hpp"

namespace nimbo {
namespace {

NSTask shell(std::u16string_view script) {
  return NSTask{.launchPath = u"/bin/sh"_ns,
                .arguments = {u"-c"_ns, NSString::stringWithCharacters(script)},
                .deadline = Deadline::after(60)};
}

std::ptrdiff_t openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator());
}

TEST(NSTask, CollectsStandardErrorWhileTheProgramRuns) {
  const Interruptions interruptions;
  const auto result =
      shell(u"head -c 300000 /dev/zero >&2; echo end >&2; exit 3").run();  // A pipe holds 65536.
  ASSERT_TRUE(result);
  EXPECT_EQ(result->terminationStatus, 3);
  EXPECT_EQ(result->standardError.length(), 300004u);
  EXPECT_TRUE(result->standardError.view().ends_with("end\n"));
}

TEST(NSTask, GivesTheProgramAnEmptyInputAndPlainSignals) {
  // Which this process may have blocked and ignore.
  sigset_t pipe;
  ::sigemptyset(&pipe);
  ::sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
  const auto before = ::signal(SIGPIPE, SIG_IGN);
  const auto result = shell(u"cat >&2; kill -PIPE $$").run();
  ::signal(SIGPIPE, before);
  ::pthread_sigmask(SIG_UNBLOCK, &pipe, nullptr);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->terminationStatus, 128 + 13);
  EXPECT_EQ(result->standardError, NSData::data());
}

TEST(NSTask, ReadsWhatItIsGivenAndCollectsBothOutputs) {
  const Interruptions interruptions;
  const std::string input(3'000'000, 'x');
  NSTask task = shell(u"cat; echo \"$A|$HOME|$PWD\" >&2");
  task.standardInput = NSData::dataWithBytes(input.data(), input.size());
  task.environment = {{u"A"_ns, u"a b=c"_ns}, {u"EMPTY"_ns, u""_ns}};
  task.currentDirectoryPath = u"/usr/bin"_ns;
  task.standardOutput = NSTask::Output::collected;
  const auto result = task.run();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardOutput, task.standardInput);
  EXPECT_EQ(result->standardError.view(), "a b=c||/usr/bin\n");
  task.standardError = NSTask::Output::discarded;
  EXPECT_EQ(task.run()->standardError, NSData());
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  ASSERT_EQ(::write(ends[1], "pipe", 4), 4);
  ::close(ends[1]);
  task.standardInputDescriptor = ends[0];
  EXPECT_EQ(task.run()->standardOutput.view(), "pipe");
  EXPECT_EQ(::close(ends[0]), 0);
  task.standardInputDescriptor = -1;

  std::string handed;
  task.maximumOutputBytes = 10;
  task.outputHandler = [&handed](std::string_view piece) { return handed += piece, true; };
  ASSERT_TRUE(task.run());
  EXPECT_EQ(handed, input);
}

TEST(NSTask, UsesNoShellAndWritesToItsOwnOutputs) {
  NSTask task{.launchPath = u"/bin/echo"_ns, .arguments = {u"$HOME; `ls` *"_ns, u""_ns, u"end"_ns}};
  testing::internal::CaptureStdout();
  ASSERT_TRUE(task.run());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "$HOME; `ls` *  end\n");
}

TEST(NSTask, ConnectsOutputsWhereThisProcessHasNone) {
  NSTask task = shell(u"echo out; echo err >&2; cat >&2");
  task.standardOutput = NSTask::Output::collected;
  task.standardInput = NSData::dataWithBytes("in", 2);
  EXPECT_EXIT(
      {
        for (int descriptor = 0; descriptor < 3; ++descriptor) ::close(descriptor);
        const auto result = task.run();
        const bool isRight =
            result && result->standardOutput.view() == "out\n" && result->standardError.view() == "err\nin";
        ::_exit(isRight ? 7 : 1);
      },
      testing::ExitedWithCode(7), "");
}

TEST(NSTask, MakesUpNoStatusThatTheSystemThrowsAway) {
  EXPECT_EXIT(
      {
        ::signal(SIGCHLD, SIG_IGN);
        NSError error;
        ::_exit(shell(u"exit 3").run(&error) || !error ? 1 : 7);
      },
      testing::ExitedWithCode(7), "");
}

TEST(NSTask, SaysThatDescriptorsHaveRunOut) {
  NSTask task = shell(u"cat");
  task.standardInput = NSData::dataWithBytes("in", 2);
  task.standardOutput = task.standardError = NSTask::Output::collected;
  rlimit before = {};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const std::ptrdiff_t open = openDescriptors();
  const FileDescriptor next(::open("/", O_PATH | O_CLOEXEC));
  // One for the input, two for each output, and one to see the program end.
  for (rlim_t left = 0; left < 6; ++left) {
    const rlimit few = {static_cast<rlim_t>(next.get()) + 1 + left, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    NSError error;
    const bool isRun = task.run(&error).has_value();
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(isRun) << left;
    EXPECT_EQ(error.localizedFailureReason.UTF8String(), "the program cannot be run: Too many open files")
        << left;
    EXPECT_EQ(openDescriptors(), open + 1) << left;
  }
  EXPECT_EQ(task.run()->standardOutput.view(), "in");
}

TEST(NSTask, DoesNotWaitForWhatTheProgramLeavesRunning) {
  const auto result = shell(u"sleep 90 >/dev/null & echo last >&2").run();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->standardError.view(), "last\n");
}

TEST(NSTask, EndsWhatATimedOutProgramLeavesRunning) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);  // The program and its children keep the end for writing.
  NSTask slow = shell(u"sleep 60 & wait");
  slow.deadline = Deadline::after(0.5);
  EXPECT_FALSE(slow.run());
  ::close(ends[1]);
  pollfd ended = {ends[0], POLLIN, 0};
  EXPECT_EQ(::poll(&ended, 1, 10'000), 1);
  ::close(ends[0]);
}

TEST(NSTask, FailsWithAReasonAndKeepsNothingOpen) {
  NSTask slow = shell(u"sleep 30");
  slow.deadline = Deadline::after(0.05);
  NSTask closed = shell(u"exec 2>&-; sleep 30");
  closed.deadline = Deadline::after(0.05);
  NSTask loud = shell(u"while :; do echo too much >&2; done");
  loud.maximumOutputBytes = 100'000;
  NSTask collected = shell(u"yes");
  collected.standardOutput = NSTask::Output::collected;
  collected.maximumOutputBytes = 100'000;
  NSTask refused = shell(u"yes");
  refused.outputHandler = [](std::string_view) { return false; };
  NSTask endless = shell(u"yes");
  endless.outputHandler = [](std::string_view) { return true; };
  endless.deadline = Deadline::after(0.05);
  const struct {
    NSTask task;
    ErrorCode code;
    std::string_view reason;
  } cases[] = {
      {slow, ErrorCode::timeLimit, "time limit"},
      {closed, ErrorCode::timeLimit, "time limit"},
      {loud, ErrorCode::tooLarge, "output limit"},
      {collected, ErrorCode::tooLarge, "output limit"},
      {refused, ErrorCode::other, "refused"},
      {endless, ErrorCode::timeLimit, "time limit"},
      {{.launchPath = u"/bin/true"_ns, .environment = {{{u"A=B"_ns, u"c"_ns}}}},
       ErrorCode::other,
       "environment"},
      {{.launchPath = u"/bin/true"_ns, .environment = {{{u"A"_ns, u"b\0c"_ns}}}},
       ErrorCode::other,
       "environment"},
      {{.launchPath = u"/bin/true"_ns, .currentDirectoryPath = u"/etc/passwd"_ns},
       ErrorCode::noSuchFile,
       "folder"},
      {{.launchPath = u"/nowhere/at/all"_ns}, ErrorCode::noSuchFile, "no such program"},
      {{.launchPath = u"/etc/passwd"_ns}, ErrorCode::unreadable, "may not be run"},
      {{.launchPath = u"sh"_ns}, ErrorCode::other, "absolute"},
      {{}, ErrorCode::other, "absolute"},
      {{.launchPath = u"/bin/true"_ns, .arguments = {u"a\0b"_ns}}, ErrorCode::other, "argument"},
  };
  const std::ptrdiff_t before = openDescriptors();
  for (const auto &[task, code, reason] : cases) {
    NSError error;
    EXPECT_FALSE(task.run(&error)) << reason;
    EXPECT_EQ(error.errorCode(), code) << reason;
    const std::string told = error.localizedFailureReason.UTF8String();
    EXPECT_NE(told.find(reason), std::string::npos) << told;
  }
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace nimbo
