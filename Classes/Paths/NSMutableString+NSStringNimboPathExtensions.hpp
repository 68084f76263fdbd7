// SPDX-License-Identifier: Apache-2.0
//
// Names for files made of any text, in place. One thread changes a string at a time.
//
//     NSMutableString name(u"Either/Or: notes."_ns);
//     createFilename(name);
//     createFileSystemRepresentationAndAppendExtension(name, u"txt"_ns);
//     name.view();  // "Either-Or- notes.txt"
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The most bytes that the name of a file may have.
inline constexpr std::uint32_t kMaximumFileNameBytes = 255;

inline namespace NSStringNimboPathExtensions {

/// Removes every ".", "/", "~" and ":" at both ends.
void trimInvalidFilenameCharacters(NSMutableString &string);

/// Makes a name for a file of any text: in NFC, without the invalid characters at its ends, "-" instead of each
/// "/", ":" and "~" inside. It may be empty or too long.
void createFilename(NSMutableString &string);

/// Cuts the string so that it is a name of at most `kMaximumFileNameBytes` bytes for the file system; nothing
/// that no name can hold is left, so that it ends before U+0000 and before a lone surrogate that stands for no
/// byte. Characters as people see them are kept whole or go whole, a letter with its marks for one; only the
/// first one is cut, between its code points, when it is longer than a name by itself.
void createFileSystemRepresentation(NSMutableString &string);
/// As `createFileSystemRepresentation`, with another limit.
void createFileSystemRepresentationWithinBytes(NSMutableString &string, std::uint32_t maximumBytes);

/// As `createFileSystemRepresentation`, with a full stop and `extension` at the end: the string is cut to what
/// leaves room for them, then they are appended unless it ends with them. With a nil or empty extension, and
/// with one that leaves no room for a name of one byte or that no name can hold, just as above.
void createFileSystemRepresentationAndAppendExtension(NSMutableString &string, const NSString &extension);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
