// SPDX-License-Identifier: Apache-2.0
//
// One call on a folder, so that the whole process can be timed against the system's tools:
//
//   bench-folder size FOLDER    what directorySize answers
//   bench-folder count FOLDER   how many paths the deep listing has
//   bench-folder list FOLDER    the deep listing, a line a path
#include <cstdio>
#include <string>
#include <string_view>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/DirectorySize.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"

int main(int argc, char **argv) {
  using namespace nimbo;
  if (argc != 3) return std::fputs("usage: bench-folder size|count|list FOLDER\n", stderr), 1;
  const std::string_view task = argv[1];
  const NSString folder = NSString::stringWithFileSystemRepresentation(argv[2]);
  if (task == "size") return std::printf("%llu\n", static_cast<unsigned long long>(directorySize(folder))) < 0;
  const auto paths = deepDirectoryContentsAtPath(folder, false);
  if (task == "count") return std::printf("%zu\n", paths.size()) < 0;
  for (const NSString &path : paths) {
    const std::string line = *path.fileSystemRepresentation() + '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
  }
  return std::fflush(stdout) != 0;
}
