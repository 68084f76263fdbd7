// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboPathExtensions {

// What the functions of `NSMutableString+NSStringNimboPathExtensions.hpp` do in place; the string itself when
// that changes nothing. Nil for nil.

NSString stringByTrimmingInvalidFilenameCharacters(const NSString &string);
NSString stringByCreatingFilename(const NSString &string);
NSString stringByCreatingFileSystemRepresentation(const NSString &string);
NSString stringByCreatingFileSystemRepresentationByAppendingExtension(const NSString &string,
                                                                      const NSString &extension);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
