// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A page's text, and the encoding in which its bytes were read; nil and `kCFStringEncodingInvalidId` when
/// they could not be.
struct DecodedMarkup {
  /// The text, without a byte order mark.
  NSString string;
  /// The encoding of the bytes.
  NSStringEncoding encoding = kCFStringEncodingInvalidId;
};

/// What text is most likely in that declares nothing; UTF-8 for what is no text. It is a good default for
/// `decodeMarkup`.
NSStringEncoding likelyEncoding(const NSData &data);

/// Reads the bytes of a page or feed. `supplied` is the encoding that came with it, as in a header of HTTP: 0
/// or `kCFStringEncodingInvalidId` when none did, and then `defaultEncoding` is tried at first.
///
/// - The bytes are read in the supplied or default encoding, and again in the one that this text declares
///   (`markupEncoding`). The second reading counts, unless it is worse and the encoding was supplied: it has
///   more U+FFFD (codes that mean nothing), or it takes each byte of what is good UTF-8 for a character.
/// - Where no first reading is possible, the declaration is looked for in the bytes as ISO Latin 1. That of
///   UTF-16 is no use in any text of single bytes, nor is that of another encoding in UTF-16.
/// - Where UTF-8, UTF-16 or UTF-32 is tried, a byte order mark says which of them it is, if the bytes behind it
///   are possible in that; it is no part of the text. To any other encoding it is no mark.
/// - Text declared as Windows Cyrillic or Big5 that cannot be read so is Windows Latin 2 (but not if UTF-8 was
///   supplied) or Big5-HKSCS instead. For Shift JIS and EUC-CN their relatives are tried, also where some codes
///   mean nothing; the first one in which all have a meaning is taken.
/// - A reading that obeyed a byte order mark is final.
/// - The last resort is the supplied, then the default encoding, without anything amiss.
///
/// Text that is read as ISO Latin 1 or 5, ISO Latin Thai, Shift JIS, EUC-CN or Big5 is read as the extended
/// form of it (Windows-1252, 1254 or 874, Windows-31J, GBK, Big5-HKSCS: `extendedEncoding`) if fewer codes are
/// then without a meaning or upper controls.
///
/// UTF-8 may be damaged: what is not valid becomes U+FFFD, if more characters beyond ASCII are whole than not.
/// Nil when there are no bytes, or no encoding fits. Any thread may call it.
///
///     const NSStringEncoding supplied = headerEncoding(contentType);
///     const DecodedMarkup page = decodeMarkup(body, supplied, NSWindowsCP1252StringEncoding);
///     if (page.string) index(page.string);
DecodedMarkup decodeMarkup(const NSData &data, NSStringEncoding supplied, NSStringEncoding defaultEncoding);

/// As above with `likelyEncoding` for the default, which is not looked for when what is supplied or declared is
/// good. Besides, a declared name is read as `encodingOfCharset` does, and what was found out counts more than
/// a declaration that leaves codes without a meaning, if it is Unicode or an encoding of many bytes a
/// character. Text that is said to be in one of those may be damaged as UTF-8 may, with ten whole characters
/// for each damage at least.
DecodedMarkup decodeMarkup(const NSData &data, NSStringEncoding supplied);

}  // namespace nimbo
