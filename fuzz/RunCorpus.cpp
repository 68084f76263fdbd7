// SPDX-License-Identifier: Apache-2.0
// Stands in for the fuzzing engine: feeds every file of the folders named to the fuzz target, once.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size);

int main(int argc, char **argv) {
  int inputs = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream file(entry.path(), std::ios::binary);
      const std::string content(std::istreambuf_iterator<char>(file), {});
      std::cout << entry.path().filename() << std::endl;
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(content.data()), content.size());
      ++inputs;
    }
  }
  return inputs > 0 ? 0 : 1;
}
