// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+URLUtilities/Query.hpp"

#include "Classes/Strings/NSString+NSStringNimboExtensions/Finding.hpp"
#include "Classes/URLs/URLQuery.hpp"

namespace nimbo {
inline namespace URLUtilities {

NSDictionary queryParams(const NSString &string) {
  const std::uint32_t start = findCharacter(string, u'?');
  return start == NSNotFound ? NSDictionary() : nimbo::queryParams(string, start);
}

std::uint32_t numberOfQueryParams(const NSString &string) {
  const std::uint32_t start = findCharacter(string, u'?');
  return start == NSNotFound ? 0 : nimbo::numberOfQueryParams(string, start);
}

NSString queryParamNamed(const NSString &string, const NSString &name) {
  const std::uint32_t start = findCharacter(string, u'?');
  return start == NSNotFound ? NSString() : nimbo::queryParamNamed(string, name, start);
}

bool containsQueryParamNamed(const NSString &string, const NSString &name) {
  const std::uint32_t start = findCharacter(string, u'?');
  return start != NSNotFound && nimbo::containsQueryParamNamed(string, name, start);
}

NSString paramNamed(const NSString &string, const NSString &name) {
  return nimbo::queryParamNamed(string, name, 0);
}

bool containsParamNamed(const NSString &string, const NSString &name) {
  return nimbo::containsQueryParamNamed(string, name, 0);
}

}  // namespace URLUtilities
}  // namespace nimbo
