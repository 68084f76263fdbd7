// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/AppKit/TextAttributes.hpp"
#include "platform/Foundation/NSGeometry.hpp"

namespace nimbo::detail {

/// What the styles say about a paragraph, or a part of it.
struct Look {
  TextAttributes text;
  /// Without the indents, which depend on the lists around, too.
  NSParagraphStyle paragraph;
  double marginLeft = 0;
  double textIndent = 0;
  /// Whether the paragraph's own style, not one that it inherits from, gives it a margin.
  bool hasOwnMargin = false;
  bool isHidden = false;
  bool breaksPageBefore = false;
  bool breaksPageAfter = false;
};

/// The styles of a flat OpenDocument, by their kind (the family) and name, with what they inherit. It borrows
/// the document.
class FlatDocumentStyles {
 public:
  explicit FlatDocumentStyles(const pugi::xml_node &document);

  /// The look of a paragraph of that style; of the default one when there is none of the name.
  const Look &paragraphLook(std::string_view styleName);
  /// Adds what a style of characters says.
  void applyTextStyle(std::string_view styleName, Look &look) const;
  /// A style's own element; null when there is none. Of styles of lists the family is "list".
  pugi::xml_node style(std::string_view family, std::string_view name) const;
  /// What draws something in a table; the element of that name of the style, or one that it inherits from.
  pugi::xml_node properties(std::string_view family, std::string_view name, const char *element) const;
  /// The layout of the document's first page.
  pugi::xml_node pageLayout() const;

 private:
  std::vector<pugi::xml_node> chain(std::string_view family, std::string_view name) const;
  void add(const pugi::xml_node &style, std::string_view family, std::string_view name);
  void applyTextProperties(const pugi::xml_node &properties, Look &look) const;
  void applyParagraphProperties(const pugi::xml_node &properties, Look &look) const;
  void applyTabStops(const pugi::xml_node &stops, Look &look) const;

  pugi::xml_node document_;
  std::unordered_map<std::string, pugi::xml_node> styles_;
  std::unordered_map<std::string, NSString> fonts_;
  std::unordered_map<std::string, Look> paragraphLooks_;
  bool tabsFollowIndent_ = true;
};

}  // namespace nimbo::detail
