// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/DotSegments.hpp"

#include <algorithm>

namespace nimbo {

std::u16string pathWithoutDotSegments(std::u16string_view path) {
  // Each segment goes with the "/" in front of it, which only those at the beginning may lack.
  std::u16string result;
  result.reserve(path.size());
  while (!path.empty()) {
    const std::size_t slash = path.starts_with(u'/') ? 1 : 0;
    const std::size_t end = std::min(path.find(u'/', slash), path.size());
    const std::u16string_view segment = path.substr(slash, end - slash);
    const bool isDots = segment == u"." || segment == u"..";
    if (!isDots) {
      result += path.substr(0, end);
    } else if (slash > 0) {
      const std::size_t last = result.rfind(u'/');
      if (segment == u"..") result.resize(last == result.npos ? 0 : last);
      if (end == path.size()) result += u'/';
    }
    path.remove_prefix(isDots && slash == 0 ? std::min(end + 1, path.size()) : end);
  }
  return result;
}

}  // namespace nimbo
