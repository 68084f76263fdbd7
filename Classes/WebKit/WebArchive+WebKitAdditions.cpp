// SPDX-License-Identifier: Apache-2.0
#include "Classes/WebKit/WebArchive+WebKitAdditions.hpp"

#include "Classes/WebKit/WebResource+WebKitAdditions.hpp"

namespace nimbo {
inline namespace WebKitAdditions {

WebArchive subArchiveForURL(const WebArchive &archive, const NSURL &URL) {
  if (!URL) return WebArchive();
  if (archive.mainResource().URL() == URL) return archive;
  for (const WebArchive &frame : archive.subframeArchives())
    if (WebArchive found = subArchiveForURL(frame, URL)) return found;
  return WebArchive();
}

WebResource subresourceForURL(const WebArchive &archive, const NSURL &URL) {
  if (!URL) return WebResource();
  if (WebResource main = archive.mainResource(); main.URL() == URL) return main;
  for (const WebResource &resource : archive.subresources())
    if (resource.URL() == URL) return resource;
  for (const WebArchive &frame : archive.subframeArchives())
    if (WebResource found = subresourceForURL(frame, URL)) return found;
  return WebResource();
}

NSURL baseURL(const WebArchive &archive) {
  return archive.mainResource().URL();
}

NSString documentSource(const WebArchive &archive) {
  return documentSource(archive.mainResource());
}

WebArchive webArchiveWithContentsOfFile(const NSString &path, NSError *error) {
  const NSData data = NSData::dataWithContentsOfFile(path, error);
  return data ? WebArchive::archiveWithData(data, error) : WebArchive();
}

NSString documentSourceOfFile(const NSString &path, NSURL *baseURL) {
  const WebArchive archive = webArchiveWithContentsOfFile(path);
  if (baseURL) *baseURL = nimbo::baseURL(archive);
  return documentSource(archive);
}

}  // namespace WebKitAdditions
}  // namespace nimbo
