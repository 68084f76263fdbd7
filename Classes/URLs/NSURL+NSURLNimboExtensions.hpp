// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/URLs/NSURL+NSURLNimboExtensions/Components.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/FileSystem.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Links.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Status.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Strings.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Types.hpp"
