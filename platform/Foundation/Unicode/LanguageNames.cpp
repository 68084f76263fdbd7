// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/LanguageNames.hpp"

#include <unicode/uloc.h>
#include <unicode/ures.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace nimbo::detail {
namespace {

void addOnce(std::string_view name, std::vector<NSString> &names) {
  NSString string = NSString::stringWithLossyUTF8String(name);
  if (std::ranges::find(names, string) == names.end()) names.push_back(std::move(string));
}

/// In both forms in which names of languages are written.
void addBothForms(std::string_view name, std::vector<NSString> &names) {
  for (const char separator : {'-', '_'}) {
    std::string form(name);
    std::ranges::replace_if(
        form, [](char c) { return c == '_' || c == '-'; }, separator);
    addOnce(form, names);
  }
}

/// The script that a modifier of the C library names, as in "sr_RS@latin"; empty for others.
std::string_view scriptOfModifier(std::string_view modifier) {
  constexpr std::pair<std::string_view, std::string_view> kScripts[] = {
      {"latin", "Latn"}, {"cyrillic", "Cyrl"}, {"devanagari", "Deva"}};
  for (const auto &[name, script] : kScripts)
    if (modifier == name) return script;
  return {};
}

/// The language with the script that is named, else with the one in which people of the locale write it, as
/// "zh_Hant". Empty when the language has one alone.
std::string languageAndScript(const std::string &locale, std::string_view namedScript) {
  std::array<char, ULOC_FULLNAME_CAPACITY> whole{}, language{}, script{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_addLikelySubtags(locale.c_str(), whole.data(), ULOC_FULLNAME_CAPACITY, &status);
  uloc_getLanguage(whole.data(), language.data(), ULOC_FULLNAME_CAPACITY, &status);
  uloc_getScript(whole.data(), script.data(), ULOC_FULLNAME_CAPACITY, &status);
  if (status != U_ZERO_ERROR || script[0] == '\0') return {};
  std::string name = std::string(language.data()) + '_';
  name += namedScript.empty() ? std::string_view(script.data()) : namedScript;
  // ICU has data of its own for a script that is one of several.
  ures_close(ures_open(nullptr, name.c_str(), &status));
  return status == U_ZERO_ERROR ? name : std::string();
}

}  // namespace

void addLocalizations(std::string_view locale, std::vector<NSString> &names) {
  if (locale.find('.') != locale.npos || locale == "C" || locale == "POSIX") return;
  addOnce(locale, names);
  const std::size_t modifier = std::min(locale.find('@'), locale.size());
  const std::string_view plain = locale.substr(0, modifier);
  const std::string_view script = scriptOfModifier(locale.substr(std::min(modifier + 1, locale.size())));
  if (modifier == locale.size()) addBothForms(plain, names);
  if (modifier == locale.size() || !script.empty())
    if (const std::string name = languageAndScript(std::string(plain), script); !name.empty())
      addBothForms(name, names);
  if (const std::size_t hyphen = plain.find('-'); hyphen != plain.npos) addOnce(plain.substr(0, hyphen), names);
}

}  // namespace nimbo::detail
