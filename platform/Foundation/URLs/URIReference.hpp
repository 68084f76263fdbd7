// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// Where the parts of a URI reference stand, in units. A part that is not there has the location `NSNotFound`;
/// so has an empty host or port. The path is always there, but may be empty.
struct URIParts {
  static constexpr NSRange kAbsent{NSNotFound, 0};

  NSRange scheme = kAbsent;
  bool hasAuthority = false;
  NSRange userInfo = kAbsent;
  /// The host, without the brackets of an IP literal.
  NSRange host = kAbsent;
  NSRange port = kAbsent;
  NSRange path = kAbsent;
  NSRange query = kAbsent;
  NSRange fragment = kAbsent;
};

/// A reference of more units is refused.
constexpr std::uint32_t kMaximumURIUnits = 1u << 24;
/// A reference with more segments in its path is refused: each may take some memory.
constexpr std::uint32_t kMaximumURIPathSegments = 1u << 20;

/// The parts of a reference; nothing when the units are no URI or relative reference by the grammar of RFC
/// 3986.
std::optional<URIParts> partsOfURIReference(std::u16string_view reference);

/// The target of a reference whose parts these are, by RFC 3986, section 5.2. The base must have a scheme; it
/// does not matter when the reference has one. A path that begins with "//" where there is no authority gets
/// "/." in front, as it would be read as one.
NSString resolvedURIReference(std::u16string_view reference, const URIParts &parts, std::u16string_view base,
                              const URIParts &baseParts);

}  // namespace nimbo
