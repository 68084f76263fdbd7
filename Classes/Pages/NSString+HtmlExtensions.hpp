// SPDX-License-Identifier: Apache-2.0
//
// All functions on pages as strings: entities, facts, links, stripping, URLs. Any thread may call them.
//
//     const NSString text = stringByConvertingEntitiesToCharacters(stripTags(u"<p>Q&amp;A</p>"_ns));
//     text;  // " Q&A"
//     normalizedStringURL(u" <page.html> "_ns);  // "page.html"
#pragma once

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Pages/NSString+HtmlExtensions+PageFacts.hpp"
#include "Classes/Pages/NSString+HtmlExtensions+PageLinks.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
