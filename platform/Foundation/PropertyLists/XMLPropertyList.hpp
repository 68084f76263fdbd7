// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Larger XML is not read: its tree takes many times its size in memory.
inline constexpr std::uint32_t kMaximumXMLPropertyListBytes = 128u << 20;

/// Reads a property list in the XML form, never nil; a byte order mark may come first. Numbers are decimal or,
/// integers only, hexadecimal; dates are ISO 8601 in UTC. Raises `PropertyListError`, which names the line
/// where it is known.
id propertyListFromXMLData(const NSData &data);

/// Writes a property list in the XML form: UTF-8, one value a line, indented by tabs. Dates lose the fractions
/// of their seconds. What XML cannot hold in a string becomes U+FFFD. Raises `PropertyListError` for null, for
/// a date outside the years 0 to 9999, and for more than `NSNotFound` bytes.
NSData XMLDataWithPropertyList(const id &propertyList);

}  // namespace nimbo
