// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <unordered_map>

#include "Classes/Markup/TagScanner.hpp"
#include "Classes/PlainText/SearchEngineMarkers.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The context of `IconsHandler`. The first five are the caller's to set. One thread uses it at a time.
struct IconsContext {
  /// Links and the URLs of their images; nil when they are not wanted.
  NSDictionary thumbs;
  /// Links and their titles; nil when they are not wanted.
  NSDictionary titles;
  /// What links and images count from, until a "base" tag says otherwise; nil when they are not resolved.
  NSURL baseURL;
  /// The page itself, as a link; nil when it is not known.
  NSString page;
  /// Whether to follow the comments that hide texts from search engines.
  bool googleTags = false;

  /// The link that is open; nil when none is.
  NSString link;
  /// The "TITLE" of its tag.
  NSString linkTitle;
  /// The "ALT" or "TITLE" of its first image that has one.
  NSString imageTitle;
  /// Its text.
  NSMutableString linkText;
  /// How many words the titles have that were stored in this context.
  std::unordered_map<NSString, std::uint32_t, NSStringHash> wordsOfTitles;
  /// What of the page is hidden.
  SearchEngineMarkers markers;
};

/// Gathers the images and titles of links. Never stops the scan.
///
/// - A link is the "HREF" of an "a" tag, normalised and, where there is a base, resolved; of the scripts that
///   `stringByExtractingJavaScriptURL` knows what they open. Other scripts and anchors of the page are none. It
///   is open until the next "a" tag.
/// - Its image is the first in it, an "img" tag or the "BACKGROUND" of any, whose name ends in ".gif", ".jpg",
///   ".jpe" or ".png". The image of the page itself is its "shortcut icon", else "/favicon.ico" where
///   its base is an HTTP URL.
/// - Its title is its text, or else its "TITLE", or else what the first image with such says by "ALT" or
///   "TITLE". Where a link stands more than once, the text with the most words counts.
/// - With `googleTags` there are no images while "index" is off, and no titles while "index" or "anchor" is.
extern const TagHandler IconsHandler;

/// Stores the title of a link, trimmed and with its white space joined. Nothing happens when titles are not
/// wanted, when one of both is nil, and when the title has no words. A title that is there stays, unless
/// `replace` is set and it has no more words than the other.
void addTitleToIconsContext(IconsContext &context, const NSString &title, const NSString &link, Flag replace);

}  // namespace nimbo
