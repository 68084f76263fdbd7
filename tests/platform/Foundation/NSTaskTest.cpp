// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSTask.hpp"

#include <gtest/gtest.h>

#include <filesystem>

namespace nimbo {
namespace {

NSTask shell(std::u16string_view script) {
  return NSTask{.launchPath = u"/bin/sh"_ns,
                .arguments = {u"-c"_ns, NSString::stringWithCharacters(script)},
                .timeLimitSeconds = 60};
}

std::ptrdiff_t openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator());
}

TEST(NSTask, CollectsStandardErrorWhileTheProgramRuns) {
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

TEST(NSTask, FailsWithAReasonAndKeepsNothingOpen) {
  NSTask slow = shell(u"sleep 30");
  slow.timeLimitSeconds = 0.05;
  NSTask closed = shell(u"exec 2>&-; sleep 30");
  closed.timeLimitSeconds = 0.05;
  NSTask loud = shell(u"while :; do echo too much >&2; done");
  loud.maximumOutputBytes = 100'000;
  const std::pair<NSTask, std::string_view> cases[] = {
      {slow, "time limit"},
      {closed, "time limit"},
      {loud, "output limit"},
      {NSTask{.launchPath = u"/nowhere/at/all"_ns}, "No such file"},
      {NSTask{.launchPath = u"sh"_ns}, "absolute"},
      {NSTask{.launchPath = u"/bin/true"_ns, .arguments = {u"a\0b"_ns}}, "argument"},
  };
  const std::ptrdiff_t before = openDescriptors();
  for (const auto &[task, reason] : cases) {
    NSString error;
    EXPECT_FALSE(task.run(&error)) << reason;
    EXPECT_NE(error.UTF8String().find(reason), std::string::npos) << error.UTF8String();
  }
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace nimbo
