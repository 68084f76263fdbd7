// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/FuzzedText.hpp"
#include "tests/platform/WebKit/HTMLTreeCheck.hpp"
#include "tests/support/ExactBuffer.hpp"

/// A page becomes a sound tree with the standard's frame, whose texts and values can all be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace nimbo;
  // Small ones are exceeded by small inputs.
  const HTMLLimits limits{.depth = size % 2 == 0 ? 512U : 8U, .attributes = 4};
  const std::u16string text = fuzzedText(data, size);
  const ExactBuffer<unichar> page(text);
  const HTMLDocument document = HTMLDocument::documentWithText({page.data(), text.size()}, limits);
  if (!isSoundTree(document, limits.depth) || document.rootElement() == kNoHTMLNode) std::abort();
  std::size_t sum = 0;
  for (HTMLNodeIndex i = 0; i < document.nodeCount(); ++i) {
    const HTMLNode &node = document.node(i);
    if (node.kind == HTMLNodeKind::text && document.text(node).empty()) std::abort();
    if (node.kind == HTMLNodeKind::text || node.kind == HTMLNodeKind::comment)
      for (const unichar c : document.text(node)) sum += c;
    if (!node.isElement()) continue;
    if (document.atoms().text(node.name).empty()) std::abort();
    for (const HTMLAttribute &one : document.attributes(node))
      for (const unichar c : document.value(one)) sum += c;
  }
  [[maybe_unused]] volatile std::size_t sink = sum;
  return 0;
}
