// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/PasteboardServer.hpp"

namespace nimbo::detail {
namespace {

/// What nil pasteboards stand on: it holds nothing and takes nothing.
class NilPasteboard final : public PasteboardServer {
 public:
  NSString name() const override { return {}; }
  bool isAvailable(NSError *error) const override { return fail(error); }
  std::int64_t changeCount() const override { return 0; }
  std::vector<NSString> types(NSError *error) const override {
    fail(error);
    return {};
  }
  bool declareTypes(std::span<const NSString> /*types*/, NSError *error) override { return fail(error); }
  bool setData(const NSData & /*data*/, const NSString & /*type*/, NSError *error) override {
    return fail(error);
  }
  NSData dataForType(const NSString & /*type*/, NSError *error) const override {
    fail(error);
    return {};
  }

 private:
  static bool fail(NSError *error) {
    setError(error, ErrorCode::other, "there is no pasteboard");
    return false;
  }
};

}  // namespace

PasteboardServer &nilPasteboard() {
  static NilPasteboard pasteboard;
  return pasteboard;
}

}  // namespace nimbo::detail
