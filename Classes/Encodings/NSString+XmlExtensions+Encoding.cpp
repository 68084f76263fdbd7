// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"

#include <string>
#include <string_view>
#include <utility>

#include "Classes/Encodings/CharsetNames.hpp"
#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Encodings/MarkupEncoding.hpp"
#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "platform/CoreServices/TextEncodings/ExtendedEncoding.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kBinaryPropertyListSignature = "bplist";

/// The text in a property list: its only string, or the page of a web archive.
NSString stringOfPropertyList(const NSData &data, NSStringEncoding defaultEncoding) {
  const id list = NSPropertyListSerialization::propertyListFromData(data);
  if (NSString string = list.string()) return string;
  const NSDictionary page = list.dictionary().objectForKey(u"WebMainResource"_ns).dictionary();
  return stringWithMarkupData(page.objectForKey(u"WebResourceData"_ns).data(),
                              page.objectForKey(u"WebResourceTextEncodingName"_ns).string(), defaultEncoding,
                              page.objectForKey(u"WebResourceURL"_ns).string());
}

}  // namespace

inline namespace XmlExtensions {

CFStringEncoding CFEncodingFromName(const NSString &name) {
  return charset2CFStringEncoding(name);
}

NSStringEncoding NSEncodingFromName(const NSString &name) {
  return charset2NSStringEncoding(name);
}

NSString markupCharset(const NSString &markup) {
  NSMutableString charset;
  GetTagsOfString(markup, RetrieveEncodingHandler, &charset, false);
  return std::move(charset).string();
}

NSStringEncoding markupEncoding(const NSString &markup) {
  return NSEncodingFromName(markupCharset(markup));
}

NSStringEncoding headerEncoding(const NSString &contentType) {
  return NSEncodingFromName(headerCharset(contentType));
}

NSString stringWithMarkupData(const NSData &data, const NSString &encodingName,
                              NSStringEncoding defaultEncoding, const NSString &) {
  if (data.length() == 0) return NSString();
  return decodeMarkup(data, NSEncodingFromName(encodingName), defaultEncoding).string;
}

NSString stringWithMarkupData(const NSData &data, const NSString &contentType,
                              NSStringEncoding defaultEncoding) {
  return stringWithMarkupData(data, headerCharset(contentType), defaultEncoding, NSString());
}

NSString stringWithMarkupData(const NSData &data, NSStringEncoding defaultEncoding) {
  return decodeMarkup(data, kCFStringEncodingInvalidId, defaultEncoding).string;
}

NSString stringWithMarkupContentsOfFile(const NSString &path, NSStringEncoding defaultEncoding) {
  const NSData data = NSData::dataWithContentsOfFile(path);
  if (data.view().starts_with(kBinaryPropertyListSignature)) return stringOfPropertyList(data, defaultEncoding);
  return stringWithMarkupData(data, defaultEncoding);
}

NSData markupData(const NSString &markup, NSStringEncoding *usedEncoding) {
  NSStringEncoding encoding = markup ? markupEncoding(markup) : kCFStringEncodingInvalidId;
  NSData data = dataUsingEncoding(markup, encoding);
  if (!data && extendedEncoding(encoding) != kCFStringEncodingInvalidId) {
    encoding = extendedEncoding(encoding);
    data = dataUsingEncoding(markup, encoding);
  }
  if (markup && !data) {
    const std::string bytes = markup.UTF8String();
    encoding = NSUTF8StringEncoding;
    data = NSData::dataWithBytes(bytes.data(), bytes.size());
  }
  if (usedEncoding) *usedEncoding = encoding;
  return data;
}

}  // namespace XmlExtensions
}  // namespace nimbo
