// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSTask.hpp"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <filesystem>

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
  const auto result = shell(u"cat >&2; kill -PIPE $$").run();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->terminationStatus, 128 + 13);
  EXPECT_EQ(result->standardError, NSData::data());
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
  const struct {
    NSTask task;
    ErrorCode code;
    std::string_view reason;
  } cases[] = {
      {slow, ErrorCode::timeLimit, "time limit"},
      {closed, ErrorCode::timeLimit, "time limit"},
      {loud, ErrorCode::tooLarge, "output limit"},
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
