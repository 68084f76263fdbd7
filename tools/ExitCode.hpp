// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSError.hpp"

namespace nimbo {

/// What the command tells the script that ran it.
enum ExitCode : int {
  kExitAnswered = 0,
  kExitUsage = 1,
  kExitUnreachable = 2,   ///< No helper could be reached or started.
  kExitNil = 3,           ///< There is no answer for this input, or the operation raised an exception.
  kExitTimedOut = 4,      ///< The helper did not reply, or the input did not come, in time.
  kExitDied = 5,          ///< The helper ended before it replied.
  kExitOutputFailed = 6,  ///< The result could not be written.
  kExitUnreadable = 7,    ///< There is no such file, or it cannot be read.
  kExitUnsupported = 8,   ///< Nothing reads files of this type.
};

/// What an input says for which there is no answer.
constexpr ExitCode exitCodeForError(ErrorCode code) {
  switch (code) {
    case ErrorCode::noSuchFile:
    case ErrorCode::unreadable:
      return kExitUnreadable;
    case ErrorCode::unsupportedType:
      return kExitUnsupported;
    default:
      return kExitNil;
  }
}

}  // namespace nimbo
