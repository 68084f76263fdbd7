// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/ImageIO/Engine/ImageReader.hpp"

namespace nimbo::detail {

/// A reader of the raw pictures of cameras, which LibRaw develops; null when the file does not begin like one.
std::unique_ptr<ImageReader> rawReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                              const Deadline &deadline);

}  // namespace nimbo::detail
