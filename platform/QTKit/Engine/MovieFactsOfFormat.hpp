// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/QTKit/Engine/FFmpegHandles.hpp"
#include "platform/QTKit/Engine/MovieEngine.hpp"

namespace nimbo::detail {

/// What an opened file says, after its streams have been looked at.
MovieFacts factsOfFormat(AVFormatContext &format);

}  // namespace nimbo::detail
