// SPDX-License-Identifier: Apache-2.0
//
// The list of active formatting elements: those that go on behind the end of the block that they began in. One
// thread uses a list.
//
//     formatting.push(node, "b"_atom, hash);
//     formatting.find("b"_atom);  // its index
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo {

class FormattingElements {
 public:
  /// How many elements there are behind the last marker; the first one is forgotten for another.
  static constexpr std::size_t kMaximum = 64;
  /// How many equal ones.
  static constexpr std::size_t kMaximumEqual = 3;
  /// "No such index".
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct Entry {
    /// `kNoHTMLNode` for a marker, which parts what is inside a cell or an object from what is outside.
    HTMLNodeIndex node = kNoHTMLNode;
    HTMLAtom name = kNoHTMLAtom;
    /// Equal for equal attributes.
    std::uint64_t attributesHash = 0;
  };

  std::size_t size() const { return entries_.size(); }
  Entry &at(std::size_t index) { return entries_[index]; }

  /// The index behind the last marker.
  std::size_t begin() const { return begins_.empty() ? 0 : begins_.back(); }
  void pushMarker();
  /// Takes away what is behind the last marker, and the marker.
  void clearToMarker();

  /// Adds an element; takes another away where there are too many.
  void push(const Entry &entry);
  void insert(std::size_t index, const Entry &entry);
  void remove(std::size_t index);
  /// The last element of this name behind the last marker.
  std::size_t find(HTMLAtom name) const;
  /// The index of the element, which is looked for behind the last marker.
  std::size_t find(HTMLNodeIndex node) const;

 private:
  std::vector<Entry> entries_;
  /// The indices behind each marker.
  std::vector<std::size_t> begins_;
};

}  // namespace nimbo
