// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

namespace nimbo {

/// What goes wrong with the system calls of a process.
struct SystemCallFaults {
  enum class Kind {
    kill,      ///< The process is killed instead of making the call.
    fail,      ///< The call is not made and fails with `error`.
    cutShort,  ///< A read or write gets half of what was asked for.
  };

  Kind kind = Kind::kill;
  /// The call that it happens to, of those that can reach files, counted from 0; negative for none.
  int call = -1;
  int error = 0;
  /// No rename can be told not to replace.
  bool withoutRenameFlags = false;
  /// Each folder is a file system of its own.
  bool withFoldersApart = false;
};

enum class FaultyOutcome { answeredFalse, answeredTrue, killed, notReached, notTraced };

/// Runs the work in a copy of this process with these faults; it never waits for the disk. The outcome is
/// `notReached` when the process made fewer calls, and `notTraced` where no process can be traced.
FaultyOutcome runWithFaults(const SystemCallFaults &faults, const std::function<bool()> &work);

}  // namespace nimbo
