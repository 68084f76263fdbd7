// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

namespace nimbo {

/// How the helper's program was started. Without options it serves for ever and does not watch the clock.
struct HelperOptions {
  /// After how many minutes in which nothing was asked it ends; 0 is never.
  double idleMinutes = 0;
  /// For how many seconds it works for a caller that has gone; 0 is for as long as the work takes.
  double abandonedWorkSeconds = 0;
};

/// Reads the command line. Nothing when the program is to end now, with `*exitCode`: its help or version was
/// asked for and is written, or an argument is wrong, which standard error says.
std::optional<HelperOptions> readHelperOptions(int count, char **arguments, int *exitCode);

}  // namespace nimbo
