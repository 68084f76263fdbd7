// SPDX-License-Identifier: Apache-2.0
//
// Handlers that take tags out of markup, or attributes out of tags. Any thread may scan with them, each with a
// context of its own.
#pragma once

#include <optional>
#include <string_view>

#include "Classes/Markup/TagScanner.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Appends the text in front of the tag to its context, an `NSMutableString`, behind a space unless that ends
/// in white space already. Never stops the scan.
///
///     NSMutableString text;
///     GetTagsOfString(page, StripTagsHandler, &text, false);
///     return std::move(text).string();
extern const TagHandler StripTagsHandler;

/// The context of `StripTagHandler` and `StripTagAttributesHandler`.
struct StripTagContext {
  /// Nothing until a tag has that name.
  std::optional<NSMutableString> result;
  /// ASCII, in upper case, not empty.
  std::string_view tagName;
};

/// Copies all but the start and end tags of the context's name; the result begins with the first of them. Never
/// stops the scan.
extern const TagHandler StripTagHandler;

/// As `StripTagHandler`, but the tags stay without their attributes, under the context's name: a start tag
/// keeps only its "HREF", or else its "SRC". An empty-element tag that has neither goes.
extern const TagHandler StripTagAttributesHandler;

}  // namespace nimbo
