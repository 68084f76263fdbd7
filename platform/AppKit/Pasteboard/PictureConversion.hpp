// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// A picture in another format, of the uniform type; a confined program makes it, which has the libraries that
/// it takes. Nil when it cannot be made in time; `*error` says why. Any thread may ask.
NSData convertedPicture(const NSData &picture, const NSString &type, NSError *error = nullptr);

}  // namespace nimbo::detail
