// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

void appendCharacter(NSMutableString &string, unichar character);
/// `characters` may point into the string.
void appendCharacters(NSMutableString &string, const unichar *characters, std::uint32_t length);
/// `range` is cut to the bounds of `appended`.
void appendSubstring(NSMutableString &string, const NSString &appended, NSRange range);
/// Changes nothing when the index is above the length.
void insertCharacter(NSMutableString &string, unichar character, std::uint32_t atIndex);

/// The widest tab that the two functions below know.
inline constexpr std::uint32_t kMaximumTabWidth = 256;

/// Tab stops stand every `width` units, counted from the last line break. Encoding puts a tab for spaces
/// (U+0020) that reach a tab stop, when they are two or more; decoding puts spaces up to the next stop for each
/// tab, and is the reverse for text that had no tabs. Nothing changes when the width is 0 or above
/// `kMaximumTabWidth`.
void encodeTabs(NSMutableString &string, std::uint32_t width);
void decodeTabs(NSMutableString &string, std::uint32_t width);

/// A plain string has neither attachments nor links nor attributes: these change nothing.
void removeAttachments(NSMutableString &string);
void removeLinks(NSMutableString &string);
void removeAttribute(NSMutableString &string, const NSString &name);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
