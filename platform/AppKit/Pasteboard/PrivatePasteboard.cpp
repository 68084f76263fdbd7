// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <mutex>
#include <utility>

#include "platform/AppKit/Pasteboard/PasteboardServer.hpp"

namespace nimbo::detail {
namespace {

/// A pasteboard that this process keeps in its memory.
class PrivatePasteboard final : public PasteboardServer {
 public:
  explicit PrivatePasteboard(const NSString &name) : name_(name) {}

  NSString name() const override { return name_; }
  bool isAvailable(NSError * /*error*/) const override { return true; }

  std::int64_t changeCount() const override {
    const std::scoped_lock lock(mutex_);
    return changeCount_;
  }

  std::vector<NSString> types(NSError * /*error*/) const override {
    const std::scoped_lock lock(mutex_);
    std::vector<NSString> types;
    for (const auto &[type, data] : contents_) types.push_back(type);
    return types;
  }

  bool declareTypes(std::span<const NSString> types, NSError * /*error*/) override {
    const std::scoped_lock lock(mutex_);
    ++changeCount_;
    contents_.clear();
    for (const NSString &type : types)
      if (std::ranges::find(contents_, type, &Entry::first) == contents_.end())
        contents_.emplace_back(type, NSData());
    return true;
  }

  bool setData(const NSData &data, const NSString &type, NSError *error) override {
    const std::scoped_lock lock(mutex_);
    const auto entry = std::ranges::find(contents_, type, &Entry::first);
    if (entry == contents_.end()) {
      setError(error, ErrorCode::unsupportedType, "the type has not been declared");
      return false;
    }
    entry->second = data;
    return true;
  }

  NSData dataForType(const NSString &type, NSError *error) const override {
    const std::scoped_lock lock(mutex_);
    const auto entry = std::ranges::find(contents_, type, &Entry::first);
    if (entry != contents_.end() && entry->second) return entry->second;
    setError(error, ErrorCode::incomplete, "the pasteboard holds no data of this type");
    return NSData();
  }

 private:
  using Entry = std::pair<NSString, NSData>;

  const NSString name_;
  mutable std::mutex mutex_;
  std::int64_t changeCount_ = 0;
  /// In the order in which they were declared; nil as long as a type has no data.
  std::vector<Entry> contents_;
};

}  // namespace

SharedPointer<PasteboardServer> newPrivatePasteboard(const NSString &name) {
  return SharedPointer<PasteboardServer>::adopt(new PrivatePasteboard(name));
}

SharedPointer<PasteboardServer> privatePasteboard(const NSString &name) {
  static std::mutex mutex;
  static std::vector<SharedPointer<PasteboardServer>> pasteboards;
  const std::scoped_lock lock(mutex);
  const auto known = std::ranges::find(pasteboards, name, [](const auto &server) { return server->name(); });
  if (known != pasteboards.end()) return *known;
  return pasteboards.emplace_back(newPrivatePasteboard(name));
}

}  // namespace nimbo::detail
