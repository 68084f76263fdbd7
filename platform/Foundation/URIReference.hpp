// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo {

/// Where the parts of a URI reference stand, in bytes. A part that is not there has the location `NSNotFound`;
/// so has an empty host or port. The path is always there, but may be empty.
struct URIParts {
  static constexpr NSRange kAbsent{NSNotFound, 0};

  NSRange scheme = kAbsent;
  bool hasAuthority = false;
  NSRange userInfo = kAbsent;
  /// Without the brackets of an IP literal.
  NSRange host = kAbsent;
  NSRange port = kAbsent;
  NSRange path = kAbsent;
  NSRange query = kAbsent;
  NSRange fragment = kAbsent;
};

/// A longer reference, or one with more segments in its path, is refused: each segment takes some memory.
constexpr std::uint32_t kMaximumURIBytes = 1u << 24;
constexpr std::uint32_t kMaximumURIPathSegments = 1u << 20;

/// Nothing when the bytes are no URI or relative reference by the grammar of RFC 3986.
std::optional<URIParts> partsOfURIReference(std::string_view reference);

/// The target of a reference, by RFC 3986, section 5.2. Nothing when either is not valid or the base has no
/// scheme.
std::optional<std::string> resolvedURIReference(std::string_view reference, std::string_view base);

}  // namespace nimbo
