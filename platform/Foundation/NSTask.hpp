// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A program that is run to its end, without a shell. What it writes is read while it runs, so that a full pipe
/// never stops it. Any number of threads may run one.
///
///     NSError error;
///     const NSTask task{.launchPath = u"/bin/ls"_ns,
///                       .arguments = {path},
///                       .deadline = Deadline::after(5),
///                       .standardOutput = NSTask::Output::collected};
///     const auto result = task.run(&error);
///     if (!result) NSLog(error.localizedFailureReason);
///     const bool isListed = result && result->terminationStatus == 0;
struct NSTask {
  /// How many bytes a program may write to an output that is collected unless it is said otherwise.
  static constexpr std::uint32_t kMaximumOutputBytes = 16 << 20;

  /// What becomes of an output: it is this process's own, it stands in the result, or nobody sees it.
  enum class Output { inherited, collected, discarded };

  /// What came of a program.
  struct Result {
    /// The exit code, or 128 + the number of the signal that ended the program.
    int terminationStatus = 0;
    /// What it wrote to its standard output; nil unless that was collected.
    NSData standardOutput;
    /// What it wrote to its standard error; nil unless that was collected.
    NSData standardError;
  };

  /// An absolute path; the search path is not used.
  NSString launchPath;
  /// The arguments behind the program's name.
  std::vector<NSString> arguments = {};
  /// The whole environment, names and values; without it the program has this process's own.
  std::optional<std::vector<std::pair<NSString, NSString>>> environment = {};
  /// The folder in which it starts; this process's own when nil.
  NSString currentDirectoryPath = {};
  /// What it reads from its standard input, which is empty when this is nil.
  NSData standardInput = {};
  /// An open file that it reads instead, which stays the caller's; none when negative.
  int standardInputDescriptor = -1;
  /// When the program has to have ended.
  Deadline deadline = {};
  /// How many bytes it may write to each output that is collected.
  std::uint32_t maximumOutputBytes = kMaximumOutputBytes;
  /// What becomes of its standard output.
  Output standardOutput = Output::inherited;
  /// What becomes of its standard error.
  Output standardError = Output::collected;
  /// Gets the standard output in pieces as they come, in the thread that runs the program, instead of what
  /// `standardOutput` says; how much that is has no limit. When it answers false, the program is ended.
  std::function<bool(std::string_view)> outputHandler = {};

  /// Runs the program and waits for it to exit, but not for what it leaves running. Nothing when it cannot be
  /// started, or does not keep within its limits; it is then killed with its process group. `*error` says why:
  /// `timeLimit`, `tooLarge` for its output, else what was wrong with the program. Nothing, too, when its
  /// status is lost, as in a process that ignores SIGCHLD.
  std::optional<Result> run(NSError *error = nullptr) const;
};

}  // namespace nimbo
