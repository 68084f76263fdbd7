// SPDX-License-Identifier: Apache-2.0
#include "tools/InputText.hpp"

#include "tools/InputFile.hpp"

namespace nimbo {

NSString textOfInput(const std::string &path) {
  return NSString::stringWithLossyUTF8String(readInput(path).view());
}

}  // namespace nimbo
