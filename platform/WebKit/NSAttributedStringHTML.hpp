// SPDX-License-Identifier: Apache-2.0
//
// Pages as attributed text, as a browser with scripts off shows them on a screen of 1280 by 720 pixels. Scripts
// are never run. Any thread may read pages; a delegate is called by the thread that does.
//
//     NSError error;
//     const NSDictionary options = {{NSTimeoutDocumentOption, 15.0}, {NSBaseURLDocumentOption,
//     u"http://a.org/"_ns}}; const NSAttributedString text = initWithHTML(u"<p>One <b>bold</b> word"_ns,
//     options, nullptr, &error); if (error) NSLog(error.localizedFailureReason);  // which parts of the page
//     were not loaded
#pragma once

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"
#include "platform/WebKit/WebArchive.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Whether the web engine reads the page, a boolean. There is no other reader: it changes nothing.
inline const NSString NSUseWebKitDocumentOption = u"UseWebKit"_ns;
/// How many seconds may go by until all parts of the page are loaded, a number. Those that are not there by
/// then count with what has come of them. Without it `kDefaultPageTimeoutSeconds`.
inline const NSString NSTimeoutDocumentOption = u"Timeout"_ns;
/// The object that is asked before anything is loaded, a `WebResourceLoadDelegate`. Without it everything is.
inline const NSString NSWebResourceLoadDelegateDocumentOption = u"WebResourceLoadDelegate"_ns;
/// Where relative references begin, the string of an absolute URL. The page's own "base" element is resolved
/// against it and takes its place.
inline const NSString NSBaseURLDocumentOption = u"BaseURL"_ns;

/// The seconds for the parts of a page when nothing is said.
inline constexpr double kDefaultPageTimeoutSeconds = 60;

/// The text of a page, which is decoded already: fonts, colours, links, lists, tables and images as the style
/// sheets of the page and its attributes say. Style sheets and images are loaded, from files, "data" URLs and
/// over HTTP; an image that is not is its alternative text. Sizes are points, 3/4 of the page's pixels.
/// `*documentAttributes`, unless it is null, gets title, author, subject, keywords and the type "NSHTML". Nil
/// for a nil page. `*error` says which parts could not be loaded or were refused, and why. Raises
/// `std::bad_alloc`.
NSAttributedString initWithHTML(const NSString &html, const NSDictionary &options = NSDictionary(),
                                DocumentAttributes *documentAttributes = nullptr, NSError *error = nullptr);

/// The same of a page whose parts are at hand in an archive; what the archive lacks is loaded.
NSAttributedString initWithHTML(const NSString &html, const WebArchive &archive, const NSDictionary &options,
                                DocumentAttributes *documentAttributes = nullptr, NSError *error = nullptr);

}  // namespace nimbo
