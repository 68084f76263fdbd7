// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo::detail {

/// The header of a Windows bitmap by its first bytes. It is of no type when they are damaged, and unknown when
/// they are of another format.
ImageHeader headerOfBMP(std::string_view bytes);

}  // namespace nimbo::detail
