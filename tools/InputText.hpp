// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The text of a page or feed in the encoding that it declares or is most likely in; bytes that fit neither are
/// UTF-8 in which U+FFFD stands for what is not valid.
NSString textOfData(const NSData &data);
/// The same of an input, which is read as by `readInput`. Raises `InputError`.
NSString textOfInput(const std::string &path, double patienceSeconds);

}  // namespace nimbo
