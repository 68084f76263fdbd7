// SPDX-License-Identifier: Apache-2.0
//
// Edits of mutable strings, in place. Each function changes its first argument, which one thread may use at a
// time.
//
//     NSMutableString name(u"  my  file\n"_ns);
//     trimWhiteSpaces(name);
//     removeMultipleSpaces(name);
//     name.view();  // "my file"
#pragma once

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Editing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Normalizing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Removing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Replacing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Trimming.hpp"
