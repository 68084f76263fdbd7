// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/X11Clipboard.hpp"

#include "children/Pasteboard/X11Connection.hpp"
#include "children/Pasteboard/X11Owner.hpp"
#include "children/Pasteboard/X11Reader.hpp"

namespace nimbo {
namespace {

class X11Clipboard final : public Clipboard {
 public:
  std::optional<std::vector<std::string>> types(const Patience &patience) override {
    return reader_.types(patience);
  }
  bool tellsRefusal() const override { return true; }
  std::optional<std::string> read(const std::string &type, const Patience &patience) override {
    return reader_.read(type, patience);
  }
  void own(const std::vector<std::string> &types, const Patience &patience) override {
    owner_.emplace(connection_, types, patience);
  }
  void serve(Contents &contents, int signals) override { owner_->serve(contents, signals); }

 private:
  X11Connection connection_;
  X11Reader reader_{connection_};
  std::optional<X11Owner> owner_;
};

}  // namespace

std::unique_ptr<Clipboard> openX11Clipboard() {
  return std::make_unique<X11Clipboard>();
}

}  // namespace nimbo
