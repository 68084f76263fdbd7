// SPDX-License-Identifier: Apache-2.0
//
// Strings read from files and written to them. Writing is atomic when asked for: the file appears whole or
// stays as it was; a device or a pipe is written to all the same. It answers false, and touches no file, when
// the encoding lacks a character of the string; false, too, when the file cannot be written. Who reads UTF-8
// takes a U+FEFF that the string begins with for a byte order mark. Any thread may read and write.
//
//     NSStringEncoding encoding;
//     const NSString text = stringWithContentsOfFile(path, 0, &encoding);
//     if (text) writeToFile(text, path, true, NSUTF8StringEncoding);
#pragma once

#include <cstdint>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// The text of a file. An encoding from -16 to 0 stands for "find out": the encoding is detected, and
/// `*usedEncoding` gets it; bytes that are no text are then read as UTF-16 behind a byte order mark, else as
/// UTF-8, else as Mac Roman. `*usedEncoding` is -1 for them and for text that is damaged, as UTF-8 may be,
/// which no encoding reads to the last byte. Any other encoding is used as given, and reported. Nil when the
/// file cannot be read or is not text in the encoding given; `usedEncoding` may be null.
NSString stringWithContentsOfFile(const NSString &path, NSStringEncoding encoding,
                                  NSStringEncoding *usedEncoding = nullptr);
/// As `stringWithContentsOfFile`.
inline NSString initWithContentsOfFile(const NSString &path, NSStringEncoding encoding,
                                       NSStringEncoding *usedEncoding = nullptr) {
  return stringWithContentsOfFile(path, encoding, usedEncoding);
}

/// Writes in the encoding.
bool writeToFile(const NSString &string, const NSString &path, Flag atomically, NSStringEncoding encoding);
/// Writes in `defaultEncoding`; `*usedEncoding`, which may be null, gets the encoding that was tried.
bool writeToFileUsingDefaultEncoding(const NSString &string, const NSString &path, Flag atomically,
                                     NSStringEncoding *usedEncoding = nullptr);
/// Writes in the encoding of the fewest bytes; `*usedEncoding`, which may be null, gets it.
bool writeToFileUsingSmallestEncoding(const NSString &string, const NSString &path, Flag atomically,
                                      NSStringEncoding *usedEncoding = nullptr);
/// Writes in the encoding that needs the least conversion; `*usedEncoding`, which may be null, gets it.
bool writeToFileUsingFastestEncoding(const NSString &string, const NSString &path, Flag atomically,
                                     NSStringEncoding *usedEncoding = nullptr);

/// The process's encoding for writing, at first UTF-8.
NSStringEncoding defaultEncoding();
/// Sets the process's encoding for writing. Not guarded: set it before there are other threads.
void setDefaultEncoding(NSStringEncoding encoding);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
