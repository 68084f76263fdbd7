// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSComparisonResult.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// In the order of the user's language (`$LC_ALL`, `$LC_COLLATE`, `$LANG` when first asked), without regard to
/// case; accents count, canonically equivalent strings are the same. Nil counts as empty. From any thread.
NSComparisonResult localizedCaseInsensitiveCompare(const NSString &a, const NSString &b);

}  // namespace nimbo
