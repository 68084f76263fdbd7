// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {

/// Makes a bundle of an information file and a library, which is called "library.so" in it, at `name` in
/// `folder`, safe to load, and answers its path.
inline NSString writeCodeBundle(const TemporaryFolder &folder, const std::string &name,
                                const std::string &information, const std::filesystem::path &library) {
  folder.write(name + "/Contents/Info.plist", information);
  const std::filesystem::path bundle = folder.path() / name;
  const std::filesystem::path code = bundle / "Contents/Linux";
  std::filesystem::create_directory(code);
  std::filesystem::copy_file(library, code / "library.so");
  for (const auto &path :
       {bundle, bundle / "Contents", bundle / "Contents/Info.plist", code, code / "library.so"})
    std::filesystem::permissions(path, std::filesystem::perms(0755));
  return folder.string(name);
}

}  // namespace nimbo
