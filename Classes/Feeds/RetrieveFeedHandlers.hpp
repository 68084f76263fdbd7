// SPDX-License-Identifier: Apache-2.0
//
// Handlers that tell whether markup is a feed. Any thread may scan with them, each with a context of its own.
#pragma once

#include "Classes/Markup/TagScanner.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Sets its context, a bool, when the root of a feed comes before the tags of a page ("HTML", "HEAD", "BODY");
/// stops the scan at the first of both.
///
///     bool isFeed = false;
///     GetTagsOfXML(text, RetrieveFeedHandler, &isFeed);
extern const TagHandler RetrieveFeedHandler;

/// The context of `RetrieveCompleteFeedHandler`.
struct CompleteFeedContext {
  /// Whether the root has been seen.
  bool isFeed = false;
  /// Whether its end tag has been seen.
  bool isComplete = false;
};

/// As `RetrieveFeedHandler`, but goes on behind the root until its end tag.
extern const TagHandler RetrieveCompleteFeedHandler;

}  // namespace nimbo
