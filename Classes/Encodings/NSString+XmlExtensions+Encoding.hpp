// SPDX-License-Identifier: Apache-2.0
//
// The encodings of pages and feeds. None changes its first argument; any thread may call these.
//
//     const NSString page = stringWithMarkupContentsOfFile(path, NSWindowsCP1252StringEncoding);
//     const NSString charset = markupCharset(page);
//     const NSData bytes = markupData(page);  // In that character set again.
#pragma once

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace XmlExtensions {

/// The encoding of a character set's name, as `charset2CFStringEncoding` finds it.
CFStringEncoding CFEncodingFromName(const NSString &name);
/// The encoding of a character set's name, as `charset2NSStringEncoding` finds it.
NSStringEncoding NSEncodingFromName(const NSString &name);

/// The name of the character set that a page declares for itself, in an XML declaration or a meta tag in front
/// of its body. Empty when there is none.
NSString markupCharset(const NSString &markup);
/// The encoding of `markupCharset`; `kCFStringEncodingInvalidId` when there is none, or no available one.
NSStringEncoding markupEncoding(const NSString &markup);
/// The encoding of the character set in a content type, "text/html; charset=utf-8";
/// `kCFStringEncodingInvalidId` when it names none, or no available one.
NSStringEncoding headerEncoding(const NSString &contentType);

/// The text of a page's or feed's bytes; `decodeMarkup` says how the encoding is found. `encodingName` is the
/// name that came with the bytes, nil or unknown when none did. `URL` says where they came from and changes
/// nothing. Nil when there are no bytes or no encoding fits.
NSString stringWithMarkupData(const NSData &data, const NSString &encodingName,
                              NSStringEncoding defaultEncoding, const NSString &URL);
/// The text of the bytes that came with a content type, which may name their encoding.
NSString stringWithMarkupData(const NSData &data, const NSString &contentType,
                              NSStringEncoding defaultEncoding);
/// The text of bytes that came without a name of their encoding.
NSString stringWithMarkupData(const NSData &data, NSStringEncoding defaultEncoding);

/// The text of a file's bytes. A binary property list is not markup but may hold some: the answer is its string
/// when it is one, or the text of the page when it is a web archive, else nil. Nil also when the file cannot be
/// read.
NSString stringWithMarkupContentsOfFile(const NSString &path, NSStringEncoding defaultEncoding);

/// The bytes of a page in the encoding that it declares, or in its extended form; in UTF-8 when it declares
/// none that is available, or one that lacks some of its characters. A lone surrogate then becomes U+FFFD.
/// `*usedEncoding` gets the encoding. Nil, and `kCFStringEncodingInvalidId`, for nil.
NSData markupData(const NSString &markup, NSStringEncoding *usedEncoding = nullptr);

}  // namespace XmlExtensions
}  // namespace nimbo
