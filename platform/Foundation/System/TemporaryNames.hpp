// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cerrno>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace nimbo {

/// Makes something under a new, hidden name in the folder that holds `path`. The name is short, so that a long
/// one leaves room for it. `make` is called with paths until it answers true, or fails for another reason than
/// that the name is taken (EEXIST). Answers the path; nothing on failure, errno says why. Any thread may call.
///
///     const auto made = makeBeside(path, [](const std::string &name) { return ::mkdir(name.c_str(), 0700) ==
///     0; });
template <class Make>
std::optional<std::string> makeBeside(std::string_view path, Make &&make) {
  constexpr int kTries = 100;
  const std::string folder(path.substr(0, path.rfind('/') + 1));
  std::random_device random;
  for (int i = 0; i < kTries; ++i) {
    std::string name = folder + ".quiverleaf-" + std::to_string(random());
    if (make(name)) return name;
    if (errno != EEXIST) break;
  }
  return std::nullopt;
}

}  // namespace nimbo
