// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/NSURL+NSURLNimboExtensions+Components.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+FileSystem.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+Links.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+Making.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+Relative.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+Schemes.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+Status.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+Strings.hpp"
#include "Classes/NSURL+NSURLNimboExtensions+Types.hpp"
