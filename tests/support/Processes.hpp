// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace nimbo {

/// The parent of a process; 0 when there is no such process.
inline pid_t parentOf(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("PPid:")) return std::stoi(line.substr(5));
  return 0;
}

/// All processes that this one can see.
inline std::vector<pid_t> allProcesses() {
  std::vector<pid_t> found;
  for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") == std::string::npos) found.push_back(std::stoi(name));
  }
  return found;
}

/// The children of this process, also those that have ended and not been waited for.
inline std::vector<pid_t> ownChildren() {
  std::vector<pid_t> found = allProcesses();
  std::erase_if(found, [](pid_t process) { return parentOf(process) != ::getpid(); });
  return found;
}

}  // namespace nimbo
