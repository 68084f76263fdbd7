// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Creating.hpp"

#include <cstring>

#include "Classes/Characters/AnswerOr.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

NSString stringWithCharacter(unichar character) {
  return answerOr(NSString(), [=] { return NSString::stringWithCharacters(&character, 1); });
}

NSString stringWithCString(const char *bytes, std::uint32_t length, NSStringEncoding encoding) {
  if (!bytes) return NSString();
  return answerOr(NSString(), [=] { return initWithData(NSData::dataWithBytes(bytes, length), encoding); });
}

NSString stringWithNullTerminatedCString(const char *bytes, NSStringEncoding encoding) {
  if (!bytes) return NSString();
  return answerOr(NSString(),
                  [=] { return initWithData(NSData::dataWithBytes(bytes, std::strlen(bytes)), encoding); });
}

NSString stringWithData(const NSData &data, NSStringEncoding encoding) {
  return answerOr(NSString(), [&] { return initWithData(data, encoding); });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
