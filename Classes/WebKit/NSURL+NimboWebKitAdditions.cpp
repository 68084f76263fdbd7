// SPDX-License-Identifier: Apache-2.0
#include "Classes/WebKit/NSURL+NimboWebKitAdditions.hpp"

#include "Classes/URLs/TypedURLs.hpp"

namespace nimbo {
inline namespace NimboWebKitAdditions {

NSURL URLWithUserTypedString(const NSString &string) {
  return URLWithTypedString(string);
}

}  // namespace NimboWebKitAdditions
}  // namespace nimbo
