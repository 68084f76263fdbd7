// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace nimbo {

/// What the command tells the script that ran it.
enum ExitCode : int {
  kExitAnswered = 0,
  kExitUsage = 1,
  kExitUnreachable = 2,   ///< No helper could be reached or started.
  kExitNil = 3,           ///< The operation answered nil, or raised an exception.
  kExitTimedOut = 4,      ///< The helper did not reply in time.
  kExitDied = 5,          ///< The helper ended before it replied.
  kExitOutputFailed = 6,  ///< The result could not be written.
};

}  // namespace nimbo
