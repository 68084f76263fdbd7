// SPDX-License-Identifier: Apache-2.0
#include "tools/InputText.hpp"

#include <string_view>
#include <utility>

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "tools/InputFile.hpp"

namespace nimbo {

NSString textOfData(const NSData &data) {
  if (data.length() == 0) return NSString::string();
  const NSString text = decodeMarkup(data, 0).string;
  return text ? text : NSString::stringWithLossyUTF8String(data.view());
}

void checkIsText(const NSData &data, const std::string &name) {
  if (data.view().find('\0') != std::string_view::npos && !decodeMarkup(data, 0).string)
    throw InputError(name, "the file holds no text");
}

NSString textOfInput(const std::string &path, double patienceSeconds) {
  const NSData data = readInput(path, patienceSeconds);
  checkIsText(data, nameOfInput(path));
  return textOfData(data);
}

NSString pageDeclaringUTF8(const NSString &page) {
  if (markupEncoding(page) == NSUTF8StringEncoding) return page;
  NSMutableString declared(u"<meta http-equiv=\"content-type\" content=\"text/html; charset=utf-8\">"_ns);
  declared.appendString(page);
  return std::move(declared).string();
}

}  // namespace nimbo
