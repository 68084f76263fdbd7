// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSData.hpp"
#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo::detail {

/// The text of a sheet: by its byte order mark, the name of its encoding that came with it, its "@charset"
/// rule, as UTF-8, in the encoding of the page that refers to it, and if it is none of that as UTF-8 with
/// U+FFFD for what is none. Nil for nil alone.
NSString textOfSheet(const NSData &data, const NSString &textEncodingName, const NSString &pageEncodingName);

/// What a page says of its own encoding; nil when it says nothing.
NSString declaredEncodingName(const HTMLDocument &document);

}  // namespace nimbo::detail
