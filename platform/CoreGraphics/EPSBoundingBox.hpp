// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"
#include "platform/Foundation/NSGeometry.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The bounding box in points that the comments at either end name, the exact one where there is one; nothing
/// when they name none that has an area. Those of documents inside are not theirs.
std::optional<NSRect> boundingBoxOfPostScript(std::string_view postScript);

}  // namespace nimbo
