// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/WebResource.hpp"

#include "platform/Foundation/id.hpp"

namespace nimbo {

struct detail::WebResourceStorage : ReferenceCounted {
  WebResourceStorage(NSData bytes, NSURL url, NSString type, NSString encoding, NSString frame) noexcept
      : data(std::move(bytes)),
        URL(std::move(url)),
        MIMEType(std::move(type)),
        textEncodingName(std::move(encoding)),
        frameName(std::move(frame)) {}

  const NSData data;
  const NSURL URL;
  const NSString MIMEType;
  const NSString textEncodingName;
  const NSString frameName;

  bool operator==(const WebResourceStorage &other) const {
    return data == other.data && URL == other.URL && MIMEType == other.MIMEType &&
           textEncodingName == other.textEncodingName && frameName == other.frameName;
  }
};

template <>
void destroyShared<detail::WebResourceStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::WebResourceStorage *>(storage);
}

WebResource WebResource::resourceWithData(const NSData &data, const NSURL &URL, const NSString &MIMEType,
                                          const NSString &textEncodingName, const NSString &frameName) {
  if (!data) return WebResource();
  return WebResource(makeShared<Storage>(data, URL, MIMEType, textEncodingName, frameName));
}

NSData WebResource::data() const {
  return storage_ ? storage_->data : NSData();
}

NSURL WebResource::URL() const {
  return storage_ ? storage_->URL : NSURL();
}

NSString WebResource::MIMEType() const {
  return storage_ ? storage_->MIMEType : NSString();
}

NSString WebResource::textEncodingName() const {
  return storage_ ? storage_->textEncodingName : NSString();
}

NSString WebResource::frameName() const {
  return storage_ ? storage_->frameName : NSString();
}

bool WebResource::operator==(const WebResource &other) const {
  return storage_ == other.storage_ || (storage_ && other.storage_ && *storage_ == *other.storage_);
}

WebResource WebResource::resourceWithPropertyList(const id &propertyList) {
  const NSDictionary parts = propertyList.dictionary();
  return resourceWithData(parts.objectForKey(u"WebResourceData"_ns).data(),
                          NSURL::URLWithString(parts.objectForKey(u"WebResourceURL"_ns).string()),
                          parts.objectForKey(u"WebResourceMIMEType"_ns).string(),
                          parts.objectForKey(u"WebResourceTextEncodingName"_ns).string(),
                          parts.objectForKey(u"WebResourceFrameName"_ns).string());
}

id WebResource::propertyList() const {
  if (!storage_) return id();
  return NSDictionary{{u"WebResourceData"_ns, storage_->data},
                      {u"WebResourceMIMEType"_ns, storage_->MIMEType},
                      {u"WebResourceTextEncodingName"_ns, storage_->textEncodingName},
                      {u"WebResourceURL"_ns, storage_->URL.absoluteString()},
                      {u"WebResourceFrameName"_ns, storage_->frameName}};
}

}  // namespace nimbo
