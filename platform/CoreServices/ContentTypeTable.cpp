// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ContentTypeTable.hpp"

#include <algorithm>
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

struct Row {
  std::string_view key;
  std::string_view contentType;
};

constexpr Row kRows[] = {
#include "ContentTypes.inc"
};

// Strictly ascending: sorted, and no key twice.
static_assert(std::ranges::adjacent_find(kRows, std::ranges::greater_equal(), &Row::key) == std::end(kRows));

}  // namespace

std::string_view contentTypeForKey(std::string_view key) {
  std::string folded(key);
  std::ranges::transform(folded, folded.begin(), toASCIILower<char>);
  const Row *row = std::ranges::lower_bound(kRows, std::string_view(folded), {}, &Row::key);
  return row != std::end(kRows) && row->key == folded ? row->contentType : std::string_view();
}

}  // namespace nimbo
