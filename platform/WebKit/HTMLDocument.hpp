// SPDX-License-Identifier: Apache-2.0
//
// A page as a tree, as the HTML standard builds it with scripts off. Any thread may read a document.
//
//     const HTMLDocument page = HTMLDocument::documentWithText(u"<p class=a>One<p>Two");
//     const HTMLNode &first = page.node(page.node(page.body()).firstChild);
//     first.name == "p"_atom && page.text(page.node(first.firstChild)) == u"One";  // true
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/WebKit/HTMLAtoms.hpp"

namespace nimbo {

/// The place of a node in its document. An element is placed before its descendants, unless the page is
/// misnested.
using HTMLNodeIndex = std::uint32_t;
/// "No such node".
inline constexpr HTMLNodeIndex kNoHTMLNode = 0xffffffff;

enum class HTMLNodeKind : std::uint8_t {
  document,
  doctype,
  element,
  text,
  comment,
  /// What a `template` element holds. It is nobody's child, because it is not rendered.
  templateContents
};

enum class HTMLNamespace : std::uint8_t { html, svg, mathML };

/// Whether the page asks for the ways of old browsers.
enum class HTMLQuirksMode : std::uint8_t { noQuirks, limitedQuirks, quirks };

struct HTMLNode {
  HTMLNodeIndex parent = kNoHTMLNode;
  HTMLNodeIndex firstChild = kNoHTMLNode;
  HTMLNodeIndex lastChild = kNoHTMLNode;
  HTMLNodeIndex previousSibling = kNoHTMLNode;
  HTMLNodeIndex nextSibling = kNoHTMLNode;
  /// The name of an element or document type: in small letters, but in SVG and MathML as these write it.
  HTMLAtom name = kNoHTMLAtom;
  /// An element's first attribute; the first unit of a text or comment. `HTMLDocument` knows where.
  std::uint32_t start = 0;
  /// How many attributes or units.
  std::uint32_t count = 0;
  HTMLNodeKind kind = HTMLNodeKind::element;
  HTMLNamespace nameSpace = HTMLNamespace::html;
  /// Whether the units are the document's own ones, because they do not stand in the page like that.
  bool isOwnText = false;
  /// Whether the parser still adds to it; not so in a document that is read.
  bool isOpen = false;

  /// Whether it is an element.
  bool isElement() const { return kind == HTMLNodeKind::element; }
  /// Whether it is an element of HTML of this name.
  bool isHTML(HTMLAtom element) const {
    return name == element && nameSpace == HTMLNamespace::html && kind == HTMLNodeKind::element;
  }
};

struct HTMLAttribute {
  /// In small letters, but in SVG and MathML as these write it; with its prefix, as in "xlink:href".
  HTMLAtom name;
  std::uint32_t start;
  /// The length in units; the uppermost bit says that they are the document's own ones.
  std::uint32_t lengthAndOwner;
};

/// What of a page is read at most. Each is large enough for any page that people read.
struct HTMLLimits {
  /// How many units of the page are read.
  std::uint32_t units = 1U << 28;
  /// How many elements are inside each other, the root counted. Deeper ones become siblings, in the same order.
  std::uint32_t depth = 512;
  /// How many nodes a document has, about; the page ends where there are so many.
  std::uint32_t nodes = 1U << 23;
  /// How many attributes an element has; the first ones count.
  std::uint32_t attributes = 1024;
};

class HTMLDocument {
 public:
  /// The document of a page; `text` has to outlive it.
  static HTMLDocument documentWithText(std::u16string_view text NIMBO_LIFETIMEBOUND,
                                       const HTMLLimits &limits = {});

  /// The node of the document itself, whose children are the document type, comments and the root element.
  static constexpr HTMLNodeIndex kRoot = 0;

