// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/AppKit/PictureProgram.hpp"

namespace nimbo {

/// The type of the pictures that a file is to hold, by its extension. Raises `UsageError` when it is none of
/// TIFF, PNG, JPEG and WebP.
NSString typeOfPictureFile(const std::string &file);

/// The longest side that a picture may have.
inline constexpr std::uint32_t kMaximumPictureSide = 32'767;

/// The number of pixels that an option names; nothing without one. Raises `UsageError` for what is no number
/// from 1 to `most`.
std::optional<std::uint32_t> numberOfPixels(const std::optional<std::string> &option, std::uint32_t most);

/// Makes a picture in a process of its own, since this one has none of the libraries that it takes. Raises
/// `InputError`, which calls the input `name`.
NSData makePicture(const PictureOrder &order, const std::string &name);
/// The same of a file with these bytes.
NSData makePicture(const PictureOrder &order, const NSData &bytes, const std::string &name);

}  // namespace nimbo
