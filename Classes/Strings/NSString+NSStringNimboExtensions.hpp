// SPDX-License-Identifier: Apache-2.0
//
// Functions on strings. None changes its argument; all but `setDefaultEncoding` may be called from any thread.
//
//     const NSString name = stringByTrimmingWhiteSpaces(u" Zoë \n"_ns);  // "Zoë"
//     const NSString key = lowercaseNonUmlautedString(name);  // "zoe"
//     const bool isFound = hasPrefixNoCase(name, u"zO"_ns);  // true
#pragma once

#include "Classes/Strings/NSString+NSStringNimboExtensions/Case.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/ConfigurationText.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Content.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Creating.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Files.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Finding.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/LinesAndWords.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Normalizing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/RawAccess.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Removing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Replacing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Trimming.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Values.hpp"
