// SPDX-License-Identifier: Apache-2.0
//
// Where a page has its "base" tag, or may have one. Any thread may scan for it, each with a context of its own.
//
//     BaseTagContext place;
//     GetTagsOfString(page, SetBaseURLHandler, &place, false);
//     const bool hasBase = place.baseTagStart != NSNotFound;
#pragma once

#include <cstdint>

#include "Classes/Markup/TagScanner.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The context of `SetBaseURLHandler`. Locations are NSNotFound for what the page does not have.
struct BaseTagContext {
  /// Where the first "base" tag with a link begins.
  std::uint32_t baseTagStart = NSNotFound;
  /// How many units that tag has.
  std::uint32_t baseTagLength = 0;
  /// Behind the last "head" tag in front of it.
  std::uint32_t headEnd = NSNotFound;
};

/// Finds the places of its context, a `BaseTagContext`. Stops at the "base" tag and at the body.
extern const TagHandler SetBaseURLHandler;

}  // namespace nimbo
