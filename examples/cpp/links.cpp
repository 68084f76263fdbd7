// SPDX-License-Identifier: Apache-2.0
//
// Prints the links of a page:  links FILE
// g++ -std=c++20 links.cpp $(pkg-config --cflags --libs nimbo-text)
#include <nimbo/text.hpp>

#include <iostream>

int main(int count, char **arguments) {
  using namespace nimbo;
  if (count != 2) return 1;
  const NSString path = NSString::stringWithFileSystemRepresentation(arguments[1]);
  const DecodedMarkup page = decodeMarkup(NSData::dataWithContentsOfFile(path), 0, NSUTF8StringEncoding);
  scanTags(page.string, [](const TagShape &tag) {
    if (!tag.isStartTag() || !tag.isNamed("a")) return;
    const NSString link = NSString::stringWithCharacters(tag.attribute("HREF"));
    std::cout << stringByConvertingEntitiesToCharacters(link).UTF8String() << '\n';
  });
  return page.string ? 0 : 1;
}
