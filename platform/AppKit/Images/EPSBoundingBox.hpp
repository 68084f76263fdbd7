// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/NSGeometry.hpp"

namespace nimbo::detail {

/// The bounding box that the comments at either end name, the exact one where there is one; nothing when they
/// name none that has an area.
std::optional<NSRect> boundingBoxOfPostScript(std::string_view postScript);

}  // namespace nimbo::detail
