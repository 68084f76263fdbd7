// SPDX-License-Identifier: Apache-2.0
#include "Classes/WebKit/NSString+NimboWebKitAdditions.hpp"

#include "platform/Foundation/URLs/HostNames.hpp"

namespace nimbo {
inline namespace NimboWebKitAdditions {

NSString encodeHostName(const NSString &string) {
  const NSString encoded = ASCIIHostName(string);
  return encoded ? encoded : string;
}

NSString decodeHostName(const NSString &string) {
  const NSString decoded = UnicodeHostName(string);
  return decoded ? decoded : string;
}

}  // namespace NimboWebKitAdditions
}  // namespace nimbo
