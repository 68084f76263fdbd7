// SPDX-License-Identifier: Apache-2.0
#include <cstdint>
#include <cstdlib>

#include "Classes/Files/ResourceMap.hpp"
#include "platform/Foundation/System/AppleDouble.hpp"

namespace {

using namespace nimbo;

/// What is read and fits the format is written and then read the same.
void checkFork(const NSData &data) {
  const auto map = ResourceMap::resourceMapWithData(data);
  const NSData written = map ? map->data() : NSData();
  if (!written) return;
  const auto again = ResourceMap::resourceMapWithData(written);
  if (!again || again->attributes != map->attributes || again->resources.size() != map->resources.size())
    std::abort();
  // Types that were apart now stand together, which they do from then on.
  if (again->data().length() != written.length()) std::abort();
}

void checkCompanion(AppleDouble file) {
  checkFork(file.entry(AppleDouble::kResourceFork));
  const NSData fork = NSData::dataWithBytes("fork", 4);
  file.setEntry(AppleDouble::kResourceFork, fork);
  const NSData comment = file.entry(AppleDouble::kComment);
  file.setEntry(AppleDouble::kFinderInfo, NSData());
  const NSData written = file.data();
  if (!written) return;
  const auto again = AppleDouble::appleDoubleWithData(written);
  if (!again || again->entry(AppleDouble::kResourceFork) != fork ||
      again->entry(AppleDouble::kComment) != comment || again->entry(AppleDouble::kFinderInfo))
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  const NSData data = NSData::dataWithBytes(bytes, size);
  checkFork(data);
  if (const auto file = AppleDouble::appleDoubleWithData(data)) checkCompanion(*file);
  return 0;
}
