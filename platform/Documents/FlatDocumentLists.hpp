// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Documents/FlatDocumentStyles.hpp"

namespace nimbo::detail {

/// The lists that a paragraph of a flat OpenDocument stands in, and the numbers of their items.
class FlatDocumentLists {
  struct Level {
    std::int32_t number = 0;
    std::uint32_t identifier = 0;
    bool hasBegun = false;
  };
  /// The numbers of a list, which a later one may continue.
  struct Count {
    std::vector<Level> levels;
  };

 public:
  explicit FlatDocumentLists(const FlatDocumentStyles &styles) : styles_(styles) {}

  /// Goes into a list, and out of it.
  void enterList(const pugi::xml_node &list);
  void leaveList();
  /// Begins an item of the innermost list; a header has no marker.
  void beginItem(const pugi::xml_node &item);
  /// The marker of the item that begins, once for each; nil when there is none.
  NSString takeMarker();
  /// Adds lists and indents to the style of a paragraph.
  void apply(const Look &look, NSParagraphStyle &style) const;

  /// A list around a place.
  struct OpenList {
    std::string styleName;
    std::shared_ptr<Count> count;
    pugi::xml_node definition;
    bool hasMarker = false;
  };
  using OpenLists = std::vector<OpenList>;
  /// Stands at another place, of which no or these lists are around; answers those that were.
  OpenLists moveTo(OpenLists lists = {});

 private:
  pugi::xml_node definition(const std::string &styleName, std::size_t level) const;
  NSTextList textList(std::size_t level) const;
  std::string numbers(std::size_t level) const;

  const FlatDocumentStyles &styles_;
  OpenLists open_;
  std::map<std::string, std::shared_ptr<Count>> byName_, byStyle_;
  std::uint32_t lists_ = 0;
};

}  // namespace nimbo::detail
