// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// What is to be made, as the program that makes pictures calls it.
struct PictureOrder {
  const char *what = nullptr;  ///< "picture", "cover" or "sheet".
  NSString path = {};          ///< What it is made of.
  std::uint32_t side = 0;      ///< The most pixels of the longer side; 0 is as many as there are.
  NSString type = {};          ///< A uniform type identifier.
  double seconds = 0;          ///< How long it may take.
};

/// The type of the pictures that a file is to hold, by its extension. Raises `UsageError` when it is none of
/// TIFF, PNG, JPEG and WebP.
NSString typeOfPictureFile(const std::string &file);

/// The number of pixels that an option names; nothing without one. Raises `UsageError` for what is no such
/// number.
std::optional<std::uint32_t> numberOfPixels(const std::optional<std::string> &option);

/// Makes a picture in a process of its own, since this one has none of the libraries that it takes. Raises
/// `InputError`, which calls the input `name`.
NSData makePicture(const PictureOrder &order, const std::string &name);
/// The same of a file with these bytes.
NSData makePicture(PictureOrder order, const NSData &bytes, const std::string &name);

}  // namespace nimbo
