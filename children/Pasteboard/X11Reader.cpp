// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/X11Reader.hpp"

#include <algorithm>
#include <cstring>

#include "children/Pasteboard/Contents.hpp"
#include "children/Pasteboard/PasteboardError.hpp"
#include "children/Pasteboard/TypeNames.hpp"

namespace nimbo {
namespace {

template <typename Event>
const Event &as(const X11Event &event) {
  return *reinterpret_cast<const Event *>(event.get());
}

std::uint8_t kindOf(const X11Event &event) {
  constexpr std::uint8_t kSentByClient = 0x80;
  return event->response_type & static_cast<std::uint8_t>(~kSentByClient);
}

}  // namespace

X11Reader::X11Reader(X11Connection &connection) : connection_(connection) {
  const std::vector<std::string> names = {"CLIPBOARD", "INCR", "QUIVERLEAF_CLIPBOARD"};
  const std::vector<xcb_atom_t> atoms = connection.atoms(names);
  clipboard_ = atoms[0];
  incremental_ = atoms[1];
  property_ = atoms[2];
}

std::optional<std::vector<std::string>> X11Reader::types(const Patience &patience) {
  owner_ = connection_.selectionOwner(clipboard_);
  if (owner_ == XCB_WINDOW_NONE) throw PasteboardError(ErrorCode::incomplete, "the clipboard is empty");
  // Its end is then an event. Where it has ended already, the server answers for it.
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  ::xcb_change_window_attributes(connection_.get(), owner_, XCB_CW_EVENT_MASK, &events);
  const auto targets = convert(connection_.atom("TARGETS"), patience);
  if (!targets) return std::nullopt;
  const std::vector<std::string> noTypes = {"TARGETS", "MULTIPLE",         "TIMESTAMP",      "SAVE_TARGETS",
                                            "DELETE",  "INSERT_SELECTION", "INSERT_PROPERTY"};
  std::vector<xcb_atom_t> atoms = atomsIn(*targets);
  std::erase_if(atoms, [noTypeAtoms = connection_.atoms(noTypes)](xcb_atom_t atom) {
    return std::ranges::find(noTypeAtoms, atom) != noTypeAtoms.end();
  });
  if (atoms.size() > kMaximumTypes) throw PasteboardError(ErrorCode::tooLarge, kTooManyTypes);
  return connection_.names(atoms);
}

std::optional<std::string> X11Reader::read(const std::string &type, const Patience &patience) {
  requireOwner();
  auto property = convert(connection_.atom(type), patience);
  if (!property) return std::nullopt;
  return std::move(property->bytes);
}

std::optional<X11Property> X11Reader::convert(xcb_atom_t target, const Patience &patience) {
  ::xcb_delete_property(connection_.get(), connection_.window(), property_);
  ::xcb_convert_selection(connection_.get(), connection_.window(), clipboard_, target, property_,
                          XCB_CURRENT_TIME);
  if (!waitForAnswer(target, patience)) {
    // Who owns it no more refuses everything.
    requireOwner();
    return std::nullopt;
  }
  auto property = connection_.property(connection_.window(), property_, false);
  if (!property || property->type != incremental_) return property;
  // The fewest bytes that there will be.
  std::uint32_t announced = 0;
  std::memcpy(&announced, property->bytes.data(), std::min(property->bytes.size(), sizeof announced));
  X11Property received{target, receivePieces(patience)};
  if (received.bytes.size() < announced)
    throw PasteboardError(ErrorCode::incomplete,
                          "the program that owns the clipboard gave less than it announced");
  return received;
}

/// Whether the owner has given something.
bool X11Reader::waitForAnswer(xcb_atom_t target, const Patience &patience) {
  for (const Deadline deadline = patience.step();;) {
    const X11Event event = waitForEvent(deadline);
    if (kindOf(event) != XCB_SELECTION_NOTIFY) continue;
    const auto &answer = as<xcb_selection_notify_event_t>(event);
    if (answer.selection == clipboard_ && answer.target == target) return answer.property == property_;
  }
}

std::string X11Reader::receivePieces(const Patience &patience) {
  std::string bytes;
  ::xcb_delete_property(connection_.get(), connection_.window(), property_);
  for (Deadline deadline = patience.step();;) {
    const X11Event event = waitForEvent(deadline);
    const auto &notice = as<xcb_property_notify_event_t>(event);
    if (kindOf(event) != XCB_PROPERTY_NOTIFY || notice.window != connection_.window() ||
        notice.atom != property_ || notice.state != XCB_PROPERTY_NEW_VALUE)
      continue;
    // What a notice tells of may have been read with the piece before.
    const auto piece = connection_.property(connection_.window(), property_, true);
    if (!piece) continue;
    if (piece->bytes.empty()) return bytes;
    bytes += piece->bytes;
    if (bytes.size() > kMaximumContentBytes)
      throw PasteboardError(ErrorCode::tooLarge, "the clipboard holds too much");
    deadline = patience.step();
  }
}

X11Event X11Reader::waitForEvent(const Deadline &deadline) {
  X11Event event = connection_.waitForEvent(deadline);
  if (kindOf(event) == XCB_DESTROY_NOTIFY && as<xcb_destroy_notify_event_t>(event).window == owner_)
    requireOwner();
  return event;
}

/// Fails unless who told the types still owns the clipboard.
void X11Reader::requireOwner() {
  constexpr char kReason[] = "the program that owns the clipboard ended before it gave all";
  const xcb_window_t owner = connection_.selectionOwner(clipboard_);
  if (owner == owner_) return;
  if (owner == XCB_WINDOW_NONE) throw PasteboardError(ErrorCode::incomplete, kReason);
  throw OwnerReplaced(ErrorCode::incomplete, kReason);
}

}  // namespace nimbo
