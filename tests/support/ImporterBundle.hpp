// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "tests/support/CodeBundle.hpp"

namespace nimbo {

/// A bundle around one of the test plug-ins.
struct ImporterBundle {
  std::vector<std::string> contentTypes;
  /// The library, and the functions in it that its factories are.
  std::filesystem::path library;
  std::vector<std::string> factories;
  std::string dynamicRegistration = "<false/>";
  std::string executable = "library.so";

  /// Makes it at `name` in `folder`, safe to load, and answers its path.
  NSString writeTo(const TemporaryFolder &folder, const std::string &name) const {
    std::string named, functions, types;
    for (std::size_t i = 0; i < factories.size(); ++i) {
      const std::string uuid = "0a0b0c0d-0000-4000-8000-00000000000" + std::to_string(i);
      named += "<string>" + uuid + "</string>";
      functions += "<key>" + uuid + "</key><string>" + factories[i] + "</string>";
    }
    for (const std::string &type : contentTypes) types += "<string>" + type + "</string>";
    const auto documentType = [](const std::string &role, const std::string &of) {
      return "<dict><key>CFBundleTypeRole</key><string>" + role +
             "</string><key>LSItemContentTypes</key><array>" + of + "</array></dict>";
    };
    const std::string information =
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>" +
        executable + "</string><key>CFPlugInDynamicRegistration</key>" + dynamicRegistration +
        "<key>CFPlugInTypes</key><dict><key>8B08C4BF-415B-11D8-B3F9-0003936726FC</key><array>" + named +
        "</array></dict><key>CFPlugInFactories</key><dict>" + functions +
        "</dict><key>CFBundleDocumentTypes</key><array>" +
        documentType("Editor", "<string>public.png</string>") + documentType("MDImporter", types) +
        "</array></dict></plist>";
    return writeCodeBundle(folder, name, information, library);
  }
};

}  // namespace nimbo
