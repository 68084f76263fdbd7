// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <utility>

#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"
#include "platform/AppKit/Pasteboard/PasteboardServer.hpp"

namespace nimbo {

/// What raises when its types are asked for; or, when it has one, its data.
class RaisingPasteboardServer final : public detail::PasteboardServer {
 public:
  RaisingPasteboardServer(const NSString &type, std::function<void()> raise)
      : type_(type), raise_(std::move(raise)) {}

  NSString name() const override { return u"raising"_ns; }
  bool isAvailable(NSError *) const override { return true; }
  std::int64_t changeCount() const override { return 0; }
  std::vector<NSString> types(NSError *) const override {
    if (!type_) raise_();
    return {type_};
  }
  bool declareTypes(std::span<const NSString>, NSError *) override { return false; }
  bool setData(const NSData &, const NSString &, NSError *) override { return false; }
  NSData dataForType(const NSString &, NSError *) const override {
    raise_();
    return {};
  }

 private:
  const NSString type_;
  const std::function<void()> raise_;
};

/// A pasteboard that calls `raise` when its types are asked for; or, when `type` is not nil, only for its data.
inline NSPasteboard raisingPasteboard(const NSString &type, std::function<void()> raise) {
  return NSPasteboard(
      SharedPointer<detail::PasteboardServer>::adopt(new RaisingPasteboardServer(type, std::move(raise))));
}

}  // namespace nimbo
