// SPDX-License-Identifier: Apache-2.0
//
// Handlers that gather what a page refers to, as normalised URLs that are not resolved. None stops the scan;
// they look at tags of at least 3 units that are no end tags, where nothing else is said. Any thread may scan
// with them, each with a context of its own.
//
//     StringSet images;
//     GetTagsOfString(page, RetrieveImagesHandler, &images, false);
//     const std::vector<NSString> urls = std::move(images).strings();
#pragma once

#include <optional>

#include "Classes/Markup/TagScanner.hpp"
#include "Classes/Pages/StringSet.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The context of `RetrieveLinksHandler`.
struct LinksContext {
  /// Whether links are left out for which `filterLink` is true.
  bool isFiltered = false;
  /// Whether links are left out whose relation contains "nofollow".
  bool usesRelNoFollow = false;
  /// The text of the anchor that is open, if its link may be wanted.
  std::optional<NSMutableString> anchorText;
  /// What the text of an anchor has to contain; anything when it is nil or empty.
  NSString containing;
  /// The link of the anchor that is open, as it is written.
  NSString pendingLink;
  /// The links.
  StringSet links;
  /// The `baseURL` of the last "base" tag with a link; nil, too, when that is no URL of the web.
  NSURL baseURL;
};

/// The context of `RetrieveLinksAndFramesHandler`. What has a null pointer is not looked for; the others keep
/// what they point to while nothing is found.
struct FramesContext {
  /// Whether links are gathered as well.
  bool withLinks = false;
  /// Never set by the handler.
  bool isFrameset = false;
  /// Whether the root of a feed comes before all tags of a page.
  bool isFeed = false;
  /// Whether a tag of a page has come.
  bool markupSeen = false;
  /// The frames, and the links.
  StringSet links;
  /// The text in front of the last end of a "title" element.
  NSString *title = nullptr;
  /// The content of the last meta tag for the header field "refresh".
  NSString *refresh = nullptr;
  /// The content of the last meta tag named "revisit-after".
  NSString *revisit = nullptr;
  /// The last `getFavIcon`.
  NSString *favIcon = nullptr;
  /// The contents of the meta tags named "robots", joined by commas; nothing when they are not wanted.
  std::optional<NSMutableString> robots;
  /// As in `LinksContext`.
  NSURL baseURL;
};

/// Gathers the links of "a" and "area" tags in its context, a `LinksContext`; of "a" alone when their text has
/// to contain something, which is compared by units, entities as they stand.
extern const TagHandler RetrieveLinksHandler;

/// Gathers in its context, a `StringSet`, the images of "img" tags, the background of the body, and what "link"
/// tags refer to as an icon or image, that by `normalizedRelLink`.
extern const TagHandler RetrieveImagesHandler;

/// Gathers in its context, a `StringSet`, the sources of "style" and "script" elements, or else the sheet in
/// double quotes behind the first "@import" in them, and what "link" tags refer to as a style, sheet or script,
/// that by `normalizedRelLink`. A source may stand anywhere in the element.
extern const TagHandler RetrieveSheetsAndScriptsHandler;

/// Gathers in its context, a `StringSet`, the "HREF" of "embed" and "object" tags, and no other attribute.
extern const TagHandler RetrieveObjectsHandler;

/// Gathers in its context, a `FramesContext`, the sources of frames, and what else the context asks for.
extern const TagHandler RetrieveLinksAndFramesHandler;

}  // namespace nimbo
