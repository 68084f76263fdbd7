// SPDX-License-Identifier: Apache-2.0
//
// The text of an HTML page. Any thread may convert.
//
//     const NSString text = stringByConvertingHtml2PlainText(page);
//     const NSString mail = stringByConvertingHtml2ReformattedPlainText(page);
//     const NSString body = stringByConvertingHtml2SimplifiedPlainText(page);
#pragma once

#include "Classes/Markup/TagScanner.hpp"
#include "Classes/PlainText/PlainTextOptions.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace Html2Text {

/// The text of a page, as `PlainTextHandler` writes it. A page without any text, one of more than 268435455
/// units and one that there is no memory for answer themselves; nil answers nil.
NSString stringByConvertingHtml2PlainText(const NSString &page);
/// As `stringByConvertingHtml2PlainText`, with the option `reformat`.
NSString stringByConvertingHtml2ReformattedPlainText(const NSString &page);
/// As `stringByConvertingHtml2PlainText`, with or without the option `nonUmlauted`.
NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, Flag nonUmlauted);
/// As `stringByConvertingHtml2PlainText`, with some of the options of `PlainTextOptions`.
NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, Flag nonUmlauted, Flag reformat,
                                                     Flag onlyBody, Flag googleTags);
/// As `stringByConvertingHtml2PlainText`, with most of the options of `PlainTextOptions`. `*junkFound`, unless
/// it is null, says whether `removeJunk` has left out any text.
NSString stringByConvertingHtml2PlainTextNonUmlauted(const NSString &page, Flag nonUmlauted, Flag reformat,
                                                     Flag onlyBody, Flag removeJunk, bool *junkFound,
                                                     Flag googleTags);
/// As `stringByConvertingHtml2PlainText`, with all options of `PlainTextOptions`. `*junkFound`, unless it is
/// null, says whether `removeJunk` has left out any text.
NSString stringByConvertingHtml2PlainTextEntities(const NSString &page, Flag entities, Flag stdEntities,
                                                  Flag nonUmlauted, Flag reformat, Flag onlyBody,
                                                  Flag removeJunk, bool *junkFound, Flag googleTags);
/// The texts of the body, each with a space in front of it, as `SimplePlainTextHandler` writes them: for
/// comparing, not for reading. It answers the page itself where `stringByConvertingHtml2PlainText` does.
NSString stringByConvertingHtml2SimplifiedPlainText(const NSString &page);

/// What the other functions call: `handler` is `PlainTextHandler` or `SimplePlainTextHandler`. `*junkFound`,
/// unless it is null, says whether `removeJunk` has left out any text.
NSString _convertHtml2PlainTextUsingHandler(const NSString &page, TagHandler handler,
                                            const PlainTextOptions &options, bool *junkFound);

}  // namespace Html2Text
}  // namespace nimbo
