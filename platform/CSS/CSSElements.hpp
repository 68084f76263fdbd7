// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/CSS/CSSNames.hpp"
#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// An element of `CSSElements`: its place in the order of the document.
using CSSElementIndex = std::uint32_t;
/// No element.
inline constexpr CSSElementIndex kNoCSSElement = 0xffffffff;

/// An attribute of an element.
struct CSSAttribute {
  /// In any case.
  std::u16string_view name;
  /// With its character references decoded.
  std::u16string_view value;
};

/// A page's elements as selectors see them, in the order of the document. The page's text must outlive it.
///
///     CSSElements elements(names, CSSMode::kStandard);
///     elements.begin(u"p", attributes, CSSElements::Kind::kHTML);
///     elements.addText();
///     elements.end();
class CSSElements {
 public:
  /// Whose names are compared in any case of their letters.
  enum class Kind : std::uint8_t { kHTML, kForeign };

  /// An element.
  struct Element {
    /// Its name.
    CSSName type = kNoCSSName;
    /// Its id, or `kNoCSSName`.
    CSSName id = kNoCSSName;
    /// The element around it; `kNoCSSElement` for the root.
    CSSElementIndex parent = kNoCSSElement;
    /// The element in front of it in its parent, or `kNoCSSElement`.
    CSSElementIndex previousSibling = kNoCSSElement;
    /// The element behind it in its parent, or `kNoCSSElement`.
    CSSElementIndex nextSibling = kNoCSSElement;
    /// One behind its last descendant.
    CSSElementIndex end = 0;
    /// Its place among the elements of its parent, from 1 on.
    std::uint32_t childIndex = 1;
    /// How many elements it has.
    std::uint32_t childCount = 0;
    /// The place of its classes, which `classes` gives.
    std::uint32_t firstClass = 0;
    /// How many classes it has.
    std::uint32_t classCount = 0;
    /// The place of its attributes, which `attributes` gives.
    std::uint32_t firstAttribute = 0;
    /// How many attributes it has.
    std::uint32_t attributeCount = 0;
    /// The filter of its ancestors, by its place among the filters.
    std::uint32_t ancestorFilter = 0;
    /// Whether it is one of HTML.
    Kind kind = Kind::kHTML;
    /// Whether it has neither elements nor text.
    bool isEmpty = true;
  };

  /// An attribute with its name as a number.
  struct Attribute {
    /// Of HTML elements in lower case.
    CSSName name = kNoCSSName;
    /// Borrowed from the page.
    std::u16string_view value;
  };

  /// A page in the mode whose names go to the table, which must outlive it.
  CSSElements(CSSNames &names, CSSMode mode);

  /// Begins an element in the one that is open, and answers its index. The names of HTML elements and of their
  /// attributes are taken in lower case. Raises `std::bad_alloc`.
  CSSElementIndex begin(std::u16string_view type, std::span<const CSSAttribute> attributes, Kind kind);
  /// Says that the open element has text.
  void addText();
  /// Ends the open element; each one that began must end.
  void end();

  /// How many elements there are.
  std::size_t size() const { return elements_.size(); }
  /// An element, which must be one.
  const Element &operator[](CSSElementIndex index) const NIMBO_LIFETIMEBOUND { return elements_[index]; }
  /// The classes of an element in ascending order, each once; borrowed.
  std::span<const CSSName> classes(const Element &element) const NIMBO_LIFETIMEBOUND {
    return std::span(classes_).subspan(element.firstClass, element.classCount);
  }
  /// The attributes of an element, borrowed.
  std::span<const Attribute> attributes(const Element &element) const NIMBO_LIFETIMEBOUND {
    return std::span(attributes_).subspan(element.firstAttribute, element.attributeCount);
  }
  /// The value of an attribute; nothing when the element does not have it.
  std::optional<std::u16string_view> attribute(const Element &element, CSSName name) const;
  /// Whether an ancestor of the element may have the type, id or class that a bit stands for.
  bool mayHaveAncestor(const Element &element, std::uint16_t filterBit) const {
    return filters_[element.ancestorFilter][filterBit / 64] >> (filterBit % 64) & 1;
  }
  /// How many elements have the element's parent; of a root how many roots there are.
  std::uint32_t siblingCount(const Element &element) const {
    return element.parent == kNoCSSElement ? rootCount_ : elements_[element.parent].childCount;
  }
  /// The table of the names.
  CSSNames &names() const { return *names_; }
  /// The mode of the page.
  CSSMode mode() const { return mode_; }

  /// How many bits a filter of ancestors has.
  static constexpr std::size_t kFilterBits = 256;
  /// The bit of a type, id or class in the filters.
  static std::uint16_t filterBit(CSSName name) {
    return static_cast<std::uint16_t>((name * 0x9e3779b1U) >> 24);
  }

 private:
  using Filter = std::array<std::uint64_t, kFilterBits / 64>;
  struct Open {
    CSSElementIndex index;
    CSSElementIndex lastChild = kNoCSSElement;
    /// The filter of its children; 0 while it has none.
    std::uint32_t filter = 0;
  };

  void addAttributes(Element &element, std::span<const CSSAttribute> attributes);
  std::uint32_t filterOfChildren(Open &open);

  CSSNames *names_;
  CSSMode mode_;
  std::uint32_t rootCount_ = 0;
  std::vector<Element> elements_;
  std::vector<CSSName> classes_;
  std::vector<Attribute> attributes_;
  std::vector<Filter> filters_;
  /// The first one stands for the page, which holds the root.
  std::vector<Open> open_;
};

}  // namespace nimbo
