// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Mappings of one code unit by Unicode's data and no language's rules. Where the full mapping has not exactly
/// one unit, each answers the unit itself. They are slow; `Classes/Characters/CharacterTables.hpp` has tables
/// of them.

unichar uppercaseUnichar(unichar c);
unichar lowercaseUnichar(unichar c);
/// The titlecase letters, which have both an uppercase and a lowercase form, as U+01C5.
bool isTitlecaseUnichar(unichar c);
/// The canonical decomposition without its combining marks: U+00E9 gives "e".
unichar unicharByFoldingDiacritics(unichar c);

}  // namespace nimbo
