// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Base64.hpp"

#include "Classes/Characters/AnswerOr.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/NSDataBase64.hpp"

namespace nimbo {
inline namespace NSStringNimboPathExtensions {

NSString encodebase64(const NSString &string) {
  return answerOr(NSString(), [&] {
    if (!string) return string;
    const std::string bytes = string.UTF8String();
    return base64EncodedString(NSData::dataWithBytes(bytes.data(), bytes.size()));
  });
}

NSString decodebase64(const NSString &string) {
  return decodebase64UsingEncoding(string, NSUTF8StringEncoding);
}

NSString decodebase64UsingEncoding(const NSString &string, NSStringEncoding encoding) {
  return answerOr(NSString(), [&] { return initWithData(dataWithBase64EncodedString(string), encoding); });
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
