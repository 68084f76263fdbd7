// SPDX-License-Identifier: Apache-2.0
//
// URLs as objects: made, taken apart, resolved, classified. None changes its argument; any thread may call
// them.
//
//     const NSURL page = URLWithNormalizedStringURL(u"www.example.org/a/b.html"_ns);
//     const NSURL link = URLRelativeTo(page, u"../c d.html#e"_ns, true);
//     link.absoluteString();  // "http://www.example.org/c%20d.html"
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
