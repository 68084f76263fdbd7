// SPDX-License-Identifier: Apache-2.0
//
// Decoding of character references in buffers. Any thread may decode.
//
//     std::u16string units = u"caf&eacute; &#8364;";
//     units.resize(convertEntities2Characters(units.data(), units.data(), 0, 19, true, false, false));
//     units == u"café €";  // true
#pragma once

#include <cstdint>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Decodes the character references in `length` units of `source` from index `start` on, and writes the result
/// from the first unit of `destination` on, which may be `source` itself and must have room for `length`
/// units. Answers how many units it wrote. What cannot be decoded is copied.
///
/// - `standard`: also decodes "&quot", "&amp", "&lt" and "&gt", with or without ";", and the numeric references
///   to these four; without it the output is still safe markup.
/// - `onlyNumeric`: does not decode names, but for these four, "&nbsp" and "&apos".
/// - `nonUmlauted`: folds the output by `umlautsCharsTable`, but for what these six give.
///
/// Other names have at most 6 letters, numbers 5 decimal or 4 hexadecimal digits; longer ones stay. Their ";"
/// may be missing, except that at the very end of the text the last letter or digit is then not part of the
/// reference: "&#65" gives U+0006 and "5". "&#;" gives U+0000.
std::uint32_t convertEntities2Characters(const unichar *source, unichar *destination, std::uint32_t start,
                                         std::uint32_t length, Flag standard, Flag onlyNumeric,
                                         Flag nonUmlauted);

/// Decodes as above nothing but "&quot;", "&amp;", "&lt;" and "&gt;".
std::uint32_t convertStandardEntities2Characters(const unichar *source, unichar *destination,
                                                 std::uint32_t length);

}  // namespace nimbo
