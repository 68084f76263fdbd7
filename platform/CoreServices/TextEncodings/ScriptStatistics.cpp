// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/ScriptStatistics.hpp"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

/// Fewer letters say nothing.
constexpr std::size_t kFewestLetters = 12;
/// Thai text has at least one mark above or below a consonant to so many of them, and at most one character
/// that stands wrong.
constexpr std::size_t kConsonantsPerThaiMark = 6, kConsonantsPerThaiMistake = 25;
/// Text of one script has at most one letter of others in so many.
constexpr std::size_t kLettersPerForeignLetter = 20;

/// Text of capitals is more often Hebrew in truth.
constexpr double kWorthOfCapitals = 0.93;

constexpr std::size_t kCyrillicLetters = 49;
/// For each letter from U+0430 to U+045F, and for U+0491, those that often follow it: the pairs that make up 93
/// % of those in prose of Russian, Ukrainian, Belarusian, Bulgarian, Serbian or Macedonian.
constexpr std::array<std::uint64_t, kCyrillicLetters> kCommonPairs = {
    0x04510c3e7feff, 0x000400c096d21, 0x002408c8b6d31, 0x0004020894901, 0x000400c0dfdf5, 0x00e0403cfffdf,
    0x0000028082131, 0x00040900cfd37, 0x00500c1f7ffbf, 0x0000000062800, 0x00240044f6925, 0x00040d80865e1,
    0x0004088084d27, 0x00040d80e6531, 0x04380c1c7bffe, 0x0004004494d21, 0x00040ad0e7165, 0x000409c4eed25,
    0x000403c0b6525, 0x0091042c7bcfc, 0x0004000004101, 0x0004000004000, 0x0004018400121, 0x0004028042521,
    0x0000008842521, 0x0000000004121, 0x0000002071894, 0x040008077bea6, 0x0000000426480, 0x0000000073c02,
    0x0000002c60000, 0x0400001453c3c, 0x0000000000000, 0x0000000002000, 0x0000000000020, 0x0000000000000,
    0x0000000040000, 0x0000000000000, 0x0008080c73e95, 0x0000000000000, 0x0000000080121, 0x0000000080021,
    0x0000000000021, 0x0000000000020, 0x0000000000020, 0x0000000000000, 0x0000000042c14, 0x0000000000000,
    0x0000000000000,
};

struct CyrillicLetter {
  std::size_t index;
  bool isCapital;
};

std::optional<CyrillicLetter> cyrillicLetter(unichar unit) {
  if (unit >= 0x430 && unit <= 0x45f) return CyrillicLetter{unit - 0x430u, false};
  if (unit >= 0x410 && unit <= 0x42f) return CyrillicLetter{unit - 0x410u, true};
  if (unit >= 0x400 && unit <= 0x40f) return CyrillicLetter{unit - 0x400u + 0x20u, true};
  if (unit == 0x490 || unit == 0x491) return CyrillicLetter{kCyrillicLetters - 1, unit == 0x490};
  return std::nullopt;
}

/// Whether this can stand beside a word in any encoding: where one has capitals, others have quotation marks
/// and dashes.
bool isSurelyBesideWord(unichar unit) {
  return unit == 0xa0 || (unit < 0x80 && !isASCIILetter(unit));
}

/// What may stand beside a word: ASCII but for letters, spaces, quotation marks, dashes and the like.
bool canBeBesideWord(unichar unit) {
  return isSurelyBesideWord(unit) || unit == 0xab || unit == 0xbb || (unit >= 0x2010 && unit <= 0x203a) ||
         unit == 0x2116;
}

/// What each character from U+0E01 on is: a consonant "c", a vowel that is written in front of its consonant
/// "l", behind it "v", or above or below it "m", the mark of a tone "t", a sign "s"; "x" when it is rare.
constexpr std::string_view kThaiKinds =
    "ccxcxcccccccccccccccccccccccccccccccccccccccccsvmvvmmmmmmmxxxxxlllllxsmttttttxxxxxxxxxxxxxx";

