// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/X11Reader.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "children/Pasteboard/Contents.hpp"
#include "children/Pasteboard/PasteboardError.hpp"

namespace nimbo {
namespace {

/// Targets that are no types of data.
constexpr std::string_view kProtocolTargets[] = {
    "TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "DELETE", "INSERT_SELECTION", "INSERT_PROPERTY"};

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
  const auto targets = convert(connection_.atom("TARGETS"), patience);
  if (!targets) return std::nullopt;
  std::vector<std::string> names = connection_.names(atomsIn(*targets));
  std::erase_if(names, [](const std::string &name) {
    return std::ranges::find(kProtocolTargets, name) != std::end(kProtocolTargets);
  });
  return names;
}

std::optional<std::string> X11Reader::read(const std::string &type, const Patience &patience) {
  auto property = convert(connection_.atom(type), patience);
  if (!property) return std::nullopt;
  return std::move(property->bytes);
}

std::optional<X11Property> X11Reader::convert(xcb_atom_t target, const Patience &patience) {
  owner_ = connection_.selectionOwner(clipboard_);
  if (owner_ == XCB_WINDOW_NONE) throw PasteboardError(ErrorCode::incomplete, "the clipboard is empty");
  // Its end is then an event. Where it has ended already, the server answers for it.
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  ::xcb_change_window_attributes(connection_.get(), owner_, XCB_CW_EVENT_MASK, &events);
  ::xcb_delete_property(connection_.get(), connection_.window(), property_);
  ::xcb_convert_selection(connection_.get(), connection_.window(), clipboard_, target, property_,
                          XCB_CURRENT_TIME);
  if (!waitForAnswer(target, patience)) return std::nullopt;
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
    throw PasteboardError(ErrorCode::incomplete,
                          "the program that owns the clipboard ended before it gave all");
  return event;
}

}  // namespace nimbo
