// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// A function that reads files. Wherever a list of them is instantiated, each goes through all that can be
/// wrong with a file:
///
///     INSTANTIATE_TEST_SUITE_P(Text, FileReaders, testing::Values(...), nameOfFileReader);
struct FileReader {
  /// Letters and digits.
  std::string name;
  /// Where the file lies in its folder, with the folders and the extension by which the reader finds it.
  std::string path;
  /// A whole file, which is read without an error.
  std::string whole;
  /// What the file at the path says; nil when nothing.
  id (*read)(const NSString &path, NSError *error);
  /// Whether the function has an error to say why.
  bool saysWhy = true;
  /// Whether it also says what is lost when the file is cut short.
  bool noticesCuts = false;
};

class FileReaders : public testing::TestWithParam<FileReader> {};

/// Failures name the reader.
inline void PrintTo(const FileReader &reader, std::ostream *stream) {
  *stream << reader.name;
}

inline std::string nameOfFileReader(const testing::TestParamInfo<FileReader> &info) {
  return info.param.name;
}

/// The bytes of a sample.
std::string contentsOfFile(const std::string &path);

}  // namespace nimbo
