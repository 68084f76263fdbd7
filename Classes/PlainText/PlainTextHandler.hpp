// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Markup/TagScanner.hpp"
#include "Classes/PlainText/PlainTextRecord.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Writes the text that a person would read on the page into its context, a `PlainTextRecord`. It changes no
/// units and never stops the scan. `docs/plain-text.md` shows each of the rules below on an example. Any
/// thread may scan with it, each with a record of its own.
///
///     PlainTextRecord record({.removeJunk = true});
///     GetTagsOfString(page, PlainTextHandler, &record, false);
///     const NSString text = record.hasText() ? std::move(record).text() : page;
///
/// Names of tags are matched without regard to the case of ASCII letters.
///
/// Where text is written
/// - The depth of bodies says whether text is in the body: "body" adds 1, "/body" takes 1 away; "head" does the
///   opposite; "noframes" and "noscript" do as "body". Text is written where the depth is above 0, which it
///   always is unless `onlyBody` is asked for, and not within noframes and noscript.
/// - A tag that begins with neither a letter nor "/", "!" or "?" is text, up to the next "<" in it that does.
/// - "script" and "style" elements, comments and marked sections are never written. Where a script or style
///   never ends, nothing is written until a body or head tag.
/// - With `googleTags`, the comments "googleoff: index" and "googleon: index" (or "all") end and begin
///   the text.
/// - The text of the first title element is written, with an empty line behind it; a later title is left out.
///
/// Breaks
/// - p, h1 to h9, hr, div, table and blockquote write two line feeds; br, dd, dl, dt, li, ol, tr and ul write
///   one: each time, start and end tag alike. td and th write a space unless the output ends in white space.
/// - Other blocks (article, caption, center, figure, form, main, pre, section ...) end the line in front of the
///   next text, unless a line begins there. Controls and embedded things (button, iframe, img, input, object,
///   option, select, svg, video ...) are apart from their neighbours by a space, and so are links with nothing
///   between them that is shown. All other tags break nothing: "<b>H</b>i" is one word.
/// - Lists get no bullets and no numbers, and nothing is indented.
///
/// White space
/// - Blanks (units up to U+0020, line breaks) in a row become one space, and none at the beginning and the end
///   of a line. A no-break space stays. Soft hyphens go.
/// - With `reformat`, within a text: two or more line breaks in a row become an empty line; a single one
///   becomes a line feed in front of "/", ">", "}", "-" and space, else a space where the output does not end
///   in white space; spaces in a row become one.
/// - pre, listing, textarea, xmp and plaintext keep their white space; CR LF and CR become a line feed, and a
///   line break directly behind the start tag goes. In textarea, xmp and plaintext tags are text; in xmp and
///   plaintext, character references are too.
///
/// Texts of attributes
/// - img, and input of type image, write their alt; input writes its value, but not one of type hidden,
///   password, checkbox, radio, file, color or range. A select writes the option that is selected, else the
///   first; all of them with "multiple" or a size.
///
/// Character references are decoded in texts of more than 3 units, as the options say.
///
/// Junk, with `removeJunk`
/// - A text is left out when it is longer than 10000 units, or than 3500 in a link or heading; when it has 100
///   units or more, split by more than 4 groups of signs and blanks of more than 5 units on average; and when
///   20001 units come without a break, or, where white space is kept, in one line.
/// - Elements are left out that are hidden, outside the page, too small, or in the body's colour on the body's
///   background, images and inputs too. The date line of a feed's article goes too, but is no junk.
extern const TagHandler PlainTextHandler;

/// Writes a space and the text for each text in the body, whatever its white space, with all character
/// references decoded when it has more than 3 units; its context is a `PlainTextRecord`. "body" and "noframes"
/// begin the body, "head" interrupts it. It changes no units and never stops the scan. Any thread may scan with
/// it, each with a record of its own.
extern const TagHandler SimplePlainTextHandler;

}  // namespace nimbo
