// SPDX-License-Identifier: Apache-2.0
//
// Names for files made of any text, as NSMutableString+NSStringNimboPathExtensions.hpp does in place. The
// answer is the string itself when nothing changes; nil for nil. Any thread may call these.
//
//     stringByCreatingFilename(u"Either/Or"_ns);  // "Either-Or"
//     stringByTrimmingInvalidFilenameCharacters(u"../a."_ns);  // "a"
//     stringByCreatingFileSystemRepresentationByAppendingExtension(u"a"_ns, u"txt"_ns);  // "a.txt"
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboPathExtensions {

/// What `trimInvalidFilenameCharacters` makes of the string.
NSString stringByTrimmingInvalidFilenameCharacters(const NSString &string);
/// What `createFilename` makes of the string.
NSString stringByCreatingFilename(const NSString &string);
/// What `createFileSystemRepresentation` makes of the string.
NSString stringByCreatingFileSystemRepresentation(const NSString &string);
/// What `createFileSystemRepresentationAndAppendExtension` makes of the string.
NSString stringByCreatingFileSystemRepresentationByAppendingExtension(const NSString &string,
                                                                      const NSString &extension);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
