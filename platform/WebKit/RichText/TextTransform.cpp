// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/TextTransform.hpp"

#include "platform/Foundation/NSCharacterSet.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

bool isInWord(unichar c) {
  if (c < 0x80) return isASCIIAlphanumeric(c);
  // Marks and letters beyond the first plane go on with a word.
  static const NSCharacterSet alphanumeric = NSCharacterSet::alphanumericCharacterSet();
  return alphanumeric.characterIsMember(c) || (c >= 0xd800 && c < 0xe000) || c == 0x200d;
}

bool isApostrophe(unichar c) {
  return c == u'\'' || c == 0x2019;
}

/// How many units the first character has.
std::size_t firstCharacterLength(std::u16string_view text) {
  return text.size() > 1 && (text[0] & 0xfc00) == 0xd800 && (text[1] & 0xfc00) == 0xdc00 ? 2 : 1;
}

std::u16string capitalized(std::u16string_view text, const std::string &language, unichar before) {
  std::u16string result;
  result.reserve(text.size());
  const bool hasDottedI = language.starts_with("tr") || language.starts_with("az");
  for (std::size_t i = 0; i < text.size();) {
    const bool beginsWord = isInWord(text[i]) && !isInWord(before);
    const std::size_t length = firstCharacterLength(text.substr(i));
    if (beginsWord && isASCIILetter(text[i]) && !(hasDottedI && text[i] == u'i')) {
      result += toASCIIUpper(text[i]);
    } else if (beginsWord) {
      NSMutableString letter;
      letter.append(text.substr(i, length));
      CFStringCapitalize(letter, language.c_str());
      result += letter.view();
    } else {
      result += text.substr(i, length);
    }
    // An apostrophe in a word goes on with it.
    if (!isApostrophe(text[i]) || !isInWord(before)) before = text[i + length - 1];
    i += length;
  }
  return result;
}

}  // namespace

std::u16string transformedText(std::u16string_view text, CSSKeyword transform, std::u16string_view language,
                               unichar before) {
  std::string asciiLanguage;
  for (const unichar c : language) asciiLanguage += c < 0x80 ? static_cast<char>(c) : '_';
  if (transform == CSSKeyword::kCapitalize) return capitalized(text, asciiLanguage, before);
  NSMutableString mapped;
  mapped.append(text);
  if (transform == CSSKeyword::kUppercase) CFStringUppercase(mapped, asciiLanguage.c_str());
  if (transform == CSSKeyword::kLowercase) CFStringLowercase(mapped, asciiLanguage.c_str());
  return std::u16string(mapped.view());
}

}  // namespace nimbo::detail