  /// A node; `index` must be that of one.
  const HTMLNode &node(HTMLNodeIndex index) const NIMBO_LIFETIMEBOUND { return nodes_[index]; }
  /// How many nodes there are. Some may be in no tree any more.
  std::uint32_t nodeCount() const { return static_cast<std::uint32_t>(nodes_.size()); }
  /// The node behind `index` in the order of the page, in the tree below `root`; `kNoHTMLNode` behind the last.
  HTMLNodeIndex nextInTree(HTMLNodeIndex index, HTMLNodeIndex root = kRoot) const;
  /// The node behind `index` and its descendants in the order of the page, in the tree below `root`.
  HTMLNodeIndex nextBehindSubtree(HTMLNodeIndex index, HTMLNodeIndex root = kRoot) const;

  /// The units of a text or comment.
  std::u16string_view text(const HTMLNode &node) const NIMBO_LIFETIMEBOUND {
    return units(node.start, node.count, node.isOwnText);
  }
  /// An element's attributes in their order; no two have one name.
  std::span<const HTMLAttribute> attributes(const HTMLNode &element) const NIMBO_LIFETIMEBOUND {
    return {attributes_.data() + element.start, element.count};
  }
  /// The value of an attribute.
  std::u16string_view value(const HTMLAttribute &attribute) const NIMBO_LIFETIMEBOUND {
    return units(attribute.start, attribute.lengthAndOwner & ~kOwnUnits,
                 (attribute.lengthAndOwner & kOwnUnits) != 0);
  }
  /// The value of an element's attribute; nothing when it has none of this name.
  std::optional<std::u16string_view> attribute(const HTMLNode &element,
                                               HTMLAtom name) const NIMBO_LIFETIMEBOUND;

  /// The atoms of the names, and of whatever else was given one.
  const HTMLAtoms &atoms() const NIMBO_LIFETIMEBOUND { return atoms_; }
  HTMLAtoms &atoms() NIMBO_LIFETIMEBOUND { return atoms_; }

  /// What stands in a `template` element, as children of a node of its own.
  HTMLNodeIndex templateContents(HTMLNodeIndex templateElement) const { return templateElement + 1; }

  HTMLQuirksMode quirksMode() const { return quirksMode_; }
  /// The `html` element.
  HTMLNodeIndex rootElement() const { return rootElement_; }
  /// The `body` or `frameset` element.
  HTMLNodeIndex body() const { return body_; }
  /// The first `title` element of HTML in the document; `kNoHTMLNode` when there is none.
  HTMLNodeIndex title() const { return title_; }
  /// The first `base` element with an address; `kNoHTMLNode` when there is none.
  HTMLNodeIndex base() const { return base_; }
  /// Whether the limit of units or of nodes ended the page early.
  bool isCut() const { return isCut_; }

 private:
  friend class HTMLTreeBuilder;
  friend class HTMLTokenizer;

  static constexpr std::uint32_t kOwnUnits = 0x80000000;

  explicit HTMLDocument(std::u16string_view text);

  /// The page without carriage returns.
  std::u16string_view source() const {
    return normalizedText_.empty() ? text_ : std::u16string_view(normalizedText_);
  }
  std::u16string_view units(std::uint32_t start, std::uint32_t length, bool isOwn) const {
    return {(isOwn ? ownText_.data() : source().data()) + start, length};
  }

  std::u16string_view text_;
  /// The page where it has carriage returns, which end lines in no other way than line feeds.
  std::u16string normalizedText_;
  /// The units that are not in the page like that.
  std::u16string ownText_;
  std::vector<HTMLNode> nodes_;
  std::vector<HTMLAttribute> attributes_;
  HTMLAtoms atoms_;
  HTMLNodeIndex rootElement_ = kNoHTMLNode;
  HTMLNodeIndex body_ = kNoHTMLNode;
  HTMLNodeIndex title_ = kNoHTMLNode;
  HTMLNodeIndex base_ = kNoHTMLNode;
  HTMLQuirksMode quirksMode_ = HTMLQuirksMode::noQuirks;
  bool isCut_ = false;
};

}  // namespace nimbo
