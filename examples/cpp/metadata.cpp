// SPDX-License-Identifier: Apache-2.0
//
// Prints what the helper knows of a file:  metadata FILE
// g++ -std=c++20 metadata.cpp $(pkg-config --cflags --libs nimbo-client)
#include <nimbo/client.hpp>
#include <nimbo/text.hpp>

#include <iostream>

int main(int count, char **arguments) {
  using namespace nimbo;
  if (count != 2) return 1;
  HelperClient helper;
  const auto answer = helper.metaDataForFile(NSString::stringWithFileSystemRepresentation(arguments[1]));
  if (answer.status != HelperClient::Status::answered) {
    std::cerr << (answer.message.empty() ? "no answer" : answer.message) << '\n';
    return 1;
  }
  for (const auto &[key, value] : answer.result.dictionary())
    if (value.string()) std::cout << key.UTF8String() << ": " << value.string().UTF8String() << '\n';
  return 0;
}
