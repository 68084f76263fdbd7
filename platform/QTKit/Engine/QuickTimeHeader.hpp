// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "platform/QTKit/Engine/FFmpegHandles.hpp"

namespace nimbo::detail {

/// What the header of a QuickTime movie says that FFmpeg does not pass on.
struct QuickTimeHeader {
  /// False for pieces of movies, whose durations and begins only they themselves tell.
  bool tellsDuration = true;
  /// Where the poster is; nothing when the header names no time but the beginning.
  std::optional<double> posterSeconds;
};

/// The place of reading is the beginning afterwards.
QuickTimeHeader headerOfQuickTimeMovie(AVIOContext &input);

}  // namespace nimbo::detail
