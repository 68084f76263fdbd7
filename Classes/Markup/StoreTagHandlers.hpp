// SPDX-License-Identifier: Apache-2.0
//
// Handlers that store what the scanner finds, as it is. Any thread may scan with them, each with a context of
// its own.
#pragma once

#include <cstdint>

#include "Classes/Markup/TagScanner.hpp"
#include "platform/Foundation/NSArray.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The context of `StoreToRangesHandler`.
///
///     StoreToRangesContext store{.tagRanges = room, .textRanges = nullptr, .count = 0, .capacity = 512};
///     GetTagsOfString(page, StoreToRangesHandler, &store, false);
///     std::free(store.tagRanges);
///
/// The arrays, of `capacity` ranges, come from `malloc`; null means not wanted, or that there was no memory for
/// more. They are the caller's after the scan, to `free`.
struct StoreToRangesContext {
  /// The ranges of the tags.
  NSRange *tagRanges;
  /// The ranges of the texts in front of them.
  NSRange *textRanges;
  /// How many there are in each array.
  std::uint32_t count;
  /// How many have room in each array.
  std::uint32_t capacity;
};

/// Appends the tag's range and that of the text in front of it, also in the closing call, and counts. Its
/// context is a `StoreToRangesContext` whose capacity is above its count. Never stops the scan.
extern const TagHandler StoreToRangesHandler;

/// The context of `StoreToArrayHandler`.
struct StoreToArrayContext {
  /// What is added to.
  NSArray result;
  /// Whether to add the tags.
  bool wantTags;
  /// Whether to add the texts.
  bool wantContents;
};

/// Adds the tag, the text in front of it, or a dictionary of both, under "Tag" and "Content"; empty ones are
/// left out, but for the "Tag" of the closing call's dictionary. Its context is a `StoreToArrayContext`. Never
/// stops the scan.
extern const TagHandler StoreToArrayHandler;

}  // namespace nimbo
