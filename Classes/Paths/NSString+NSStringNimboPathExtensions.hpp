// SPDX-License-Identifier: Apache-2.0
//
// All of the group but what needs the content types of files, `NSString+NSStringNimboPathExtensions+Types.hpp`.
// None changes its argument; any thread may call them.
//
//     stringByReplacingPathExtensionWith(u"/a/b.txt"_ns, u"html"_ns);  // "/a/b.html"
//     stringByDeletingFileComponent(u"/a/b.txt"_ns);  // "/a"
//     relativePathToDirectory(u"/a/b/c"_ns, u"/a/d"_ns);  // "../b/c"
#pragma once

#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Base64.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Extensions.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/FileNames.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/NaturalOrder.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Paths.hpp"
