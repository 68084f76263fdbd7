// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "children/Pasteboard/Patience.hpp"
#include "children/Pasteboard/X11Connection.hpp"

namespace nimbo {

/// Asks the owner of an X server's clipboard for what it has. Whatever the owner does, it takes no longer than
/// the patience allows and gives no more than a type may have. Raises `PasteboardError`.
class X11Reader {
 public:
  explicit X11Reader(X11Connection &connection);

  /// The types of data that the owner of now names; nothing when it does not tell.
  std::optional<std::vector<std::string>> types(const Patience &patience);
  /// The data of a type; nothing when that owner refuses. Raises `OwnerReplaced` when there is another.
  std::optional<std::string> read(const std::string &type, const Patience &patience);

 private:
  std::optional<X11Property> convert(xcb_atom_t target, const Patience &patience);
  bool waitForAnswer(xcb_atom_t target, const Patience &patience);
  std::string receivePieces(const Patience &patience);
  X11Event waitForEvent(const Deadline &deadline);
  void requireOwner();

  X11Connection &connection_;
  xcb_atom_t clipboard_, incremental_, property_;
  xcb_window_t owner_ = XCB_WINDOW_NONE;
};

}  // namespace nimbo
