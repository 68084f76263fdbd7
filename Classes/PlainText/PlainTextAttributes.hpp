// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// The value of a tag's attribute; nil when it has none.
NSString attributeOfTag(std::u16string_view tag, const char *name);

/// Whether the tag has the attribute, with or without a value; `name` is ASCII in lower case.
bool hasBareAttribute(std::u16string_view tag, std::u16string_view name);

/// Equal but for the case of ASCII letters; `lower` is in lower case.
bool equalsNoCase(std::u16string_view text, std::u16string_view lower);

}  // namespace nimbo::detail
