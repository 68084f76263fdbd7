// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSPropertyListSerialization.hpp"

#include <algorithm>
#include <string_view>

#include "platform/Foundation/PropertyLists/BinaryPropertyListFormat.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListReader.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListWriter.hpp"
#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"
#include "platform/Foundation/PropertyLists/TextPropertyList.hpp"
#include "platform/Foundation/PropertyLists/XMLPropertyList.hpp"

namespace nimbo {
namespace {

/// Text may begin with '<', too, but only as "<" and a hexadecimal digit, white space or ">".
NSPropertyListFormat formatOf(std::string_view bytes) {
  if (bytes.starts_with(BinaryPropertyList::kMagic)) return NSPropertyListFormat::binary;
  // A UTF-16 byte order mark: only XML comes in UTF-16.
  if (bytes.starts_with("\xfe\xff") || bytes.starts_with("\xff\xfe")) return NSPropertyListFormat::xml;
  if (bytes.starts_with("\xef\xbb\xbf")) bytes.remove_prefix(3);
  bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
  for (const std::string_view start : {"<?xml", "<!DOCTYPE", "<!--", "<plist"})
    if (bytes.starts_with(start)) return NSPropertyListFormat::xml;
  return NSPropertyListFormat::openStep;
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
