// SPDX-License-Identifier: Apache-2.0
//
// URLs as strings: escapes, kinds, queries, shorter forms. None changes its argument; any thread may call them.
//
//     const NSString link = u"http://example.org:80/a?utm_source=x&id=1"_ns;
//     simplifiedStringURL(link);  // "http://example.org/a?id=1"
//     queryParamNamed(link, u"utm_source"_ns);  // "x"
#pragma once

#include "Classes/URLs/NSString+URLUtilities/Escaping.hpp"
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"
#include "Classes/URLs/NSString+URLUtilities/Query.hpp"
#include "Classes/URLs/NSString+URLUtilities/Simplifying.hpp"
