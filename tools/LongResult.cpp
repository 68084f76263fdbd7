// SPDX-License-Identifier: Apache-2.0
#include "tools/LongResult.hpp"

#include "tools/Output.hpp"

namespace nimbo {

namespace {

/// How much is gathered before it is written.
constexpr std::size_t kWrittenBytes = 64u << 10;

}  // namespace

void LongResult::setObject(const id &value, const NSString &key) {
  if (!value) return;
  if (isGathered()) return object_.setObject(value, key);
  writeKey(key);
  write(JSONFromValue(value, false));
}

void LongResult::beginList(const NSString &key) {
  isFirstElement_ = true;
  key_ = key;
  list_ = NSArray::array();
  if (isGathered()) return;
  if (key) writeKey(key);
  write("[");
}

void LongResult::addObject(const id &element) {
  if (isGathered()) return list_.addObject(element);
  if (!isFirstElement_) write(",");
  isFirstElement_ = false;
  write(JSONFromValue(element, false));
}

void LongResult::endList() {
  if (!isGathered()) return write("]");
  if (key_) object_.setObject(list_, key_);
}

void LongResult::end() {
  if (isGathered()) return writeResult(key_ ? id(object_) : id(list_), options_);
  writeOutput(text_ + (isObject_ ? "}\n" : "\n"));
  text_.clear();
}

void LongResult::write(std::string_view JSON) {
  text_ += JSON;
  if (text_.size() < kWrittenBytes) return;
  writeOutput(text_);
  text_.clear();
}

void LongResult::writeKey(const NSString &key) {
  write(isObject_ ? "," : "{");
  isObject_ = true;
  write(JSONFromValue(key, false));
  write(":");
}

}  // namespace nimbo
