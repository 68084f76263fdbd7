// SPDX-License-Identifier: Apache-2.0
// Bytes as RTF: what is read of them is written, and from then on stays the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/platform/AppKit/SoundRuns.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"

using namespace nimbo;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  DocumentAttributes attributes;
  const NSAttributedString read = initWithRTF(NSData::dataWithBytes(bytes, size), &attributes);
  if (!read) return 0;
  require(hasSoundRuns(read));
  const NSData rtf = RTFFromRange(read, {0, read.length()}, attributes);
  require(static_cast<bool>(rtf));
  const NSAttributedString once = initWithRTF(rtf);
  require(hasSoundRuns(once));
  const NSAttributedString twice = initWithRTF(RTFFromRange(once, {0, once.length()}));
  require(twice == once);
  const NSAttributedString files = initWithRTFD(RTFDFromRange(once, {0, once.length()}));
  require(files == once);
  return 0;
}
