// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/WebKit/HTMLAtoms.hpp"

namespace nimbo {

enum class HTMLTokenKind : std::uint8_t {
  endOfFile,
  doctype,
  startTag,
  endTag,
  comment,
  characters,
  /// One U+0000, which each place takes in its own way.
  nullCharacter
};

/// A run of units of the page, or of the document's own units.
struct HTMLTextRange {
  std::uint32_t start = 0;
  std::uint32_t count = 0;
  bool isOwn = false;
};

/// A piece of a page. A plain value that means something beside its document only.
struct HTMLToken {
  HTMLTokenKind kind = HTMLTokenKind::endOfFile;
  /// Of a tag: whether "/" ends it.
  bool isSelfClosing = false;
  /// The name of a tag.
  HTMLAtom name = kNoHTMLAtom;
  /// The attributes of a start tag, the last ones of the document.
  std::uint32_t firstAttribute = 0;
  std::uint32_t attributeCount = 0;
  /// Of characters and comments.
  HTMLTextRange text;
};

}  // namespace nimbo
