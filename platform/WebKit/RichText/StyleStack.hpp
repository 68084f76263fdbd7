// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/RichText/CharacterStyle.hpp"
#include "platform/WebKit/RichText/PageText.hpp"
#include "platform/WebKit/Style/StyleResolver.hpp"

namespace nimbo::detail {

/// The element that is being read and those around it, from the root on, with their styles.
class StyleStack {
 public:
  struct Level {
    HTMLNodeIndex node = kNoHTMLNode;
    ComputedStyle style;
    InlineContext context;
    /// Whether text in the element is shown; of SVG and MathML only some elements show it.
    bool showsText = true;

    /// Whether what is directly in the element can be seen.
    bool isSeen() const { return style.inherited.visibility == CSSKeyword::kVisible && !style.isUnseen; }
    /// The attributes of text in it, all but the paragraph's.
    const Interned<TextAttributes> &attributes();

   private:
    friend class StyleStack;
    std::optional<Interned<TextAttributes>> attributes_;
  };

  StyleStack(const HTMLDocument &document, StyleResolver &styles, const PageTextOptions &options)
      : document_(document), styles_(styles), options_(options) {}

  /// Begins the root element.
  void pushRoot();
  /// Begins an element that is a child of the last one, or of one of "display: contents" in it.
  void push(HTMLNodeIndex element);
  /// The style that `push` would give the element, borrowed until another one is asked for.
  const ComputedStyle &styleOf(HTMLNodeIndex element) { return styles_.styleOf(element, top().style); }
  /// Begins a pseudo-element of the last element.
  void push(ComputedStyle &&style);
  /// Ends the last element.
  void pop() { --size_; }

  /// How many elements there are.
  std::size_t size() const { return size_; }
  /// The last element, which must be there. It stays where it is until it ends.
  Level &top() { return *levels_[size_ - 1]; }
  /// An element by its place, 0 for the root.
  const Level &at(std::size_t place) const { return *levels_[place]; }

 private:
  void begin(Level &level, HTMLNodeIndex element);
  Level &next();
  void takeAttributes(Level &level);

  const HTMLDocument &document_;
  StyleResolver &styles_;
  const PageTextOptions &options_;
  /// Those behind `size_` are kept for their memory.
  std::vector<std::unique_ptr<Level>> levels_;
  std::size_t size_ = 0;
};

}  // namespace nimbo::detail
