// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Foundation/NSData.hpp"

namespace nimbo {

/// What an alias says about its original. It is a plain value.
struct AliasOriginal {
  /// The absolute path; nil when the alias names none.
  NSString path;
  /// Whether it was a folder when the alias was made.
  bool isDirectory = false;
};

/// How many bytes `mayBeBookmark` has to see.
inline constexpr std::size_t kBookmarkHeadBytes = 16;

/// Whether bytes begin as bookmark data do.
bool mayBeBookmark(std::string_view head);

/// Whether this is bookmark data, on its own or as an alias file, though it may be damaged.
bool isBookmark(const NSData &data);

/// The original of bookmark data: records that name each other by their offsets, and tables of contents that
/// say what they mean, least significant byte first. Nothing of an offset, a count or a length is believed.
AliasOriginal originalOfBookmark(const NSData &data);

/// The original of an alias record as resource forks hold it, most significant byte first: fields of fixed
/// places and a list of tagged ones behind them.
AliasOriginal originalOfAliasRecord(const NSData &data);

}  // namespace nimbo
