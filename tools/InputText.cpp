// SPDX-License-Identifier: Apache-2.0
#include "tools/InputText.hpp"

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "tools/InputFile.hpp"

namespace nimbo {

NSString textOfData(const NSData &data) {
  if (data.length() == 0) return NSString::string();
  const NSString text = decodeMarkup(data, 0).string;
  return text ? text : NSString::stringWithLossyUTF8String(data.view());
}

NSString textOfInput(const std::string &path, double patienceSeconds) {
  return textOfData(readInput(path, patienceSeconds));
}

}  // namespace nimbo
