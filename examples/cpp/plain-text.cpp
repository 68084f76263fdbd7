// SPDX-License-Identifier: Apache-2.0
//
// Prints the text of a page as a person would read it:  plain-text FILE
// g++ -std=c++20 plain-text.cpp $(pkg-config --cflags --libs nimbo-text)
#include <nimbo/text.hpp>

#include <iostream>

int main(int count, char **arguments) {
  using namespace nimbo;
  if (count != 2) return 1;
  const NSString path = NSString::stringWithFileSystemRepresentation(arguments[1]);
  const DecodedMarkup page = decodeMarkup(NSData::dataWithContentsOfFile(path), 0, NSUTF8StringEncoding);
  if (!page.string) return 1;
  std::cout << stringByConvertingHtml2PlainText(page.string).UTF8String() << '\n';
  return 0;
}
