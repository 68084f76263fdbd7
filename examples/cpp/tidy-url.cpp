// SPDX-License-Identifier: Apache-2.0
//
// Prints a URL as it should be, resolved against another one, without what tracks a visitor:
//     tidy-url URL [BASE]
//     g++ -std=c++20 tidy-url.cpp $(pkg-config --cflags --libs nimbo-text)
#include <nimbo/text.hpp>

#include <iostream>

int main(int count, char **arguments) {
  using namespace nimbo;
  if (count < 2) return 1;
  const NSString typed = NSString::stringWithUTF8String(arguments[1]);
  const NSURL base = count > 2 ? URLWithTypedString(NSString::stringWithUTF8String(arguments[2])) : NSURL();
  const NSURL url = base ? URLRelativeTo(typed, base) : URLWithTypedString(typed);
  if (!url) {
    std::cerr << "no URL: " << arguments[1] << '\n';
    return 1;
  }
  std::cout << simplifiedStringURL(url.absoluteString()).UTF8String() << '\n';
  return 0;
}
