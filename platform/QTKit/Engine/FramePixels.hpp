// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSGeometry.hpp"
#include "platform/QTKit/Engine/FFmpegHandles.hpp"
#include "platform/QTKit/Engine/MovieEngine.hpp"

namespace nimbo::detail {

/// Frames of more pixels than the largest that are in use, 8192 by 4320, are refused.
inline constexpr std::int64_t kMaximumFramePixels = std::int64_t{8192} * 4320;

/// The size in square pixels; that in pixels when the aspect is unknown, or makes no sense. Nothing when a side
/// is unknown.
NSSize squarePixelSize(int width, int height, AVRational sampleAspect);

/// The frame in square pixels of sRGB; no picture, and `*error`, when it is too large or of an unknown form.
MoviePicture pictureOfFrame(const AVFrame &frame, AVRational sampleAspect, NSError *error);

}  // namespace nimbo::detail
