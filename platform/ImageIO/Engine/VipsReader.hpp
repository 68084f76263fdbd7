// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/ImageIO/Engine/ImageReader.hpp"

namespace nimbo::detail {

/// A reader of formats that libvips decodes by itself; null when the file does not begin like one.
std::unique_ptr<ImageReader> vipsReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                               const Deadline &deadline);

}  // namespace nimbo::detail
