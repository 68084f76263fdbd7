// SPDX-License-Identifier: Apache-2.0
// Bytes as RTF: what is read of them is written, and from then on stays the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/AppKit/NSAttributedStringRTF.hpp"

using namespace nimbo;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// A text whose runs are as they must be.
void check(const NSAttributedString &text) {
  std::uint32_t start = 0;
  const Interned<TextAttributes> *last = nullptr;
  for (const AttributeRun &run : text.runs()) {
    require(run.end > start && (!last || *last != run.attributes));
    start = run.end;
    last = &run.attributes;
  }
  require(start == text.length());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  DocumentAttributes attributes;
  const NSAttributedString read = initWithRTF(NSData::dataWithBytes(bytes, size), &attributes);
  if (!read) return 0;
  check(read);
  const NSData rtf = RTFFromRange(read, {0, read.length()}, attributes);
  require(static_cast<bool>(rtf));
  const NSAttributedString once = initWithRTF(rtf);
  check(once);
  const NSAttributedString twice = initWithRTF(RTFFromRange(once, {0, once.length()}));
  require(twice == once);
  const NSAttributedString files = initWithRTFD(RTFDFromRange(once, {0, once.length()}));
  require(files == once);
  return 0;
}
