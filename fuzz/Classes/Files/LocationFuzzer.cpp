// SPDX-License-Identifier: Apache-2.0
// Reads location files and aliases: what they name is one line, an absolute path, or nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Classes/Files/AliasRecords.hpp"
#include "Classes/Files/InternetLocationData.hpp"

using namespace nimbo;

namespace {

void checkPath(const NSString &path) {
  if (path && (!path.view().starts_with(u'/') || !path.fileSystemRepresentation())) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  const NSData data = NSData::dataWithBytes(bytes, size);
  NSError error;
  const NSString url = URLOfInternetLocationData(data, &error);
  if (static_cast<bool>(url) == static_cast<bool>(error)) std::abort();
  if (url && !(URLOfLocationText(url.view()) == url)) std::abort();
  if (!isBookmark(data) && originalOfBookmark(data).path) std::abort();
  checkPath(originalOfBookmark(data).path);
  checkPath(originalOfAliasRecord(data).path);
  return 0;
}
