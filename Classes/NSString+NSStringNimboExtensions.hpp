// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/NSString+NSStringNimboExtensions+Case.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Characters.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Comparing.hpp"
#include "Classes/NSString+NSStringNimboExtensions+ConfigurationText.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Content.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Creating.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Files.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Finding.hpp"
#include "Classes/NSString+NSStringNimboExtensions+LinesAndWords.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Normalizing.hpp"
#include "Classes/NSString+NSStringNimboExtensions+RawAccess.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Removing.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Replacing.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Trimming.hpp"
#include "Classes/NSString+NSStringNimboExtensions+Values.hpp"
