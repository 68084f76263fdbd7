// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Feeds/Feed.hpp"
#include "Classes/Feeds/FeedElements.hpp"

namespace nimbo::detail {

/// Sets a field that has no text yet.
inline void setIfEmpty(NSString &value, const NSString &text) {
  if (value.length() == 0) value = text;
}

/// The fields of an item, or of what a feed tells of itself, as its elements fill them: the first one counts.
struct FeedItemFields {
  /// What stands under an item's own names.
  FeedItem item;
  /// What stands under other names, for what it lacks.
  FeedItem others;
  /// The first identifier that is the address of a page.
  NSString permanentLink;

  /// Takes the text of an element, which is not empty; `isPlain` as in `FeedItem`.
  void take(FeedElement element, const NSString &text, bool isPlain);
  /// Fills the fields that are empty with what stands under other names.
  void useOthers();

 private:
  void takeOther(FeedElement element, const NSString &text);
};

}  // namespace nimbo::detail
