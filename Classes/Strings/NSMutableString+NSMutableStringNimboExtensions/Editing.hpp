// SPDX-License-Identifier: Apache-2.0
//
// Appending and inserting, and tabs. One thread changes a string at a time.
//
//     NSMutableString line(u"a"_ns);
//     appendCharacter(line, u'\t');
//     appendSubstring(line, u"abc"_ns, {1, 1});
//     decodeTabs(line, 4);
//     line.view();  // "a   b"
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Appends one unit.
void appendCharacter(NSMutableString &string, unichar character);
/// Appends units; `characters` may point into the string.
void appendCharacters(NSMutableString &string, const unichar *characters, std::uint32_t length);
/// Appends the part of `appended` at `range`, which is cut to the bounds of `appended`.
void appendSubstring(NSMutableString &string, const NSString &appended, NSRange range);
/// Inserts one unit in front of the one at the index; changes nothing when the index is above the length.
void insertCharacter(NSMutableString &string, unichar character, std::uint32_t atIndex);

/// The widest tab that `encodeTabs` and `decodeTabs` know.
inline constexpr std::uint32_t kMaximumTabWidth = 256;

/// Replaces spaces (U+0020) that reach a tab stop by a tab, when they are two or more. Tab stops stand every
/// `width` units, counted from the last line break. Changes nothing when the width is 0 or above
/// `kMaximumTabWidth`.
void encodeTabs(NSMutableString &string, std::uint32_t width);
/// Replaces each tab by spaces up to the next tab stop: undoes `encodeTabs` on text that had no tabs.
void decodeTabs(NSMutableString &string, std::uint32_t width);

/// Changes nothing: a plain string has no attachments.
void removeAttachments(NSMutableString &string);
/// Changes nothing: a plain string has no links.
void removeLinks(NSMutableString &string);
/// Changes nothing: a plain string has no attributes.
void removeAttribute(NSMutableString &string, const NSString &name);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
