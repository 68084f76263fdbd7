// SPDX-License-Identifier: Apache-2.0
// Reads a property list of any form from standard input and writes it to standard output in the form that the
// argument names, "xml" or "binary". For the comparison with another implementation.
#include <iostream>
#include <iterator>
#include <string>

#include "platform/Foundation/NSPropertyListSerialization.hpp"

int main(int argc, char **argv) {
  using namespace nimbo;
  const std::string input(std::istreambuf_iterator<char>(std::cin), {});
  NSError error;
  const id list = NSPropertyListSerialization::propertyListFromData(
      NSData::dataWithBytes(input.data(), input.size()), nullptr, &error);
  const bool xml = argc == 2 && std::string(argv[1]) == "xml";
  const NSData output = list ? NSPropertyListSerialization::dataWithPropertyList(
                                   list, xml ? NSPropertyListFormat::xml : NSPropertyListFormat::binary, &error)
                             : NSData();
  if (!output) {
    std::cerr << error.localizedFailureReason.UTF8String() << "\n";
    return 1;
  }
  std::cout.write(reinterpret_cast<const char *>(output.bytes()), output.length());
}
