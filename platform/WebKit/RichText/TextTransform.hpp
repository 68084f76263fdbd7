// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/CSS/CSSKeyword.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// Text with the value of "text-transform": "uppercase", "lowercase", "capitalize"; other values change
/// nothing. Case is mapped by the rules of the language, as "tr" or "nl-BE". `before` is the unit in front of
/// the text, which tells whether a word begins with it.
std::u16string transformedText(std::u16string_view text, CSSKeyword transform, std::u16string_view language,
                               unichar before);

}  // namespace nimbo::detail
