// SPDX-License-Identifier: Apache-2.0
//
// A fast look at text for what may not be in Unicode normalization form C (NFC).
#pragma once

#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// The next part of `units` from `from` on that a closer look must be taken at; with length 0, at the end of
/// `units`, when there is none. `from` is 0 or the end of the part before. Each part can be brought into NFC by
/// itself, and all between them is in NFC. Doubtful units that stand close together are in one part, so that
/// the closer looks stay few.
NSRange nextDoubtfulPart(std::u16string_view units, std::uint32_t from);

}  // namespace nimbo::detail
