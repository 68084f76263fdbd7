// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Classes/PlainText/PlainTextRecord.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// A `TagHandler` that writes the text which a person would read on the page; `context` is a `PlainTextRecord`.
/// It changes no units and never stops the scan. Names of tags go without regard to the case of ASCII letters.
/// `docs/plain-text.md` shows each rule on an example.
///
/// Where text is written
/// - A counter says whether the text counts as the body's: "body" adds 1, "/body" takes 1 away; "head",
///   the other way round; "noframes" and "noscript" as "body". Text is written while it is above 0, which it
///   always is unless `onlyBody` is asked for, and not within noframes and noscript.
/// - A tag that begins with neither a letter nor "/", "!" or "?" is text, up to the next "<" in it that does.
/// - "script" and "style" elements, comments and marked sections are never written. Where such an element
///   never ends, nothing is until a body or head tag.
/// - With `googleTags`, comments "googleoff: index" and "googleon: index" (or "all") end and begin the text.
/// - The text of the first title element, an empty line behind it; a later title is left out.
///
/// Breaks
/// - Two line feeds: p, h1 to h9, hr, div, table, blockquote. One: br, dd, dl, dt, li, ol, tr, ul. Each
///   time, start and end tag alike. td and th: a space unless the output ends in white space.
/// - Other blocks (article, caption, center, figure, form, main, pre, section ...) end the line in front of the
///   next text, unless a line begins there. Controls and embedded things (button, iframe, img, input, object,
///   option, select, svg, video ...) are apart from their neighbours by a space, and so are links with nothing
///   between them that is shown. All other tags break nothing: "<b>H</b>i" is one word.
/// - Lists get no bullets and no numbers, and nothing is indented.
///
/// White space
/// - Blanks (units up to U+0020, line breaks) become one space, none at the beginning and the end of a line. A
///   no-break space stays. Soft hyphens go.
/// - With `reformat`, within a text: two or more line breaks become an empty line; a single one becomes a line
///   feed in front of "/", ">", "}", "-" and space, else a space where the output does not end in white
///   space; spaces become one.
/// - pre, listing, textarea, xmp and plaintext keep their white space; CR LF and CR become a line feed, and a
///   feed directly behind the start tag goes. In textarea, xmp and plaintext tags are text; in xmp and
///   plaintext, character references too.
///
/// Words of attributes
/// - alt of img, and of input of type image; value of input, but of types hidden, password, checkbox,
///   radio, file, color, range and image. Of a select, the option that is selected, else the first; all with
///   "multiple" or a size.
///
/// Character references are decoded in texts of more than 3 units, as the options say.
///
/// Junk, with `removeJunk` (see PlainTextJunk.hpp)
/// - Overlong texts; texts made of groups of signs; 20001 units without a break, or, where white space is kept,
///   in one line; elements that are hidden, outside the page, too small or in the body's colour on the body's
///   background, images and inputs too. The date line of a feed's article goes too, but is
///   no junk.
bool PlainTextHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                      std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                      std::uint32_t textLocation, int kind, void *context);

}  // namespace nimbo
