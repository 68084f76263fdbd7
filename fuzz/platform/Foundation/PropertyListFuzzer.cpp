// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <cstdlib>

#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace {

using namespace nimbo;

[[noreturn]] void abortWith(const char *what, const NSError &error) {
  std::fprintf(stderr, "%s: %s\n", what, error.localizedFailureReason.UTF8String().c_str());
  std::abort();
}

/// What was written can be read, and is then written the same.
void checkRoundTrip(const NSData &written, NSPropertyListFormat expected) {
  NSError error;
  NSPropertyListFormat format{};
  const id again = NSPropertyListSerialization::propertyListFromData(written, &format, &error);
  if (!again || format != expected) abortWith("not read again", error);
  if (NSPropertyListSerialization::dataWithPropertyList(again, expected, &error) != written)
    abortWith("not written the same", error);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  NSError error;
  const id list =
      NSPropertyListSerialization::propertyListFromData(NSData::dataWithBytes(bytes, size), nullptr, &error);
  if (!list) {
    if (error.errorCode() == ErrorCode::none || error.localizedFailureReason.length() == 0)
      abortWith("refused without a reason", error);
    return 0;
  }
  const NSData binary =
      NSPropertyListSerialization::dataWithPropertyList(list, NSPropertyListFormat::binary, &error);
  if (!binary) abortWith("not written", error);
  checkRoundTrip(binary, NSPropertyListFormat::binary);
  if (const NSData xml = NSPropertyListSerialization::dataWithPropertyList(list, NSPropertyListFormat::xml)) {
    // Keys that XML cannot hold may have become the same one; what is read back then holds fewer.
    const id kept = NSPropertyListSerialization::propertyListFromData(xml, nullptr, &error);
    if (!kept) abortWith("XML not read again", error);
    checkRoundTrip(NSPropertyListSerialization::dataWithPropertyList(kept, NSPropertyListFormat::xml, &error),
                   NSPropertyListFormat::xml);
  }
  return 0;
}
