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
  /// The host, without the brackets of an IP literal.
  NSRange host = kAbsent;
  NSRange port = kAbsent;
  NSRange path = kAbsent;
  NSRange query = kAbsent;
  NSRange fragment = kAbsent;
};

/// A reference of more bytes is refused.
constexpr std::uint32_t kMaximumURIBytes = 1u << 24;
/// A reference with more segments in its path is refused: each takes some memory.
constexpr std::uint32_t kMaximumURIPathSegments = 1u << 20;

/// The parts of a reference; nothing when the bytes are no URI or relative reference by the grammar of RFC
/// 3986.
std::optional<URIParts> partsOfURIReference(std::string_view reference);

/// The target of a reference whose parts these are, by RFC 3986, section 5.2. The base must have a scheme; it
/// does not matter when the reference has one. A path that begins with "//" where there is no authority gets
/// "/." in front, as it would be read as one.
std::string resolvedURIReference(std::string_view reference, const URIParts &parts, std::string_view base,
                                 const URIParts &baseParts);

}  // namespace nimbo
