// SPDX-License-Identifier: Apache-2.0
#include "tools/MarkupInput.hpp"

#include "Classes/NSString+XmlExtensions+Encoding.hpp"
#include "platform/Foundation/NSStringEncodingDetection.hpp"
#include "tools/InputFile.hpp"

namespace nimbo {

NSStringEncoding likelyEncoding(const NSData &data) {
  const DetectedString detected = stringWithDetectedEncoding(data.view());
  if (!detected.encodingName) return NSUTF8StringEncoding;
  return CFStringConvertEncodingToNSStringEncoding(
      CFStringConvertIANACharSetNameToEncoding(detected.encodingName));
}

NSString markupOfInput(const std::string &path) {
  const NSData data = readInput(path);
  if (data.length() == 0) throw InputError(nameOfInput(path), "is empty");
  NSString markup = stringWithMarkupData(data, likelyEncoding(data));
  if (!markup) throw InputError(nameOfInput(path), "is no text in any encoding that is declared or likely");
  return markup;
}

}  // namespace nimbo
