// SPDX-License-Identifier: Apache-2.0
//
// Handlers that take whole elements out of markup. Any thread may scan with them, each with a context of its
// own.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "Classes/Markup/TagScanner.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The context of `StripTagBodiesHandler` and `StripTagBodiesExceptHandler`.
///
///     const std::u16string_view names[] = {u"<table", u"<form"};
///     StripBodiesContext context;
///     context.names = names;
///     GetTagsOfString(page, StripTagBodiesHandler, &context, false);
struct StripBodiesContext {
  /// Nothing until an element is left out, or kept.
  std::optional<NSMutableString> result;
  /// How the elements' start tags begin, with their "<", in any case: "<div" stands for "<div class=x>" and for
  /// "<divide>". Not empty.
  std::span<const std::u16string_view> names;
  /// The name of the element that the scan is in, within the scanned units.
  std::u16string_view elementName;
  /// How deep elements of that name are nested there; 0 is outside.
  std::uint32_t depth = 0;
};

/// Copies all but the elements that begin with one of the names. Such an element ends with the end tag of its
/// start tag's name, or with the string. A "script" or "style" element is one tag for the scanner and so its
/// own end tag does not end it. Never stops the scan.
extern const TagHandler StripTagBodiesHandler;

/// Copies only the elements that begin with one of the names, each with a line feed behind its end tag. Never
/// stops the scan.
extern const TagHandler StripTagBodiesExceptHandler;

}  // namespace nimbo
