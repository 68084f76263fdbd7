// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// Adds the names by which texts for a locale may be known, the closest first, and none twice: the locale
/// itself ("zh_TW"), as a language tag ("zh-TW"), and with the script alone where the language is written in
/// several ("zh-Hant"); behind a tag its language. None for "C", nor for a locale with a character set.
void addLocalizations(std::string_view locale, std::vector<NSString> &names);

}  // namespace nimbo::detail
