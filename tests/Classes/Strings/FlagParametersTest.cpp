// SPDX-License-Identifier: Apache-2.0
// Wrong calls of functions with flags do not compile; nothing here runs.
#include <type_traits>
#include <utility>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringTextFinding.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions.hpp"

namespace nimbo {
namespace {

static_assert(std::is_trivially_copyable_v<Flag> && sizeof(Flag) == sizeof(bool));
static_assert(Flag(true) && !Flag(false) && std::is_convertible_v<bool, Flag>);
static_assert(!std::is_convertible_v<int, Flag> && !std::is_convertible_v<std::uint32_t, Flag>);
static_assert(!std::is_convertible_v<const char *, Flag> && !std::is_convertible_v<NSString, Flag>);

#define OVERLOADS(function)                                                                        \
  [](auto &&...arguments) -> decltype(function(std::forward<decltype(arguments)>(arguments)...)) { \
    return function(std::forward<decltype(arguments)>(arguments)...);                              \
  }

/// Whether the function takes these arguments and a flag, for which no number stands.
template <class... Arguments, class Call>
constexpr bool endsWithFlag(Call) {
  return std::is_invocable_v<Call, Arguments..., bool> && !std::is_invocable_v<Call, Arguments..., int> &&
         !std::is_invocable_v<Call, Arguments..., std::uint32_t>;
}
static_assert(!endsWithFlag<>([](bool) {}));

using Count = std::uint32_t;

static_assert(endsWithFlag<NSString, unichar>(OVERLOADS(findCharacter)));
static_assert(endsWithFlag<NSString, unichar, Count>(OVERLOADS(findCharacter)));
static_assert(endsWithFlag<NSString, unichar>(OVERLOADS(containsCharacter)));
static_assert(endsWithFlag<NSString, unichar, Count>(OVERLOADS(containsCharacter)));
static_assert(endsWithFlag<NSString, unichar>(OVERLOADS(countCharacter)));
static_assert(endsWithFlag<NSString, unichar, Count>(OVERLOADS(countCharacter)));
static_assert(endsWithFlag<NSString, unichar>(OVERLOADS(findLastCharacter)));
static_assert(endsWithFlag<NSString, unichar, int>(OVERLOADS(findLastCharacter)));
static_assert(endsWithFlag<NSString, NSString>(OVERLOADS(findOneOf)));
static_assert(endsWithFlag<NSString, NSString, Count>(OVERLOADS(findOneOf)));
static_assert(endsWithFlag<NSString, NSString>(OVERLOADS(containsSubstring)));
static_assert(endsWithFlag<NSMutableString &, NSString, NSString>(OVERLOADS(replaceString)));
static_assert(endsWithFlag<NSString, NSRange>(OVERLOADS(stringByTrimmingSpacesInRange)));
static_assert(endsWithFlag<NSURL, NSString, NSDate>(OVERLOADS(directoryInPath)));

}  // namespace
}  // namespace nimbo
