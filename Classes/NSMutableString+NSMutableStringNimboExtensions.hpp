// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/NSMutableString+NSMutableStringNimboExtensions+Editing.hpp"
#include "Classes/NSMutableString+NSMutableStringNimboExtensions+Normalizing.hpp"
#include "Classes/NSMutableString+NSMutableStringNimboExtensions+Removing.hpp"
#include "Classes/NSMutableString+NSMutableStringNimboExtensions+Replacing.hpp"
#include "Classes/NSMutableString+NSMutableStringNimboExtensions+Trimming.hpp"
