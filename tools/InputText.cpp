// SPDX-License-Identifier: Apache-2.0
#include "tools/InputText.hpp"

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "tools/InputFile.hpp"

namespace nimbo {

NSString textOfInput(const std::string &path, double patienceSeconds) {
  const NSData data = readInput(path, patienceSeconds);
  if (data.length() == 0) return NSString::string();
  const NSString text = decodeMarkup(data, 0, likelyEncoding(data)).string;
  return text ? text : NSString::stringWithLossyUTF8String(data.view());
}

}  // namespace nimbo
