// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// The description of an ICC profile (versions 2 and 4), in English when there are several; nil when it has
/// none or is damaged.
NSString descriptionOfICCProfile(std::span<const std::uint8_t> profile);

}  // namespace nimbo::detail
