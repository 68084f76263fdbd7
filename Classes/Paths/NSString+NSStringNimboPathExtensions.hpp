// SPDX-License-Identifier: Apache-2.0
//
// All of the group but what needs the content types of files, `NSString+NSStringNimboPathExtensions+Types.hpp`.
#pragma once

#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Base64.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Extensions.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/FileNames.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/NaturalOrder.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Paths.hpp"
