// SPDX-License-Identifier: Apache-2.0
#include "clients/cpp/AbsolutePath.hpp"

#include <filesystem>
#include <system_error>

namespace nimbo {

std::string absolutePath(const std::string &path, std::string *message) {
  std::error_code error;
  std::string absolute = std::filesystem::absolute(path, error).string();
  if (!error) return absolute;
  *message = "The working directory cannot be found: " + error.message();
  return {};
}

}  // namespace nimbo
