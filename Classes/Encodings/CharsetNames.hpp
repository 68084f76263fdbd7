// SPDX-License-Identifier: Apache-2.0
//
// What the names of character sets mean, however they are written. Any thread may ask.
//
//     charset2CFStringEncoding(u"latin1"_ns);           // kCFStringEncodingISOLatin1
//     charset2NSStringEncoding(u"'Shift-JIS' "_ns);     // NSShiftJISStringEncoding
//     charset2CFStringEncoding(u"no such name"_ns);     // kCFStringEncodingInvalidId
#pragma once

#include <string_view>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The encoding of a character set's name as pages, feeds and mail write it: in any case, with or without
/// hyphens, underscores, spaces, quotes and dots, misspelt in the usual ways. A number in the name counts
/// first ("cp1252", "iso8859-15"), then words. `kCFStringEncodingInvalidId` when the name is nil, shorter than
/// 3 units or unknown. The encoding need not be available.
CFStringEncoding charset2CFStringEncoding(const NSString &name);

/// The encoding of a Mac script by what follows "mac" or "x-mac-" in a name, in lower case and without
/// punctuation; Mac Roman when nothing does. `kCFStringEncodingInvalidId` when it is unknown.
CFStringEncoding macEncoding(std::u16string_view script);

/// As `charset2CFStringEncoding`, but a registered name means what it is registered for ("KOI8-U",
/// "windows-31j", "UTF-16BE"), unless that is UTF-7, and a name that stays unknown is looked up among those
/// that ICU knows ("TIS-620").
CFStringEncoding encodingOfCharset(const NSString &name);

/// As `charset2CFStringEncoding`, for an encoding that is available; else `kCFStringEncodingInvalidId`, which
/// is -1, and a line in the log, but for an empty name and some that pages give for "none".
NSStringEncoding charset2NSStringEncoding(const NSString &name);

}  // namespace nimbo
