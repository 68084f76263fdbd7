// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSPropertyListSerialization.hpp"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "platform/Foundation/PropertyLists/BinaryPropertyListFormat.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListReader.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListWriter.hpp"
#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"
#include "platform/Foundation/PropertyLists/TextPropertyList.hpp"
#include "platform/Foundation/PropertyLists/XMLPropertyList.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/UTF16Text.hpp"

namespace nimbo {
namespace {

/// How many bytes of UTF-16 are looked at for the beginning of XML.
constexpr std::size_t kLongestStart = 1024;

/// Text may begin with '<', too, but only as "<" and a hexadecimal digit, white space or ">".
template <class Unit>
bool isXML(std::basic_string_view<Unit> text) {
  const auto start = std::ranges::find_if_not(text, isASCIIWhiteSpace<Unit>);
  text.remove_prefix(static_cast<std::size_t>(start - text.begin()));
  return std::ranges::any_of(
      std::initializer_list<std::string_view>{"<?xml", "<!DOCTYPE", "<!--", "<plist"},
      [&](std::string_view prefix) { return std::ranges::equal(text.substr(0, prefix.size()), prefix); });
}

NSPropertyListFormat formatOf(std::string_view bytes) {
  if (bytes.starts_with(BinaryPropertyList::kMagic)) return NSPropertyListFormat::binary;
  if (bytes.starts_with("\xef\xbb\xbf")) bytes.remove_prefix(3);
  const auto order = orderOfUTF16(bytes);
  const bool isMarkup =
      order ? isXML(std::u16string_view(unitsOfUTF16(bytes.substr(0, kLongestStart), *order))) : isXML(bytes);
  return isMarkup ? NSPropertyListFormat::xml : NSPropertyListFormat::openStep;
}

id read(const NSData &data, NSPropertyListFormat format) {
  switch (format) {
    case NSPropertyListFormat::binary:
      return propertyListFromBinaryData(data);
    case NSPropertyListFormat::xml:
      return propertyListFromXMLData(data);
    case NSPropertyListFormat::openStep:
      return propertyListFromTextData(data);
  }
  return id();
}

NSData write(const id &propertyList, NSPropertyListFormat format) {
  switch (format) {
    case NSPropertyListFormat::binary:
      return binaryDataWithPropertyList(propertyList);
    case NSPropertyListFormat::xml:
      return XMLDataWithPropertyList(propertyList);
    case NSPropertyListFormat::openStep:
      break;
  }
  throw PropertyListError{"the old-style form is not written", ErrorCode::other};
}

}  // namespace

id NSPropertyListSerialization::propertyListFromData(const NSData &data, NSPropertyListFormat *format,
                                                     NSError *error) {
  try {
    if (data.length() == 0) throw PropertyListError{"the data is empty", ErrorCode::incomplete};
    const NSPropertyListFormat found = formatOf(data.view());
    id propertyList = read(data, found);
    if (format) *format = found;
    return propertyList;
  } catch (const PropertyListError &failure) {
    setError(error, failure.code, failure.reason);
    return id();
  }
}

NSData NSPropertyListSerialization::dataWithPropertyList(const id &propertyList, NSPropertyListFormat format,
                                                         NSError *error) {
  try {
    return write(propertyList, format);
  } catch (const PropertyListError &failure) {
    setError(error, failure.code, failure.reason);
    return NSData();
  }
}

}  // namespace nimbo
