// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Editing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Normalizing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Removing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Replacing.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Trimming.hpp"
