// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "children/Pasteboard/Patience.hpp"

namespace nimbo {

/// Frees what the library has allocated.
struct FreeXCB {
  void operator()(void *allocated) const { std::free(allocated); }
};
template <typename Reply>
using XCBPointer = std::unique_ptr<Reply, FreeXCB>;
using X11Event = XCBPointer<xcb_generic_event_t>;

/// What a window's property holds.
struct X11Property {
  xcb_atom_t type = XCB_ATOM_NONE;
  std::string bytes;
};

/// A connection to an X server with one window, which is never shown. Its methods raise `PasteboardError` when
/// the server has gone.
class X11Connection {
 public:
  /// To the server that DISPLAY names; raises `PasteboardError`.
  X11Connection();
  X11Connection(const X11Connection &) = delete;
  ~X11Connection();

  xcb_connection_t *get() const { return connection_; }
  xcb_window_t window() const { return window_; }
  /// How many bytes are put into a property at once.
  std::size_t propertyBytes() const { return propertyBytes_; }

  std::vector<xcb_atom_t> atoms(std::span<const std::string> names);
  xcb_atom_t atom(const std::string &name) { return atoms({&name, 1}).front(); }
  /// The names of the atoms that can name a type.
  std::vector<std::string> names(std::span<const xcb_atom_t> atoms);
  xcb_window_t selectionOwner(xcb_atom_t selection);
  /// The property, which is deleted when `removes`; nothing when it is not there. Raises `tooLarge`.
  std::optional<X11Property> property(xcb_window_t window, xcb_atom_t name, bool removes);
  /// The server's time now.
  xcb_timestamp_t serverTime(const Patience &patience);
  /// The next event; raises `timeLimit`.
  X11Event waitForEvent(const Deadline &deadline);
  /// An event that has come; null when there is none.
  X11Event pollEvent();
  /// Sends what has been asked for.
  void flush();

 private:
  void check() const;

  xcb_connection_t *connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  std::size_t propertyBytes_ = 0;
};

/// The atoms in a property's bytes.
std::vector<xcb_atom_t> atomsIn(const X11Property &property);

}  // namespace nimbo
