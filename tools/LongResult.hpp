// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/id.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

/// A result with lists of millions: JSON on one line is written as it comes; what is indented and property
/// lists are gathered first. All members raise `OutputError`.
///
///     LongResult result(options);
///     result.setObject(title, u"Title"_ns);
///     result.beginList(u"Links"_ns);
///     for (const Link &link : links) result.addObject(valueOf(link));
///     result.endList();
///     result.end();  // {"Title":"A page","Links":[...]}
class LongResult {
 public:
  explicit LongResult(const CommonOptions &options) : options_(options) {}

  /// Adds an entry to the object that is the result; none when the value is nil.
  void setObject(const id &value, const NSString &key);
  /// Begins a list in the object that is the result; without a key the list itself is the result.
  void beginList(const NSString &key = {});
  /// Adds an element to the list that is begun.
  void addObject(const id &element);
  void endList();
  /// Writes what is not written yet, and a line feed.
  void end();

 private:
  bool isGathered() const { return options_.pretty || options_.propertyList; }
  void write(std::string_view JSON);
  void writeKey(const NSString &key);

  const CommonOptions &options_;
  /// JSON that is not written yet.
  std::string text_;
  bool isObject_ = false;
  bool isFirstElement_ = true;
  /// The list, if that is gathered, and where it belongs.
  NSArray list_;
  NSString key_;
  NSDictionary object_ = NSDictionary::dictionary();
};

}  // namespace nimbo
