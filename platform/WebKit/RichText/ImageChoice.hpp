// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo::detail {

/// The address of the picture that an "img" shows on a screen of one dot a pixel: out of the sources of the
/// "picture" around it, "srcset" and "src", as it is written. Empty when it has none.
std::u16string_view chosenImage(const HTMLDocument &document, HTMLNodeIndex image);

/// The address out of a "srcset" and the "src" beside it, by "sizes".
std::u16string_view chosenSource(std::u16string_view srcset, std::u16string_view sizes,
                                 std::u16string_view src);

}  // namespace nimbo::detail
