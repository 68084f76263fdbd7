// SPDX-License-Identifier: Apache-2.0
//
// What files hold under the name of an encoding. Any thread may ask.
//
//     extendedEncoding(NSISOLatin1StringEncoding);  // NSWindowsCP1252StringEncoding
#pragma once

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The extended form of an encoding in which text that is said to be in it often is: the same codes and some of
/// a maker's more, as Windows-1252 of ISO Latin 1. `kCFStringEncodingInvalidId` when there is none.
NSStringEncoding extendedEncoding(NSStringEncoding encoding);

}  // namespace nimbo
