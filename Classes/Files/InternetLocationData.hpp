// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"

namespace nimbo {

/// The URL in the bytes of a location file, as it is written there but for white space around it: a property
/// list with a "URL", a shortcut, or a desktop entry of type Link. What the bytes begin with tells which it is,
/// so the file may have any name. Nil when they are none of these, or when the URL is empty or has control
/// characters; `*error` then says why. Any thread may read.
///
///     const NSString url = URLOfInternetLocationData(NSData::dataWithContentsOfFile(path));
NSString URLOfInternetLocationData(const NSData &data, NSError *error = nullptr);

/// The URL without the white space around it, nil unless it is one line of text.
NSString URLOfLocationText(std::u16string_view text);

}  // namespace nimbo
