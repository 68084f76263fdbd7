// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The moment that a text names in one of the forms of docs/dates.md; nothing for all else.
///
///     dateWithNaturalLanguageString(u"3 March 2005"_ns);
std::optional<NSDate> dateWithNaturalLanguageString(const NSString &string);

}  // namespace nimbo
