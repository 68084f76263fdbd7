// SPDX-License-Identifier: Apache-2.0
//
// Makes a zip archive:  quiverleaf-archive -c -k --sequesterRsrc [--keepParent] SOURCE DESTINATION
//
// The options are those of a program that other systems have. All but the last have to be there, as nothing
// else is done here. The archive takes its place when it is whole; else there is a line on standard error, and
// what was there stays.
#include <malloc.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "children/Archive/ArchiveError.hpp"
#include "children/Archive/NewFile.hpp"
#include "children/Archive/TreeArchiver.hpp"
#include "children/Archive/ZipWriter.hpp"

namespace nimbo {

namespace {

struct Arguments {
  bool keepsParent = false;
  std::string source;
  std::string destination;
};

Arguments readArguments(const std::vector<std::string> &words) {
  constexpr std::string_view kParentOption = "--keepParent";
  const std::set<std::string_view> needed = {"-c", "-k", "--sequesterRsrc"};
  std::set<std::string_view> options;
  std::size_t next = 0;
  for (; next < words.size() && words[next].starts_with('-'); ++next) options.insert(words[next]);
  const bool keepsParent = options.erase(kParentOption) > 0;
  if (options != needed || words.size() - next != 2 || words[next].empty() || words[next + 1].empty())
    throw ArchiveError("usage: quiverleaf-archive -c -k --sequesterRsrc [--keepParent] SOURCE DESTINATION");
  return {keepsParent, words[next], words[next + 1]};
}

/// Each folder on the way to a file is open.
void allowOpenFolders() {
  struct rlimit limit = {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

/// Each entry takes and gives back the same few hundred kilobytes.
void keepFreedMemory() {
  constexpr int kKeptBytes = 8 << 20;
  ::mallopt(M_TRIM_THRESHOLD, kKeptBytes);
}

void makeArchive(const Arguments &arguments) {
  NewFile file(arguments.destination);
  ZipWriter zip(file.descriptor());
  TreeArchiver(zip, file).add(arguments.source, arguments.keepsParent);
  zip.close();
  file.moveIntoPlace();
}

}  // namespace

}  // namespace nimbo

int main(int argc, char **argv) {
  try {
    nimbo::allowOpenFolders();
    nimbo::keepFreedMemory();
    nimbo::makeArchive(nimbo::readArguments({argv + 1, argv + argc}));
    return EXIT_SUCCESS;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "quiverleaf-archive: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