/// The kind of a Thai character; a space for any other.
char thaiKind(unichar unit) {
  const std::size_t index = unit - std::size_t{0x0e01};
  return index < kThaiKinds.size() ? kThaiKinds[index] : ' ';
}

/// Whether the one kind cannot stand behind the other.
bool isThaiMistake(char last, char kind) {
  if (last == 'l' && kind != 'c') return true;
  switch (kind) {
    case 'v':
      return last != 'c' && last != 't' && last != 'v';
    case 'm':
      return last != 'c';
    case 't':
      return last != 'c' && last != 'm';
    default:
      return kind == 'x';
  }
}

/// A script, or the one that stands for all of East Asia; none for what is used with any script, and for Latin.
UScriptCode groupOf(char32_t character) {
  UErrorCode status = U_ZERO_ERROR;
  const UScriptCode script = uscript_getScript(static_cast<UChar32>(character), &status);
  switch (script) {
    case USCRIPT_COMMON:
    case USCRIPT_INHERITED:
    case USCRIPT_LATIN:
      return USCRIPT_INVALID_CODE;
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_HANGUL:
    case USCRIPT_BOPOMOFO:
      return USCRIPT_HAN;
    default:
      return U_SUCCESS(status) ? script : USCRIPT_INVALID_CODE;
  }
}

}  // namespace

double shareOfCyrillicText(std::u16string_view text) {
  std::size_t letters = 0, capitals = 0, good = 0, bad = 0;
  std::optional<CyrillicLetter> last;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::optional<CyrillicLetter> letter = cyrillicLetter(text[i]);
    letters += letter.has_value();
    capitals += letter && letter->isCapital;
    if (last && letter) {
      const bool isCommon = kCommonPairs[last->index] >> letter->index & 1;
      ++(isCommon && (last->isCapital || !letter->isCapital) ? good : bad);
    } else if (letter || last) {
      const unichar other = letter ? (i > 0 ? text[i - 1] : u' ') : text[i];
      bad += !isSurelyBesideWord(other);
    }
    last = letter;
  }
  if (letters < kFewestLetters) return 0;
  const double share = static_cast<double>(good) / static_cast<double>(good + bad + 1);
  return 2 * capitals > letters ? share * kWorthOfCapitals : share;
}

bool isThaiText(std::u16string_view text) {
  std::size_t consonants = 0, marks = 0, mistakes = 0;
  char last = ' ';
  for (const unichar unit : text) {
    const char kind = thaiKind(unit);
    consonants += kind == 'c';
    marks += kind == 'm' || kind == 't';
    mistakes += isThaiMistake(last, kind) || (kind == ' ' && unit >= 0x80 && !canBeBesideWord(unit));
    last = kind;
  }
  return consonants >= kFewestLetters && marks * kConsonantsPerThaiMark >= consonants &&
         mistakes * kConsonantsPerThaiMistake <= consonants;
}

bool isTextOfOneScript(std::u16string_view text) {
  std::array<std::size_t, USCRIPT_CODE_LIMIT> counts{};
  std::size_t letters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = text[i];
    if (isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      character = characterOfSurrogates(text[i], text[i + 1]);
      ++i;
    }
    switch (u_charType(static_cast<UChar32>(character))) {
      case U_UNASSIGNED:
      case U_PRIVATE_USE_CHAR:
      case U_SURROGATE:
        return false;
      default:
        break;
    }
    const UScriptCode group = groupOf(character);
    if (group < 0 || group >= USCRIPT_CODE_LIMIT) continue;
    ++counts[static_cast<std::size_t>(group)];
    ++letters;
  }
  const std::size_t most = *std::ranges::max_element(counts);
  return letters >= kFewestLetters && (letters - most) * kLettersPerForeignLetter <= letters;
}

}  // namespace nimbo
