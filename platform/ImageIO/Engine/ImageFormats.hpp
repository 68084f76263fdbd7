// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// How a loader of libvips is told to decode fewer pixels than there are.
enum class LoaderShrinking {
  none,
  factor,       ///< "shrink": 1, 2, 4 or 8.
  scale,        ///< "scale", any number.
  resolutions,  ///< "page" n halves the sides n times.
};

/// A format that libvips reads, by the bytes that it begins with. libvips is never asked to find out by itself:
/// it would try every loader, and one of them does not come to an end on some compressed files.
struct ImageFormat {
  std::string_view signature;
  std::size_t offset;
  NSString type;
  /// The name of libvips' operation.
  const char *loader;
  LoaderShrinking shrinking;
  /// Whether the loader takes a "page", the number of an image.
  bool hasPages;
  /// Whether the loader holds all pixels in memory.
  bool isDecodedWhole;
  /// Whether the loader can give a "thumbnail" that stands in the file.
  bool hasThumbnails = false;
  /// The module of libvips that has the loader, unless libvips has it itself.
  const char *module = nullptr;
};

/// Null when the bytes begin no format of ours.
const ImageFormat *imageFormatOfBytes(std::string_view bytes);

}  // namespace nimbo::detail
