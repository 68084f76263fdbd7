// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/PlainText/PlainTextWriter.hpp"

namespace nimbo::detail {

/// Follows the titles of a page. The first one that has text stands in a line of its own, an empty line behind
/// it; later ones, as drawings have, are left out.
class TitleElement {
 public:
  bool isOpen() const { return isOpen_; }
  /// Whether the text is that of a later title.
  bool hidesText() const { return isOpen_ && hasTitle_; }

  void begin(const PlainTextWriter &writer) {
    isOpen_ = true;
    start_ = writer.length();
  }
  /// Any tag ends a title, because it has none in it.
  void end(PlainTextWriter &writer) {
    isOpen_ = false;
    if (writer.length() <= start_) return;
    hasTitle_ = true;
    writer.endTitle();
  }
  /// Ends the title without a line of its own.
  void leave() { isOpen_ = false; }

 private:
  bool isOpen_ = false;
  bool hasTitle_ = false;
  /// How much text was in front of the open title.
  std::uint32_t start_ = 0;
};

}  // namespace nimbo::detail
