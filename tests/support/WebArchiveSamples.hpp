// SPDX-License-Identifier: Apache-2.0
// Web archives as the property lists that other programs write.
#pragma once

#include <string_view>
#include <utility>

#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/WebKit/WebArchive.hpp"

namespace nimbo {

/// A resource as it stands in a list.
inline NSDictionary listOfResource(std::string_view bytes, const NSString &URL,
                                   const NSString &type = u"text/html"_ns, const NSString &encoding = {}) {
  return {{u"WebResourceData"_ns, NSData::dataWithBytes(bytes.data(), bytes.size())},
          {u"WebResourceMIMEType"_ns, type},
          {u"WebResourceTextEncodingName"_ns, encoding},
          {u"WebResourceURL"_ns, URL},
          {u"WebResourceResponse"_ns, NSData::dataWithBytes("\0\1", 2)}};
}

/// An archive as it stands in a list; what is nil is missing.
inline NSDictionary listOfArchive(id mainResource, id subresources = {}, id frames = {}) {
  return {{u"WebMainResource"_ns, std::move(mainResource)},
          {u"WebSubresources"_ns, std::move(subresources)},
          {u"WebSubframeArchives"_ns, std::move(frames)}};
}

/// The list inside of so many archives that hold nothing but a frame.
inline NSDictionary listOfFrames(std::uint32_t count, NSDictionary innermost) {
  for (; count > 0; --count) innermost = listOfArchive({}, {}, NSArray{std::move(innermost)});
  return innermost;
}

inline NSData bytesOfList(const id &list, NSPropertyListFormat format = NSPropertyListFormat::binary) {
  return NSPropertyListSerialization::dataWithPropertyList(list, format);
}

inline WebArchive archiveOfList(const id &list, NSError *error = nullptr) {
  return WebArchive::archiveWithData(bytesOfList(list), error);
}

}  // namespace nimbo
