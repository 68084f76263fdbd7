// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/CoreServices/CFStringEncoding.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// What text without a declaration is most likely in.
NSStringEncoding likelyEncoding(const NSData &data);

/// The text of a page or feed, or of standard input when `path` is "-", in the encoding that it declares, else
/// the likely one. Raises `InputError`, also when the input is empty or no text.
NSString markupOfInput(const std::string &path);

}  // namespace nimbo
