// SPDX-License-Identifier: Apache-2.0
//
// Mappings of one code unit by Unicode's data, as ICU has it, and no language's rules. Where the full mapping
// has not exactly one unit, each answers the unit itself. They are slow: make a table of them. Any thread may
// call them.
//
//     uppercaseUnichar(u'é');  // u'É'
//     unicharByFoldingDiacritics(u'é');  // u'e'
//     isTitlecaseUnichar(u'\u01c5');  // true
#pragma once

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The unit in upper case.
unichar uppercaseUnichar(unichar c);
/// The unit in lower case.
unichar lowercaseUnichar(unichar c);
/// Whether the unit is one of the titlecase letters, which have both an uppercase and a lowercase form, as
/// U+01C5.
bool isTitlecaseUnichar(unichar c);
/// The canonical decomposition without its combining marks: U+00E9 gives "e".
unichar unicharByFoldingDiacritics(unichar c);

}  // namespace nimbo
