// SPDX-License-Identifier: Apache-2.0
// Reads web archives: what is read must be written and read again as the same, and its text is that of its
// parts.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Classes/WebKit/WebArchive+SearchableText.hpp"
#include "Classes/WebKit/WebArchive+WebKitAdditions.hpp"

using namespace nimbo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  NSError error;
  const WebArchive archive = WebArchive::archiveWithData(NSData::dataWithBytes(bytes, size), &error);
  if (!archive) {
    if (!error) std::abort();
    return 0;
  }
  if (!(WebArchive::archiveWithData(archive.data()) == archive)) std::abort();
  NSString source;
  const NSString text = searchableTextAndSource(archive, &source);
  if (!text || source != documentSource(archive)) std::abort();
  for (const WebResource &resource : archive.subresources())
    if (resource.URL() && !subresourceForURL(archive, resource.URL())) std::abort();
  return 0;
}
