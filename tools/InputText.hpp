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
/// Raises `InputError` for bytes that are text in no encoding, as those of pictures. A page may have a few
/// zeros.
void checkIsText(const NSData &data, const std::string &name);
/// The text of an input that is text, read as by `readInput`. Raises `InputError`.
NSString textOfInput(const std::string &path, double patienceSeconds);

/// A page that is to be handed over in UTF-8: itself when it declares that, else with a declaration in front.
NSString pageDeclaringUTF8(const NSString &page);

}  // namespace nimbo
