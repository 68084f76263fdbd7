// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Strings of which each is there once, in the order in which they came. One thread uses it at a time.
///
///     StringSet links;
///     links.add(u"a"_ns), links.add(NSString()), links.add(u"a"_ns);
///     std::move(links).strings();  // {"a"}
class StringSet {
 public:
  /// Adds a string, unless it is nil or there already.
  void add(const NSString &string) {
    if (string && known_.insert(string).second) strings_.push_back(string);
  }
  /// The strings; the set is not to be used afterwards.
  std::vector<NSString> strings() && { return std::move(strings_); }

 private:
  std::vector<NSString> strings_;
  std::unordered_set<NSString, NSStringHash> known_;
};

}  // namespace nimbo
