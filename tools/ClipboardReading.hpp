// SPDX-License-Identifier: Apache-2.0
//
// What the clipboard holds, converted to what is asked for, within these seconds. Each raises `InputError` when
// there is nothing that can be converted.
#pragma once

#include <string_view>

#include "clients/cpp/HelperClient.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The names of its types, in the order of who wrote it.
NSArray clipboardTypes(double seconds);

/// Its text: plain, else a table, else what a person reads of a page or of rich text, else a URL.
NSString clipboardText(double seconds);
/// Its page: the source, else one of rich text, of a URL with its name, or of plain text.
NSString clipboardPage(double seconds);
/// Its picture as a PNG file.
NSData clipboardPicture(double seconds);

/// Its rich text as RTFD data: with attachments or without, else of a page, of which the helper makes it, of a
/// URL with its name, of plain text or of a picture.
HelperClient::Answer clipboardRichText(HelperClient &client, double seconds);

}  // namespace nimbo
