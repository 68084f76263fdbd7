// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/PlainText/PlainTextTags.hpp"
#include "Classes/PlainText/PlainTextWriter.hpp"

namespace nimbo::detail {

/// Follows a list of options, of which the text has those that the page shows: all of a list that is several
/// lines high, else the selected one or the first.
class SelectElement {
 public:
  /// Whether the text is that of an option that is not shown.
  bool hidesText() const { return isInHiddenOption_; }

  /// Begins a list, whose options are yet to come.
  void begin(const TagShape &startTag, const PlainTextWriter &writer);
  /// Takes back the first option when this one is selected. Nothing happens outside of a list.
  void beginOption(const TagShape &startTag, PlainTextWriter &writer);
  /// Any tag that is not one of options ends the list.
  void end() { isOpen_ = isInHiddenOption_ = false; }

 private:
  bool isOpen_ = false;
  bool isInHiddenOption_ = false;
  bool showsAllOptions_ = false;
  bool hasOption_ = false;
  /// Where the text of the first option begins.
  PlainTextWriter::Mark start_;
};

}  // namespace nimbo::detail
