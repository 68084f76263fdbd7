// SPDX-License-Identifier: Apache-2.0
//
// Handlers that take tags out of markup, or attributes out of tags.
#pragma once

#include <optional>
#include <string_view>

#include "Classes/Markup/TagScanner.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Appends the text in front of the tag to `context`, an `NSMutableString`, behind a space unless that ends in
/// white space already. Never stops the scan.
bool StripTagsHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                      std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                      std::uint32_t textLocation, int kind, void *context);

/// The context of the two handlers below.
struct StripTagContext {
  /// Nothing until a tag has that name.
  std::optional<NSMutableString> result;
  /// ASCII, in upper case, not empty.
  std::string_view tagName;
};

/// Copies all but the start and end tags of that name; with the first of them the result begins. Never stops
/// the scan.
bool StripTagHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                     std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                     std::uint32_t textLocation, int kind, void *context);

/// As above, but the tags stay without their attributes, under the given name: of a start tag only its "HREF",
/// or else its "SRC", is kept. An empty-element tag that has neither goes.
bool StripTagAttributesHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                               std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                               std::uint32_t textLocation, int kind, void *context);

}  // namespace nimbo
