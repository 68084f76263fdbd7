// SPDX-License-Identifier: Apache-2.0
// Prints which helper program a client of this process would start, or on standard error why there is none.
#include <iostream>

#include "clients/cpp/HelperProgram.hpp"

int main() {
  std::string message;
  const std::string found = nimbo::findHelperProgram(&message);
  (found.empty() ? std::cerr << message : std::cout << found) << "\n";
  return found.empty();
}
