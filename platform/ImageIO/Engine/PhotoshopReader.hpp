// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/ImageIO/Engine/ImageReader.hpp"

namespace nimbo::detail {

/// A reader of Photoshop's documents, large ones too: of the picture of all layers that stands at their end;
/// null when the file does not begin like one.
std::unique_ptr<ImageReader> photoshopReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                                    const Deadline &deadline);

}  // namespace nimbo::detail
