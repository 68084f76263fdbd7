// SPDX-License-Identifier: Apache-2.0
//
// All of the group but what needs the content types of files, `NSString+NSStringNimboPathExtensions+Types.hpp`.
#pragma once

#include "Classes/NSString+NSStringNimboPathExtensions+Base64.hpp"
#include "Classes/NSString+NSStringNimboPathExtensions+Extensions.hpp"
#include "Classes/NSString+NSStringNimboPathExtensions+FileNames.hpp"
#include "Classes/NSString+NSStringNimboPathExtensions+NaturalOrder.hpp"
#include "Classes/NSString+NSStringNimboPathExtensions+Paths.hpp"
