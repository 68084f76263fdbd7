// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Markup/TagScanner.hpp"
#include "Classes/PlainText/PlainTextOptions.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace Html2Text {

// The text of an HTML page. A page without any text, one of more than 268435455 units and one that there is no
// memory for answer themselves; nil answers nil. `junkFound` may be null; it says whether junk was removed.
// What the options do stands in PlainTextOptions.hpp, what is text and where lines end in PlainTextHandler.hpp.

NSString stringByConvertingHtml2PlainText(const NSString &page);
NSString stringByConvertingHtml2ReformattedPlainText(const NSString &page);
NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, bool nonUmlauted);
NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, bool nonUmlauted, bool reformat,
                                                     bool onlyBody, bool googleTags);
NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, bool nonUmlauted, bool reformat,
                                                     bool onlyBody, bool removeJunk, bool *junkFound,
                                                     bool googleTags);
NSString stringByConvertingHtml2PlainTextEntities(const NSString &page, bool entities, bool stdEntities,
                                                  bool nonUmlauted, bool reformat, bool onlyBody,
                                                  bool removeJunk, bool *junkFound, bool googleTags);
/// The texts of the body, each with a space in front of it, and nothing else: for comparing, not for reading.
NSString stringByConvertingHtml2SimplifiedPlainText(const NSString &page);

/// What all of them call: `handler` is `PlainTextHandler` or `SimplePlainTextHandler`.
NSString _convertHtml2PlainTextUsingHandler(const NSString &page, TagHandler handler,
                                            const PlainTextOptions &options, bool *junkFound);

}  // namespace Html2Text
}  // namespace nimbo
