// SPDX-License-Identifier: Apache-2.0
//
// MIME types and path extensions, by the system's database of MIME types. Any thread may ask.
//
//     MIMETypeForExtension(u"JPG"_ns);  // "image/jpeg"
//     extensionForMIMEType(u"image/jpeg"_ns);  // "jpg"
//     if (!MIMETypeForExtension(extension)) NSLog(u"%@ files are of no known type", extension);
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace MIMETypeExtensions {

/// The MIME type of files with this extension, in either case. What the database does not know goes by whether
/// it is PDF, a picture, sound or a movie, as "image/xyz". Nil for all other ones.
NSString MIMETypeForExtension(const NSString &extension);

/// The usual extension of files of this MIME type, by the database; nil when it knows none.
NSString extensionForMIMEType(const NSString &MIMEType);

}  // namespace MIMETypeExtensions
}  // namespace nimbo
