// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo {

/// Where the parts of a URL lie in its string, which need not be a right one.
///
///     http://user@host:80/path/file;a?query#fragment
///         |  |                |      |     |
///         |  |                |      |     fragmentStart: the "#", or the end
///         |  |                |      queryStart: the "?", or fragmentStart
///         |  authorityStart   pathStart
///         schemeLength: 0 when there is no scheme
///
/// Without an authority `authorityStart` and `pathStart` are equal: 0, or behind the scheme's ":".
struct URLStringParts {
  std::uint32_t schemeLength = 0;
  /// Whether it is relative, or of a scheme of the web: "\" is as good as "/".
  bool isHierarchical = false;
  /// Whether the scheme is one whose URLs are text: javascript, applescript, data.
  bool isText = false;
  std::uint32_t authorityStart = 0;
  std::uint32_t pathStart = 0;
  std::uint32_t queryStart = 0;
  std::uint32_t fragmentStart = 0;
};

/// Where the parts of the URL lie.
URLStringParts partsOfURLString(std::u16string_view url);

/// Whether the scheme's URLs are text.
bool isTextScheme(std::u16string_view scheme);

/// Whether browsers read a host behind the scheme's ":" whatever number of slashes stands there: "http",
/// "https", "ftp".
bool isSlashedScheme(std::u16string_view scheme);

/// Whether it is "ftp", "ftps" or "sftp".
bool isFTPScheme(std::u16string_view scheme);

/// Where the host begins in an authority: behind the last "@".
constexpr std::size_t startOfHost(std::u16string_view authority) {
  return authority.rfind(u'@') + 1;
}

}  // namespace nimbo
