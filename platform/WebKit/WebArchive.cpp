// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/WebArchive.hpp"

#include <algorithm>
#include <string>

#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

struct detail::WebArchiveStorage : ReferenceCounted {
  WebResource mainResource;
  std::vector<WebResource> subresources;
  std::vector<WebArchive> subframeArchives;
  /// How many archives stand inside of each other, this one included.
  std::uint32_t depth = 1;

  bool operator==(const WebArchiveStorage &other) const {
    return mainResource == other.mainResource && subresources == other.subresources &&
           subframeArchives == other.subframeArchives;
  }
};

template <>
void destroyShared<detail::WebArchiveStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::WebArchiveStorage *>(storage);
}

namespace {

template <class Part>
void removeNil(std::vector<Part> &parts) {
  std::erase_if(parts, [](const Part &part) { return !part; });
}

}  // namespace

/// What is left of the limits while an archive is read.
struct WebArchive::Reading {
  std::uint32_t parts = kMaximumParts;
  bool isCut = false;

  /// Whether there may be one more part.
  bool countPart() {
    if (parts > 0) return parts-- > 0;
    isCut = true;
    return false;
  }
};

WebArchive WebArchive::archiveWithMainResource(const WebResource &mainResource,
                                               std::vector<WebResource> subresources,
                                               std::vector<WebArchive> subframeArchives) {
  removeNil(subresources);
  removeNil(subframeArchives);
  if (!mainResource && subresources.empty() && subframeArchives.empty()) return WebArchive();
  auto storage = makeShared<Storage>();
  for (const WebArchive &frame : subframeArchives)
    storage->depth = std::max(storage->depth, frame.storage_->depth + 1);
  if (storage->depth > kMaximumDepth) return WebArchive();
  storage->mainResource = mainResource;
  storage->subresources = std::move(subresources);
  storage->subframeArchives = std::move(subframeArchives);
  return WebArchive(std::move(storage));
}

WebArchive WebArchive::archiveWithPropertyList(const NSDictionary &list, std::uint32_t depth,
                                               Reading &reading) {
  if (!list || !reading.countPart()) return WebArchive();
  const WebResource mainResource =
      WebResource::resourceWithPropertyList(list.objectForKey(u"WebMainResource"_ns));
  std::vector<WebResource> subresources;
  for (const id &resource : list.objectForKey(u"WebSubresources"_ns).array()) {
    if (!reading.countPart()) break;
    subresources.push_back(WebResource::resourceWithPropertyList(resource));
  }
  std::vector<WebArchive> frames;
  for (const id &frame : list.objectForKey(u"WebSubframeArchives"_ns).array()) {
    if (depth == kMaximumDepth) reading.isCut = true;
    if (reading.isCut) break;
    frames.push_back(archiveWithPropertyList(frame.dictionary(), depth + 1, reading));
  }
  return archiveWithMainResource(mainResource, std::move(subresources), std::move(frames));
}

WebArchive WebArchive::archiveWithData(const NSData &data, NSError *error) {
  NSError listError;
  const id list = NSPropertyListSerialization::propertyListFromData(data, nullptr, &listError);
  if (!list) {
    const std::string reason = listError.localizedFailureReason.UTF8String();
    setError(error, listError.errorCode(), "the file is no web archive: " + reason);
    return WebArchive();
  }
  Reading reading;
  WebArchive archive = archiveWithPropertyList(list.dictionary(), 1, reading);
  if (!archive && reading.isCut)
    setError(error, ErrorCode::tooLarge, "the frames of the web archive are nested too deeply");
  else if (!archive)
    setError(error, ErrorCode::damaged, "the file is no web archive");
  else if (reading.isCut)
    setError(error, ErrorCode::incomplete, "the web archive has too many frames or resources to read all");
  return archive;
}

WebResource WebArchive::mainResource() const {
  return storage_ ? storage_->mainResource : WebResource();
}

std::span<const WebResource> WebArchive::subresources() const {
  return storage_ ? std::span<const WebResource>(storage_->subresources) : std::span<const WebResource>();
}

std::span<const WebArchive> WebArchive::subframeArchives() const {
  return storage_ ? std::span<const WebArchive>(storage_->subframeArchives) : std::span<const WebArchive>();
}

NSData WebArchive::data(NSError *error) const {
  return NSPropertyListSerialization::dataWithPropertyList(propertyList(), NSPropertyListFormat::binary, error);
}

bool WebArchive::operator==(const WebArchive &other) const {
  return storage_ == other.storage_ || (storage_ && other.storage_ && *storage_ == *other.storage_);
}

id WebArchive::propertyList() const {
  if (!storage_) return id();
  NSDictionary list = {{u"WebMainResource"_ns, storage_->mainResource.propertyList()}};
  NSArray resources;
  for (const WebResource &resource : storage_->subresources) resources.addObject(resource.propertyList());
  NSArray frames;
  for (const WebArchive &frame : storage_->subframeArchives) frames.addObject(frame.propertyList());
  list.setObject(resources, u"WebSubresources"_ns);
  list.setObject(frames, u"WebSubframeArchives"_ns);
  return list;
}

}  // namespace nimbo
