// SPDX-License-Identifier: Apache-2.0
//
// The markup of a resource. Any thread may ask.
//
//     const WebArchive archive = WebArchive::archiveWithData(data);
//     const NSString page = documentSource(archive.mainResource());
//     if (!page) NSLog(u"%@ is no page", archive.mainResource().URL().absoluteString());
#pragma once

#include "platform/WebKit/WebResource.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace WebKitAdditions {

/// The text of a page, feed or other markup, decoded by `stringWithMarkupData` with ISO Latin 1 where nothing
/// says the encoding. Nil for nil, for what is no markup by its MIME type (`isMarkupMIMEType`), and for no
/// bytes.
NSString documentSource(const WebResource &resource);

}  // namespace WebKitAdditions
}  // namespace nimbo
