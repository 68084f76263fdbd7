// SPDX-License-Identifier: Apache-2.0
#include "importers/Text/PropertyListText.hpp"

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
namespace {

/// Adds a line; false when there is no room for it.
bool appendLine(NSMutableString &text, const NSString &line, std::uint32_t maximumLength) {
  if (line.length() >= maximumLength - text.length()) return false;
  text.appendString(line);
  text.appendCharacter(u'\n');
  return true;
}

/// The reader limits how deep it goes.
bool appendText(NSMutableString &text, const id &value, std::uint32_t maximumLength) {
  if (const NSString string = value.string()) return appendLine(text, string, maximumLength);
  for (const id &element : value.array())
    if (!appendText(text, element, maximumLength)) return false;
  for (const auto &[key, element] : value.dictionary())
    if (!appendLine(text, key, maximumLength) || !appendText(text, element, maximumLength)) return false;
  return true;
}

}  // namespace

NSString textOfPropertyList(const id &propertyList, std::uint32_t maximumLength) {
  NSMutableString text;
  return appendText(text, propertyList, maximumLength) ? std::move(text).string() : NSString();
}

}  // namespace nimbo
