// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/Documents/FlatOpenDocument.hpp"

/// Whatever is taken for a document has runs that cover its text, and attachments just where their characters
/// are.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace nimbo;
  DocumentAttributes attributes;
  NSError error;
  const NSAttributedString text =
      attributedStringWithFlatOpenDocument(NSData::dataWithBytes(data, size), &attributes, &error);
  if (!text && !error) std::abort();
  std::uint32_t start = 0;
  for (const AttributeRun &run : text.runs()) {
    if (run.end <= start) std::abort();
    if (run.attributes->attachment && text.string().characterAtIndex(start) != NSAttachmentCharacter)
      std::abort();
    for (const auto &block : run.attributes->paragraphStyle->textBlocks)
      if (block->startingColumn + block->columnSpan > block->table->numberOfColumns) std::abort();
    start = run.end;
  }
  if (start != text.length()) std::abort();
  return 0;
}
