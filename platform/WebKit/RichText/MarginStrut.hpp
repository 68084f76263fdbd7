// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

namespace nimbo::detail {

/// The distance between two paragraphs, of the margins, borders and paddings of all blocks that end or begin
/// between them. Margins that touch collapse: the greatest one counts, less the greatest negative one.
class MarginStrut {
 public:
  /// Adds a margin.
  void addMargin(double margin) {
    positive_ = std::max(positive_, margin);
    negative_ = std::min(negative_, margin);
  }
  /// Adds the border and padding of a side; margins on both sides of it do not touch.
  void addEdge(double edge) {
    if (edge <= 0) return;
    fixed_ += positive_ + negative_ + edge;
    positive_ = negative_ = 0;
  }
  /// The distance so far.
  double total() const { return std::max(0.0, fixed_ + positive_ + negative_); }

 private:
  double positive_ = 0;
  double negative_ = 0;
  double fixed_ = 0;
};

}  // namespace nimbo::detail
