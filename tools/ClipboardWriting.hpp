// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace nimbo {

// What follows replaces what the clipboard holds, within these seconds, and raises `InputError` when that
// cannot be done.

/// Offers a text.
void copyText(const NSString &text, double seconds);
/// Offers a URL, with a title in the types of browsers; without one (nil) as URL and text.
void copyURL(const NSURL &url, const NSString &title, double seconds);
/// Offers a picture in its two types.
void copyPicture(const NSData &tiff, const NSData &png, double seconds);
/// Offers rich text as RTF, with attachments as RTFD, too, and as plain text. `rtf` is the text as its file has
/// it; nil to write it anew.
void copyRichText(const NSAttributedString &text, const NSData &rtf, double seconds);
/// Offers a page as its source, as the rich text that it becomes, and as plain text.
void copyPage(const NSString &page, const NSAttributedString &text, double seconds);

}  // namespace nimbo
