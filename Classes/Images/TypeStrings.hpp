// SPDX-License-Identifier: Apache-2.0
//
// Path extensions of what names a type otherwise, from Classes/Images/TypeStrings.tsv. Any thread may ask.
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The path extension of the files of a type code, which stands between apostrophes: exactly this one. Nil when
/// it is not known.
NSString pathExtensionForTypeCode(const NSString &code);

/// The path extension of the files of a MIME type by its subtype, of which a part is enough, in either case.
/// Nil when no part of it is known.
NSString pathExtensionForMIMESubtype(const NSString &subtype);

/// The path extension of the files of a uniform type identifier; nil when it is not known.
NSString pathExtensionForUniformType(const NSString &identifier);

}  // namespace nimbo
