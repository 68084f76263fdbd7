// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/Foundation/Unicode/ComposingRanks.hpp"

namespace nimbo::detail {

/// A number of units at the beginning that may each stand behind the one before, `units[-1]` for the first; see
/// `ComposingRanks`. Many are looked at together, while they are ASCII or of the 128 units around the first
/// one, as the letters and marks of most scripts are; so it may be fewer than there are, down to 0.
std::size_t lengthOfPairedPrefix(const ComposingRanks &ranks, const unichar *units, std::size_t length);

}  // namespace nimbo::detail
