// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <memory>
#include <string_view>

namespace nimbo {

/// A copy of some elements that ends where its heap block ends, so that reading behind it is noticed. `shift`
/// elements before it vary its alignment.
template <typename Element>
class ExactBuffer {
 public:
  explicit ExactBuffer(std::basic_string_view<Element> elements, std::size_t shift = 0)
      : block_(new Element[elements.size() + shift]), data_(block_.get() + shift) {
    std::ranges::copy(elements, data_);
  }

  const Element *data() const { return data_; }

 private:
  std::unique_ptr<Element[]> block_;
  Element *data_;
};

}  // namespace nimbo
