// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "platform/QTKit/Engine/FFmpegHandles.hpp"

namespace nimbo::detail {

/// Where the header of a QuickTime movie says that its poster is, in seconds; nothing when it names no time but
/// the beginning, and for other files. The place of reading is the beginning afterwards.
std::optional<double> posterTimeOfMovie(AVIOContext &input);

}  // namespace nimbo::detail
