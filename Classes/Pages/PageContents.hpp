// SPDX-License-Identifier: Apache-2.0
//
// All facts and links of a page, read in one pass. Any thread may read a page.
//
//     const PageContents contents = contentsOfPage(page, {.withDetails = true});
//     show(contents.facts.normalizedTitle, contents.facts.indexedDescription);
//     for (const PageLink &link : contents.links) show(link.URL, link.text);
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a page says about itself, each as the function of its name in NSString+HtmlExtensions+PageFacts.hpp
/// tells it; nil for what it does not say.
struct PageFacts {
  /// `htmlTitle`; never nil.
  NSString title;
  /// `normalizedHtmlTitle`; never nil.
  NSString normalizedTitle;
  /// `htmlBaseURL`.
  NSURL baseURL;
  /// `htmlCanonicalURL`.
  NSString canonicalURL;
  /// `htmlDate`.
  NSString date;
  /// `htmlFavIcon`.
  NSString favIcon;
  /// The keywords of `htmlMetaKeywords` with five parameters.
  NSString indexedKeywords;
  /// The description that it tells.
  NSString indexedDescription;
  /// The title that it tells.
  NSString indexedTitle;
  /// The index title that it tells.
  NSString indexTitle;
  /// `htmlMetaAuthor`.
  NSString author;
  /// `htmlMetaCopyright`.
  NSString copyright;
  /// `htmlMetaRefresh`.
  NSString refresh;
  /// The contents of all meta tags named "robots", joined by commas.
  NSString robots;
  /// The content of the last meta tag named "revisit-after".
  NSString revisit;
  /// Whether the root of a feed comes before all tags of a page.
  bool isFeed = false;
  /// `htmlMetaAttributesByConvertingEntitiesToCharacters`; never nil.
  NSDictionary metaAttributes;
};

/// What a page refers to something as.
enum class PageLinkKind : std::uint8_t {
  kLink,           ///< The "HREF" of an "a" or "area" tag.
  kFrame,          ///< What `htmlFramesBaseURL` gathers.
  kImage,          ///< What `htmlImages` gathers.
  kSheetOrScript,  ///< What `htmlStylesheetsAndScripts` gathers, but for what only looks like a source in a
                   ///< script.
  kObject,         ///< What `htmlEmbeddedObjects` gathers.
};

/// One reference of a page.
struct PageLink {
  /// What it refers to something as.
  PageLinkKind kind;
  /// Normalised, not resolved; never nil.
  NSString URL;
  /// The text of an "a" element up to its end tag or the next one, its entities converted and white space
  /// joined; the "ALT" of an image or area, and of the first image in a link without text. Nil when there is
  /// none, and unless details are asked for.
  NSString text;
  /// Where the tag stands in the page, in units.
  NSRange place;
  /// Whether its relation contains "nofollow"; false unless details are asked for.
  bool isNoFollow = false;
};

/// What `contentsOfPage` does.
struct PageContentsOptions {
  /// Escapes in URLs stay where they mean something else than what they stand for.
  bool preservingMeaning = false;
  /// The texts of links and whether they are to be followed are read as well.
  bool withDetails = false;
};

/// What is read of a page.
struct PageContents {
  /// What the page says about itself.
  PageFacts facts;
  /// What it refers to, in its order, as often as it does.
  std::vector<PageLink> links;
  /// What its links count from: the `baseURL` of its last "base" tag with a link; nil without one, and when
  /// that is no URL of the web.
  NSURL linksBaseURL;
};

/// Reads a page. Nothing is known of one that is nil or empty, and little of one without memory to read it.
PageContents contentsOfPage(const NSString &page, const PageContentsOptions &options = {});

}  // namespace nimbo
