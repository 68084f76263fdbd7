// SPDX-License-Identifier: Apache-2.0
//
// Handlers that read facts about a page out of its tags. Any thread may scan with them, each with a context of
// its own. Names of attributes and their values are compared without regard to case.
//
//     NSMutableString title;
//     GetTagsOfString(page, RetrieveTitleHandler, &title, false);
//     const NSURL base = baseURL(u" http://example.org/a/ "_ns);
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Classes/Markup/TagScanner.hpp"
#include "Classes/Pages/JoinedText.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The context of `RetrieveMetaAttributeHandler`.
struct MetaAttributeContext {
  /// "NAME" or "HTTP-EQUIV".
  const char *attributeName;
  /// What the attribute has to be.
  NSString firstValue;
  /// What it may be, too; nil for nothing else.
  NSString secondValue;
  /// The contents, joined by spaces.
  JoinedText result;
};

/// The context of `RetrieveKeywordsDescriptionTitleHandler`.
struct KeywordsDescriptionTitleContext {
  /// All of "keywords".
  JoinedText keywords;
  /// All of "dc.keywords".
  JoinedText dcKeywords;
  /// All of "description".
  JoinedText description;
  /// All of "dc.description".
  JoinedText dcDescription;
  /// The first of "title" and the page's "title" elements.
  JoinedText title;
  /// The first of "dc.title".
  JoinedText dcTitle;
  /// The first of "IndexTitle".
  JoinedText indexTitle;

  /// Takes a meta tag by its name and content, neither of which need be wanted.
  void addMeta(std::u16string_view name, std::u16string_view content);
};

/// The context of `RetrieveMetaDataHandler` and `RetrieveConvertedMetaDataHandler`: the contents of meta tags
/// by their names, in the order in which the names come first.
class MetaDataContext {
 public:
  /// Appends a content behind those of the same name, which is taken in lower case.
  void join(std::u16string_view name, std::u16string_view content);
  /// The contents by the names. It is not to be used afterwards.
  NSDictionary dictionary() &&;

 private:
  std::vector<std::pair<NSString, JoinedText>> values_;
  std::unordered_map<NSString, std::size_t, NSStringHash> places_;
};

/// Sets its context, an `NSMutableString`, to the text in front of the first end of a "title" element, as it
/// stands; only what is behind the last tag in the title counts. Stops there and at the body.
extern const TagHandler RetrieveTitleHandler;

/// Sets its context, an `NSURL`, to the `baseURL` of the first "base" tag with a link, which may be nil. Stops
/// there and at the body.
extern const TagHandler RetrieveBaseURLHandler;

/// Sets its context, an `NSString`, to the normalised link of the first "link" tag whose relation is
/// "canonical", unless that is only an anchor. Stops there and at the body.
extern const TagHandler RetrieveCanonicalURLHandler;

/// Sets its context, an `NSString`, to the content of the first meta tag that is named "date" or "dc.date" or
/// stands for the header field "last-modified". Stops there and at the body.
extern const TagHandler RetrieveDateHandler;

/// Sets its context, an `NSString`, to the first `getFavIcon`, and stops there; not at the body.
extern const TagHandler RetrieveFavIconHandler;

/// Joins the contents of the meta tags that its context asks for. Stops at the body.
extern const TagHandler RetrieveMetaAttributeHandler;

/// Joins the contents of all meta tags with a name, as they stand. Stops at the body.
extern const TagHandler RetrieveMetaDataHandler;

/// As `RetrieveMetaDataHandler`, but contents have their references converted and white space joined, and are
/// plain text when they were markup.
extern const TagHandler RetrieveConvertedMetaDataHandler;

/// Gathers the texts of its context from the whole page: it never stops the scan.
extern const TagHandler RetrieveKeywordsDescriptionTitleHandler;

/// The link of a "link" tag whose relation contains "shortcut icon", by `normalizedRelLink`; nil for any other
/// tag. The locations are those of the scanner.
NSString getFavIcon(const unichar *characters, std::uint32_t nameLocation, std::uint32_t nameLength,
                    std::uint32_t tagLocation, std::uint32_t tagLength);

/// The URL that a "base" tag names, normalised. Nil when nothing is left of it, and when it is not
/// `isRemoteWebKitURL` or only an anchor, which is logged.
NSURL baseURL(const NSString &string);
/// As above, normalised with or without `preservingMeaning`.
NSURL baseURL(const NSString &string, Flag preservingMeaning);

}  // namespace nimbo
