// SPDX-License-Identifier: Apache-2.0
//
// URLs cleaned unit by unit. Any thread may clean them.
//
//     const std::u16string_view link = u" a&amp;b\"";
//     std::u16string out(kMaxURLGrowth * link.size(), u'\0');
//     out.resize(normalizeURLUnits(link.data(), 8, false, out.data()));
//     out == u"a&b";  // true
//     stringURLWrittenBy(cleanURLUnits, u" a b "_ns);  // "a%20b"
#pragma once

#include <cstdint>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How many units one of a URL becomes at the most: an escape has 3.
constexpr std::uint32_t kMaxURLGrowth = 3;
/// How many units a URL to be cleaned may have.
constexpr std::uint32_t kMaxNormalizedURLLength = NSNotFound / kMaxURLGrowth;

/// Whether `normalizeURLUnits` is sure to leave the units as they are, after one quick look; `false` says
/// nothing.
bool isPlainURL(const unichar *units, std::uint32_t length, Flag trimAnchor);

/// Cleans a URL of at most `kMaxNormalizedURLLength` units as it is written in markup, into `out`, which has
/// room for `kMaxURLGrowth * length` units and does not overlap the source. Answers how many units it wrote; 0
/// when nothing usable is left. Takes no memory.
///
/// In this order:
/// - White and control characters, quotes (also behind a backslash) and "<" in front are dropped; the URL ends
///   before the next quote or ">" (not with `preservingMeaning`), or the white and control characters at the
///   end. The text of "javascript", "applescript" and "data" URLs may hold quotes and angle brackets: only
///   those around it are dropped.
/// - Line feeds, carriage returns, form feeds, tabs, U+2028, U+2029, U+FFFC and U+FEFF are dropped.
/// - Character references are converted (`convertEntities2Characters`, all of them): "&amp;b=1" becomes "&b=1",
///   and "&copy=1" the sign and "=1". With `preservingMeaning` they are read as browsers read those of an
///   attribute (`readCharacterReference`): "&copy=1" stays. Then the first two steps apply again, but now a
///   quote ends nothing.
/// - With `trimAnchor`, the first "#" and what follows is dropped.
/// - Escapes are converted (`convertPercentEscapesOfURL`, standard); with `preservingMeaning` only those that
///   mean the same as what they stand for (`convertPercentEscapesPreservingMeaning`).
/// - "\" becomes "/" before the first "?" or "#", in relative URLs and in those of the schemes http,
///   https, ftp, ftps, sftp, feed and file.
/// - What remains of white, control characters, quotes, "<", ">", "\", and of "[" and "]" outside the host, is
///   escaped: " " becomes "%20". Units above U+007F stay.
std::uint32_t normalizeURLUnits(const unichar *units, std::uint32_t length, Flag trimAnchor, unichar *out,
                                Flag preservingMeaning = false);

/// Cleans as above a URL that is not as markup has it: normalised already, or typed. References, escapes and
/// the anchor stay, so that a URL which is normalised does not lose another level of them; a quote or ">"
/// inside ends nothing.
std::uint32_t cleanURLUnits(const unichar *units, std::uint32_t length, unichar *out);

/// What `stringURLWrittenBy` calls: `cleanURLUnits` or a function that writes as it does.
using URLUnitsWriter = std::uint32_t (*)(const unichar *units, std::uint32_t length, unichar *out);

/// What the function makes of a string, which is that itself when nothing changes. Up to 256 units nothing but
/// a new string takes memory. Nil when nothing usable is left, for nil, and above `kMaxNormalizedURLLength`.
NSString stringURLWrittenBy(URLUnitsWriter write, const NSString &string);

}  // namespace nimbo
