// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/Wildcard.hpp"

#include "platform/Foundation/NSStringCase.hpp"

namespace nimbo {
namespace {

/// Takes the first code point off, or a lone surrogate. The text must not be empty.
char32_t takeCharacter(std::u16string_view &text) {
  char32_t character = text[0];
  const bool isPair = text.size() > 1 && (text[0] & 0xfc00) == 0xd800 && (text[1] & 0xfc00) == 0xdc00;
  if (isPair) character = 0x10000 + ((character & 0x3ff) << 10) + (text[1] & 0x3ff);
  text.remove_prefix(isPair ? 2 : 1);
  return character;
}

/// Takes a character off that stands for itself, or for what follows when it is a "\".
char32_t takeLiteral(std::u16string_view &pattern) {
  const char32_t character = takeCharacter(pattern);
  return character == U'\\' && !pattern.empty() ? takeCharacter(pattern) : character;
}

/// Takes a set off whose "[" is gone, and tells whether it has the character. Nothing is taken off when the set
/// has no end; the answer is then whether the character is "[".
bool takeSet(std::u16string_view &pattern, char32_t character) {
  std::u16string_view rest = pattern;
  const bool isNegated = rest.starts_with(u'!') || rest.starts_with(u'^');
  if (isNegated) rest.remove_prefix(1);
  bool found = false;
  for (bool isFirst = true; !rest.empty(); isFirst = false) {
    if (rest[0] == u']' && !isFirst) {
      pattern = rest.substr(1);
      return found != isNegated;
    }
    const char32_t first = takeLiteral(rest);
    char32_t last = first;
    if (rest.size() > 1 && rest[0] == u'-' && rest[1] != u']') {
      rest.remove_prefix(1);
      last = takeLiteral(rest);
    }
    found = found || (first <= character && character <= last);
  }
  return character == U'[';
}

/// Takes one element that is no "*" off the pattern, which is not empty, and tells whether it matches.
bool takeMatching(std::u16string_view &pattern, char32_t character) {
  const char16_t unit = pattern[0];
  if (unit != u'?' && unit != u'[') return takeLiteral(pattern) == character;
  pattern.remove_prefix(1);
  return unit == u'?' || takeSet(pattern, character);
}

}  // namespace

Wildcard::Wildcard(const NSString &pattern) : pattern_(lowercaseString(pattern)) {}

bool Wildcard::matches(const NSString &name) const {
  if (!pattern_) return false;
  const NSString lowercaseName = lowercaseString(name);
  std::u16string_view pattern = pattern_.view(), rest = lowercaseName.view();
  // Behind the last "*", and where it may match one character more. Earlier ones need not be tried again.
  std::u16string_view patternBehindStar, restAtStar;
  bool hasStar = false;
  while (!rest.empty() || !pattern.empty()) {
    if (pattern.starts_with(u'*')) {
      pattern.remove_prefix(1);
      patternBehindStar = pattern;
      restAtStar = rest;
      hasStar = true;
    } else if (rest.empty() || pattern.empty() || !takeMatching(pattern, takeCharacter(rest))) {
      if (!hasStar || restAtStar.empty()) return false;
      takeCharacter(restAtStar);
      rest = restAtStar;
      pattern = patternBehindStar;
    }
  }
  return true;
}

}  // namespace nimbo
