// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/CSS/CSSValue.hpp"

namespace nimbo::detail {

/// The quotation mark that opens or closes at a depth, from 0 on, by the value of "quotes"; by the language, as
/// "de-CH", where there is no value. It lives as long as the value.
std::u16string_view quotationMark(const CSSValue &quotes, std::u16string_view language, std::size_t depth,
                                  bool isClosing);

}  // namespace nimbo::detail
