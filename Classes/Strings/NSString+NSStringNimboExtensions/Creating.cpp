// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Creating.hpp"

#include <cstring>

#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

NSString stringWithCharacter(unichar character) {
  return NSString::stringWithCharacters(&character, 1);
}

NSString stringWithCString(const char *bytes, std::uint32_t length, NSStringEncoding encoding) {
  return bytes ? stringWithData(NSData::dataWithBytes(bytes, length), encoding) : NSString();
}

NSString stringWithNullTerminatedCString(const char *bytes, NSStringEncoding encoding) {
  return bytes ? stringWithData(NSData::dataWithBytes(bytes, std::strlen(bytes)), encoding) : NSString();
}

NSString stringWithData(const NSData &data, NSStringEncoding encoding) {
  return initWithData(data, encoding);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
