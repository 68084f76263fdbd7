// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/Foundation/NSData.hpp"

namespace nimbo {

/// A PDF of the tests' data folder; made by scripts/make-test-pdfs.
inline NSData samplePDF(const char *name) {
  return NSData::dataWithContentsOfFile(
      NSString::stringWithUTF8String(std::string(QUIVERLEAF_TEST_DATA "/pdf/") + name));
}

inline NSData dataOfString(const std::string &bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

/// A PDF of the objects 1, 2 ... without a cross-reference table, as readers repair it. The catalog is
/// object 1.
inline NSData PDFOfObjects(const std::vector<std::string> &objects) {
  std::string bytes = "%PDF-1.4\n";
  int number = 0;
  for (const std::string &object : objects)
    bytes += std::to_string(++number) + " 0 obj\n" + object + "\nendobj\n";
  return dataOfString(bytes + "trailer\n<</Root 1 0 R>>\n%%EOF\n");
}

inline std::string PDFStream(const std::string &entries, const std::string &bytes) {
  return "<<" + entries + "/Length " + std::to_string(bytes.size()) + ">>\nstream\n" + bytes + "\nendstream";
}

}  // namespace nimbo
