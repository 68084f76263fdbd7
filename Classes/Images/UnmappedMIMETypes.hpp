// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The MIME type of an extension that no database knows, by the kind of its files: PDF and PostScript,
/// pictures, sound, movies. Nil for other ones.
NSString MIMETypeForUnmappedExtension(const NSString &extension);

}  // namespace nimbo
