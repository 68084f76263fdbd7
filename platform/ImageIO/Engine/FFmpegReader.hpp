// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/ImageIO/Engine/ImageReader.hpp"

namespace nimbo::detail {

/// A reader of the formats of other systems and times, which FFmpeg decodes; null when the file does not begin
/// like one.
std::unique_ptr<ImageReader> ffmpegReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                                 const Deadline &deadline);

}  // namespace nimbo::detail
