// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A program that is run to its end. Its standard input is empty, its standard output is this process's own,
/// and its standard error is collected while it runs, so that a full pipe never stops it. Any number of
/// threads may run one.
///
///     NSError error;
///     const NSTask task{.launchPath = u"/bin/ls"_ns, .arguments = {path}, .deadline = Deadline::after(5)};
///     const auto result = task.run(&error);
///     if (!result) NSLog(error.localizedFailureReason);
///     const bool isListed = result && result->terminationStatus == 0;
struct NSTask {
  /// How many bytes a program may write to its standard error unless it is said otherwise.
  static constexpr std::uint32_t kMaximumOutputBytes = 16 << 20;

  /// What came of a program.
  struct Result {
    /// The exit code, or 128 + the number of the signal that ended the program.
    int terminationStatus = 0;
    /// What it wrote to its standard error.
    NSData standardError;
  };

  /// An absolute path; the search path is not used.
  NSString launchPath;
  /// The arguments behind the program's name.
  std::vector<NSString> arguments = {};
  /// When the program has to have ended.
  Deadline deadline = {};
  /// How many bytes it may write to its standard error.
  std::uint32_t maximumOutputBytes = kMaximumOutputBytes;

  /// Runs the program and waits for it to exit, but not for what it leaves running. Nothing when it cannot be
  /// started, or does not keep within its limits; it is then killed with its process group. `*error` says why:
  /// `timeLimit`, `tooLarge` for its output, else what was wrong with the program.
  std::optional<Result> run(NSError *error = nullptr) const;
};

}  // namespace nimbo
