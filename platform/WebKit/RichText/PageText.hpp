// SPDX-License-Identifier: Apache-2.0
//
// A page whose style is known as attributed text, as a browser shows it.
//
// A block is a paragraph, or as many as it holds. A "br" ends a line: with U+2028 in "p", "li" and headings,
// which stay one paragraph, elsewhere with a line feed. Distances between paragraphs are those of the collapsed
// margins. The margins of the page itself are nobody's.
//
// The background of a block has no place in text, but in a cell. It stands behind characters only where they
// are too light for white paper. A rule is an empty paragraph in a cell of its own that has one border.
//
//     StyleResolver styles(document, sheets);
//     const PageText page = textOfPage(document, styles);
//     const NSAttributedString text = textWithImages(page, loadedImages);
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/StyleResolver.hpp"
#include "platform/WebKit/WebResource.hpp"

namespace nimbo::detail {

/// An image that stands in a text and is to be loaded.
struct PageImage {
  /// The index of its `NSAttachmentCharacter`.
  std::uint32_t index = 0;
  /// Where it is, as the page or a style sheet has it.
  NSString URL;
  /// How wide and high it is to be, in pixels of CSS, where the page says so.
  std::optional<double> width, height;
  /// What to say in place of it; nil where the page says nothing.
  NSString alternativeText;
};

struct PageText {
  NSAttributedString text;
  /// In the order of the text.
  std::vector<PageImage> images;
};

/// How references in a page are understood.
struct PageTextOptions {
  /// The absolute form of a reference, with the page's base; nil for what leads nowhere. Without the function
  /// references stay as they are written.
  std::function<NSString(const NSString &reference)> absoluteURL;
};

/// The text of the page; empty, not nil, when it shows none. Raises `std::bad_alloc`, and `std::length_error`
/// above `NSNotFound` units.
PageText textOfPage(const HTMLDocument &document, StyleResolver &styles, const PageTextOptions &options = {});

/// The text with each image as an attachment, or its alternative text where `loaded`, which has a resource for
/// each image in their order, has nil or what is no picture. Sizes are those that the page says, with the
/// picture's own ratio where it says only one, and else the picture's own.
NSAttributedString textWithImages(const PageText &page, std::span<const WebResource> loaded);

/// What the page's head says of the page: title, author, subject, keywords, company, copyright, and as comment
/// its description. The type is "NSHTML".
DocumentAttributes documentAttributesOfPage(const HTMLDocument &document);

}  // namespace nimbo::detail
