// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What media queries ask about: a colour screen with a mouse, light, without scripts.
struct CSSMedium {
  /// Of the viewport and of the screen.
  double widthInPixels = 1280;
  /// Of the viewport and of the screen.
  double heightInPixels = 720;
};

/// Whether a list of media queries, such as a "media" attribute or "screen and (min-width: 30em)", holds for
/// the medium. An empty list holds; a query that cannot be read does not.
bool matchesMedium(std::u16string_view queries, const CSSMedium &medium);

/// Whether a condition of "@supports" holds: whether a declaration is one that this reader understands, whether
/// a selector can be read.
bool isSupportedByCSS(std::u16string_view condition);

}  // namespace nimbo
