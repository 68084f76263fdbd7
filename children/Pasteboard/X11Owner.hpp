// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "children/Pasteboard/Contents.hpp"
#include "children/Pasteboard/Patience.hpp"
#include "children/Pasteboard/X11Connection.hpp"

namespace nimbo {

/// Owns the clipboard of an X server and answers those who ask, as the conventions for communication between
/// clients say. Raises `PasteboardError`.
class X11Owner {
 public:
  /// Becomes the owner.
  X11Owner(X11Connection &connection, const std::vector<std::string> &types, const Patience &patience);

  /// Answers until another owner takes over. When `signals` is readable, the contents go to the desktop's
  /// clipboard manager, if there is one, and this ends.
  void serve(Contents &contents, int signals);

 private:
  using Request = xcb_selection_request_event_t;
  enum class Outcome { given, refused, awaited };
  /// Data on their way to who has asked, piece by piece.
  struct Transfer {
    xcb_window_t requestor;
    xcb_atom_t property, type;
    Bytes bytes;
    std::size_t sentBytes;
    Deadline deadline;
  };

  void handle(const X11Event &event);
  void receive(const Request &request);
  void retryWaiting();
  void answer(const Request &request, Outcome outcome);
  Outcome convert(const Request &request);
  Outcome convertAll(const Request &request);
  Outcome give(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
  Contents::State stateOf(xcb_atom_t target) const;
  void setAtoms(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                const std::vector<xcb_atom_t> &atoms);
  void beginTransfer(Transfer transfer);
  void sendPiece(const xcb_property_notify_event_t &notice);
  void dropTransfers(bool (*isOver)(const Transfer &, xcb_window_t), xcb_window_t window);
  void watch(xcb_window_t requestor);
  bool beginHandOver();
  void waitForWork(int signals);
  Deadline earliestDeadline() const;

  X11Connection &connection_;
  xcb_atom_t clipboard_, manager_, targets_, multiple_, timestamp_, saveTargets_, incremental_, pair_, text_,
      utf8_, property_;
  std::vector<xcb_atom_t> atoms_;
  std::unordered_map<xcb_atom_t, std::string> types_;
  xcb_timestamp_t since_ = XCB_CURRENT_TIME;
  Contents *contents_ = nullptr;
  bool isOwner_ = true;
  /// When a clipboard manager must have taken everything; never without one.
  Deadline handOver_;
  bool isHandedOver_ = false;
  std::vector<Request> waiting_;
  std::vector<Transfer> transfers_;
};

}  // namespace nimbo
