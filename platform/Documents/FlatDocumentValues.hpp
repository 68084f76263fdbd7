// SPDX-License-Identifier: Apache-2.0
//
// Attribute values of OpenDocument; what is none of its kind is nothing.
#pragma once

#include <optional>
#include <string_view>

#include "platform/AppKit/NSColor.hpp"
#include "platform/Foundation/NSDate.hpp"

namespace nimbo::detail {

/// A number at the beginning of a text, and what stands behind it.
struct LeadingNumber {
  double value = 0;
  std::string_view unit;
};
std::optional<LeadingNumber> leadingNumber(std::string_view text);

/// A length in points, as "1.27cm" or "-12pt".
std::optional<double> lengthInPoints(std::string_view text);
/// A percentage, as "58%", as a factor.
std::optional<double> percentage(std::string_view text);
/// A colour, as "#ff0080".
std::optional<NSColor> color(std::string_view text);
/// A whole number from 0 to `most`; a greater one is `most`.
std::optional<std::uint32_t> wholeNumber(std::string_view text, std::uint32_t most);
/// A date and time, as "2001-12-31T23:59:58.5", with "Z" or without; the zone of the latter is not known and
/// taken for UTC.
std::optional<NSDate> dateAndTime(std::string_view text);

}  // namespace nimbo::detail
