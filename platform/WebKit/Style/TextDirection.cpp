// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/TextDirection.hpp"

#include <algorithm>
#include <cstdint>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

/// How many nodes and units an element may cost, so that elements in each other stay cheap.
constexpr std::uint32_t kMaximumLooks = 2048;

bool isBetween(char16_t c, char16_t first, char16_t last) {
  return c >= first && c <= last;
}

/// Whether a unit belongs to a letter that runs from right to left: by the blocks of the scripts, high
/// surrogates standing for the planes' parts.
bool isRightToLeftUnit(char16_t c) {
  return isBetween(c, 0x05be, 0x08ff) || isBetween(c, 0xfb1d, 0xfdff) || isBetween(c, 0xfe70, 0xfefc) ||
         isBetween(c, 0xd802, 0xd803) || isBetween(c, 0xd83a, 0xd83b) || c == 0x200f;
}

bool isLeftToRightUnit(char16_t c) {
  if (c < 0x80) return isASCIILetter(c);
  return isBetween(c, 0x00c0, 0x02b8) || isBetween(c, 0x0370, 0x0590) || isBetween(c, 0x0900, 0x1fff) ||
         isBetween(c, 0x2c00, 0x2dff) || isBetween(c, 0x3005, 0xd7ff) || isBetween(c, 0xd800, 0xd83b) ||
         isBetween(c, 0xd840, 0xdbff) || isBetween(c, 0xf900, 0xfb1c) || isBetween(c, 0xff21, 0xffdc) ||
         c == 0x200e;
}

}  // namespace

std::optional<bool> isContentRightToLeft(const HTMLDocument &document, HTMLNodeIndex element) {
  std::uint32_t looks = 0;
  HTMLNodeIndex index = document.nextInTree(element, element);
  while (index != kNoHTMLNode && ++looks < kMaximumLooks) {
    const HTMLNode &node = document.node(index);
    const bool isPassedOver = node.isElement() && (node.isHTML("bdi"_atom) || node.isHTML("script"_atom) ||
                                                   node.isHTML("style"_atom) || node.isHTML("textarea"_atom) ||
                                                   document.attribute(node, "dir"_atom).has_value());
    if (node.kind == HTMLNodeKind::text) {
      for (const char16_t c : document.text(node).substr(0, kMaximumLooks - looks)) {
        if (isRightToLeftUnit(c)) return true;
        if (isLeftToRightUnit(c)) return false;
        ++looks;
      }
    }
    index = isPassedOver ? document.nextBehindSubtree(index, element) : document.nextInTree(index, element);
  }
  return {};
}

}  // namespace nimbo::detail
