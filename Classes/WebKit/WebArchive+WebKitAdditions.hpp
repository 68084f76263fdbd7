// SPDX-License-Identifier: Apache-2.0
//
// What an archive holds, by URL, and its page. Any thread may ask.
//
//     NSURL base;
//     const NSString page = documentSourceOfFile(u"/tmp/page.webarchive"_ns, &base);
//     const WebArchive frame = subArchiveForURL(archive, NSURL::URLWithString(u"http://example.org/frame"_ns));
//     const WebResource image = subresourceForURL(archive, url);
#pragma once

#include "platform/WebKit/WebArchive.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace WebKitAdditions {

/// The archive itself when its main resource has the URL, else the first frame, in order and with the frames
/// inside each, of which that is so. Nil when there is none, and for a nil URL.
WebArchive subArchiveForURL(const WebArchive &archive, const NSURL &URL);
/// The main resource when it has the URL, else the first of the subresources that has it, else that of the
/// first frame, in order and with the frames inside each. Nil when there is none, and for a nil URL.
WebResource subresourceForURL(const WebArchive &archive, const NSURL &URL);

/// The URL of the main resource.
NSURL baseURL(const WebArchive &archive);
/// The markup of the main resource, as `documentSource` of resources reads it.
NSString documentSource(const WebArchive &archive);

/// The archive in a file. Nil when the file cannot be read, is empty or holds none; `*error` says why, or what
/// of the archive is left out.
WebArchive webArchiveWithContentsOfFile(const NSString &path, NSError *error = nullptr);
/// The markup of the main resource of the archive in a file; `*baseURL`, unless it is null, gets its URL. Both
/// are nil when there is no archive.
NSString documentSourceOfFile(const NSString &path, NSURL *baseURL = nullptr);

}  // namespace WebKitAdditions
}  // namespace nimbo
