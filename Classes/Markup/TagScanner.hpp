// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What the scanner has met.
enum TagKind : int {
  kClosingCall = 0,    ///< The end of the string, once for each scan.
  kOrdinaryTag = 1,    ///< "<...>": start and end tags, declarations, processing instructions.
  kComment = 2,        ///< "<!-- ... -->".
  kMarkedSection = 3,  ///< "<![ ... ]>": CDATA sections, marks of conditional comments.
};

/// A function that is told of a tag, and answers whether the scan shall stop. `tagHandler` makes one of a
/// function with a context of its own type. The tag has `tagLength` units from its "<" at `tagLocation` on, its
/// ">" included; the text in front of it begins at `textLocation`. The name has `nameLength` units from
/// `nameLocation` on: NSNotFound and 0 when it has none. An end tag has "/" behind its "<"; a "script" or
/// "style" element with all its text is one tag. In the closing call the tag is empty and stands at the end of
/// the string.
///
/// A range may end one unit behind the string (a raw-text element whose end tag has no ">"), and the text may
/// then begin behind the end of it: clamp what you read, as `TagShape` does.
///
/// `characters` are all units of `string`, index 0 first. After a scan that was begun with `isMutable` they are
/// a copy of the scan's own; a handler may then cast the const away and change those in front of the tag.
using TagHandler = bool (*)(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                            std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                            std::uint32_t textLocation, int kind, void *context);

/// Walks over the string once and calls the handler, with `context` as its last argument, for each tag, comment
/// and marked section, from the first to the last, and once more at the end, unless the handler stops the scan.
/// Broken markup is never an error: less is reported. A tag that never ends is text; a comment or marked
/// section that never ends reaches to the end of the string.
///
///     NSMutableString text;
///     GetTagsOfString(page, StripTagsHandler, &text, false);
///     scanTags(page, [&](const TagShape &tag) { tags += tag.isOrdinary(); });  // ScanTags.hpp
///
/// `isMutable` says that the handler changes the units or the string itself: the scan then works on a copy.
/// Scans share nothing: any thread may begin one, with a context that no other thread uses.
///
/// False, without a call, when the string is nil or empty, or when it cannot be copied (no memory, or more than
/// 0x3fffffff units); true otherwise, also when the handler stopped the scan. Raises what the handler raises,
/// and `std::bad_alloc` when the marks of odd markup need more memory than there is.
bool GetTagsOfString(const NSString &string, TagHandler handler, void *context, Flag isMutable);

/// The same for XML, of which nothing is changed: a CDATA section ends at "]]>", whatever stands in it.
bool GetTagsOfXML(const NSString &string, TagHandler handler, void *context);

}  // namespace nimbo
