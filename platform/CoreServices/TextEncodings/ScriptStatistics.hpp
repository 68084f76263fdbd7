// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo {

/// How much of what stands beside Cyrillic letters is as in real text, from 0 to 1: pairs of letters that are
/// common in Slavic languages, in which no capital follows a small letter, and no letter of another script nor
/// any sign beyond ASCII. Less for text of capitals; 0 when there is too little to tell.
double shareOfCyrillicText(std::u16string_view text);

/// Whether the text is Thai: vowels and tones stand where they can stand, and are as frequent as they are.
bool isThaiText(std::u16string_view text);

/// Whether the text has only characters that there are, few controls and nearly all letters beyond Latin of one
/// script, or of those of East Asia. False when there are too few letters to tell.
bool isTextOfOneScript(std::u16string_view text);

}  // namespace nimbo
