// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/Calendars/DateFields.hpp"

namespace nimbo::detail {

/// What a text says about a moment in words, numbers and signs in any order that is clear; nothing when it has
/// a part that belongs to no date.
std::optional<DateFields> readDatePhrase(std::u16string_view text);

}  // namespace nimbo::detail
