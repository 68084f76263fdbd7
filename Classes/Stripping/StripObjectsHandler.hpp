// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Classes/Markup/TagScanner.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The context of `StripObjectsHandler`.
///
///     StripObjectsContext context;
///     GetTagsOfString(page, StripObjectsHandler, &context, false);
///     return context.result ? std::move(*context.result).string() : page;
struct StripObjectsContext {
  /// Nothing until an object is met.
  std::optional<NSMutableString> result;
  /// The name, within the scanned units, of the outermost element that its own text stands for.
  std::u16string_view elementName;
  /// How deep elements of that name are nested in it; 0: none is open.
  std::uint32_t depth = 0;
  /// How much of the result is in front of its content.
  std::uint32_t lengthBeforeContent = 0;
  /// Whether an object has gone since text was copied, so that words could run together.
  bool isBehindObject = false;
};

/// Copies the markup without its embedded objects. These are the elements "applet", "audio", "bgsound",
/// "embed", "iframe", "image", "img", "object" and "video"; "param", "source" and "track", which only tell
/// about them, go too.
///
/// In place of an object stands the text of its "ALT" attribute, or else of its "TITLE", as it is written but
/// for "<", which becomes "&lt;". A space comes in front of it where the result does not end in white space,
/// and likewise between an object and text behind it that begins with none.
///
/// What an element has between its tags is for those who cannot show it. It stays, as markup, when the element
/// has no text of its own, and when its end tag is missing; else it goes.
///
/// Never stops the scan. Any thread may scan with it, each with a context of its own.
extern const TagHandler StripObjectsHandler;

}  // namespace nimbo
