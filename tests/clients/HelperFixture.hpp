// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "clients/cpp/HelperClient.hpp"
#include "helper/NimboImExport.hpp"

namespace nimbo {

/// A private runtime folder in which clients start the test helper.
class HelperFixture : public testing::Test {
 protected:
  void SetUp() override {
    std::string path = testing::TempDir() + "quiverleaf.XXXXXX";
    ASSERT_NE(::mkdtemp(path.data()), nullptr);
    folder = path;
    ::setenv("QUIVERLEAF_RUNTIME_DIR", path.c_str(), 1);
    ::setenv("QUIVERLEAF_HELPER", TEST_HELPER, 1);
  }
  void TearDown() override {
    HelperClient().stopHelper();
    std::filesystem::remove_all(folder);
    for (const char *setting : {"TIMEOUT", "IDLE_SECONDS", "ABANDONED_SECONDS", "LOOK_SECONDS"})
      ::unsetenv((std::string("TEST_HELPER_") + setting).c_str());
  }

  static NSString name() { return NSString::stringWithCharacters(kHelperConnectionName); }
  std::filesystem::path file(const std::string &suffix = "") const {
    return folder / (name().UTF8String() + suffix);
  }
  int startedHelpers() const {
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
      count += entry.path().filename().string().starts_with("started.");
    return count;
  }
  static long descriptors(const std::string &process) {
    const auto entries = std::filesystem::directory_iterator("/proc/" + process + "/fd");
    return std::distance(begin(entries), end(entries));
  }
  static long residentPages(int process) {
    long size = 0, resident = 0;
    std::ifstream("/proc/" + std::to_string(process) + "/statm") >> size >> resident;
    return resident;
  }

  std::filesystem::path folder;
};

}  // namespace nimbo
