// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/NSGeometry.hpp"

namespace nimbo::detail {

/// How many bytes at either end of a file its comments are looked for in.
constexpr std::size_t kEPSCommentBytes = std::size_t{64} << 10;

/// The PostScript of a file, without the preview that binary headers of EPS point to; the whole file when it
/// has no such header, empty when the header points elsewhere.
std::string_view postScriptPart(std::string_view file);

/// The bounding box that the comments name, the exact one where there is one; nothing when they name none that
/// has an area.
std::optional<NSRect> boundingBoxOfPostScript(std::string_view postScript);

}  // namespace nimbo::detail
