// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLQuery.hpp"

#include <string_view>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/UnicharKernels.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

/// Calls `visit(name, value)` for each parameter from `start` on, until it answers true.
template <class Visit>
void walkQuery(const NSString &string, std::uint32_t start, Visit visit) {
  const detail::UnicharChoice equals = detail::UnicharChoice::only(u'=');
  const detail::UnicharChoice separators = {2, {u'&', u';', u'&', u'&'}};
  const CharacterSetRep *const alphaNum = alphaNumCharacterSetRep();
  const std::u16string_view units = string.view();
  for (std::size_t at = start; at < units.size();) {
    while (at < units.size() && !alphaNum->contains(units[at])) ++at;
    const std::size_t equal = at + detail::findOneOfChoice(units.data() + at, units.size() - at, equals);
    if (equal == units.size()) return;
    const std::size_t value = equal + 1;
    const std::size_t end =
        value + detail::findOneOfChoice(units.data() + value, units.size() - value, separators);
    if (visit(units.substr(at, equal - at), units.substr(value, end - value))) return;
    at = end + 1;
  }
}

/// Whether a parameter of this name can be in the string at all.
bool canContain(const NSString &string, const NSString &name) {
  return name.length() > 0 && name.length() < string.length();
}

}  // namespace

NSDictionary queryParams(const NSString &string, std::uint32_t startIndex) {
  if (startIndex >= string.length()) return {};
  return answerOr(NSDictionary(), [&] {
    NSDictionary params = NSDictionary::dictionary();
    walkQuery(string, startIndex, [&](std::u16string_view name, std::u16string_view value) {
      if (!value.empty())
        params.setObject(NSString::stringWithCharacters(value), NSString::stringWithCharacters(name));
      return false;
    });
    return params;
  });
}

std::uint32_t numberOfQueryParams(const NSString &string, std::uint32_t startIndex) {
  std::uint32_t count = 0;
  walkQuery(string, startIndex, [&](std::u16string_view, std::u16string_view) {
    ++count;
    return false;
  });
  return count;
}

NSString queryParamNamed(const NSString &string, const NSString &name, std::uint32_t startIndex) {
  NSString found;
  if (!canContain(string, name)) return found;
  walkQuery(string, startIndex, [&](std::u16string_view other, std::u16string_view value) {
    if (other != name.view() || value.empty()) return false;
    found = answerOr(NSString(), [&] { return NSString::stringWithCharacters(value); });
    return true;
  });
  return found;
}

bool containsQueryParamNamed(const NSString &string, const NSString &name, std::uint32_t startIndex) {
  bool found = false;
  if (!canContain(string, name)) return found;
  walkQuery(string, startIndex,
            [&](std::u16string_view other, std::u16string_view) { return found = other == name.view(); });
  return found;
}

}  // namespace nimbo
