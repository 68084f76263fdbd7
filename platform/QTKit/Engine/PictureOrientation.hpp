// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/QTKit/Engine/FFmpegHandles.hpp"
#include "platform/QTKit/Engine/MovieEngine.hpp"

namespace nimbo::detail {

/// How pictures are turned before they are shown: columns and rows exchanged first, then mirrored.
struct PictureOrientation {
  bool isTransposed = false;
  bool isFlippedHorizontally = false;
  bool isFlippedVertically = false;
};

/// What the display matrix of a stream asks for, to the nearest quarter of a turn.
PictureOrientation orientationOfStream(const AVStream &stream);

/// The picture as it is shown.
MoviePicture turnedPicture(MoviePicture picture, const PictureOrientation &orientation);

}  // namespace nimbo::detail
