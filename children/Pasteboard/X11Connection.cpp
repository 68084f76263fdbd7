// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/X11Connection.hpp"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "children/Pasteboard/Contents.hpp"
#include "children/Pasteboard/PasteboardError.hpp"
#include "children/Pasteboard/TypeNames.hpp"

namespace nimbo {
namespace {

/// What a request takes beside the bytes of a property.
constexpr std::size_t kRequestHeadBytes = 64;
constexpr std::size_t kPropertyBytes = 1 << 20;
/// How much of a property comes with a reply, in units of 4 bytes.
constexpr std::uint32_t kReplyUnits = 1 << 20;

}  // namespace

X11Connection::X11Connection() {
  int number = 0;
  connection_ = ::xcb_connect(nullptr, &number);
  if (::xcb_connection_has_error(connection_)) {
    ::xcb_disconnect(connection_);
    throw PasteboardError(ErrorCode::other,
                          "the X server that DISPLAY names does not answer, or refuses this user");
  }
  xcb_screen_iterator_t screens = ::xcb_setup_roots_iterator(::xcb_get_setup(connection_));
  for (; number > 0 && screens.rem > 1; --number) ::xcb_screen_next(&screens);
  window_ = ::xcb_generate_id(connection_);
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  ::xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screens.data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screens.data->root_visual, XCB_CW_EVENT_MASK, &events);
  const std::size_t requestBytes = std::size_t{::xcb_get_maximum_request_length(connection_)} * 4;
  propertyBytes_ = std::min(requestBytes - kRequestHeadBytes, kPropertyBytes);
}

X11Connection::~X11Connection() {
  ::xcb_disconnect(connection_);
}

void X11Connection::check() const {
  if (::xcb_connection_has_error(connection_)) throw PasteboardError(ErrorCode::other, "the X server has gone");
}

std::vector<xcb_atom_t> X11Connection::atoms(std::span<const std::string> names) {
  std::vector<xcb_intern_atom_cookie_t> cookies;
  for (const std::string &name : names)
    cookies.push_back(::xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  std::vector<xcb_atom_t> atoms;
  for (const auto cookie : cookies) {
    const XCBPointer<xcb_intern_atom_reply_t> reply(::xcb_intern_atom_reply(connection_, cookie, nullptr));
    atoms.push_back(reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
  }
  check();
  return atoms;
}

std::vector<std::string> X11Connection::names(std::span<const xcb_atom_t> atoms) {
  std::vector<xcb_get_atom_name_cookie_t> cookies;
  for (const xcb_atom_t atom : atoms) cookies.push_back(::xcb_get_atom_name(connection_, atom));
  std::vector<std::string> names;
  for (const auto cookie : cookies) {
    const XCBPointer<xcb_get_atom_name_reply_t> reply(::xcb_get_atom_name_reply(connection_, cookie, nullptr));
    if (!reply) continue;
    std::string name(::xcb_get_atom_name_name(reply.get()),
                     static_cast<std::size_t>(::xcb_get_atom_name_name_length(reply.get())));
    if (isTypeName(name)) names.push_back(std::move(name));
  }
  check();
  return names;
}

xcb_window_t X11Connection::selectionOwner(xcb_atom_t selection) {
  const XCBPointer<xcb_get_selection_owner_reply_t> reply(
      ::xcb_get_selection_owner_reply(connection_, ::xcb_get_selection_owner(connection_, selection), nullptr));
  check();
  return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

std::optional<X11Property> X11Connection::property(xcb_window_t window, xcb_atom_t name, bool removes) {
  X11Property property;
  for (std::uint32_t offset = 0;;) {
    const auto cookie =
        ::xcb_get_property(connection_, removes, window, name, XCB_GET_PROPERTY_TYPE_ANY, offset, kReplyUnits);
    const XCBPointer<xcb_get_property_reply_t> reply(::xcb_get_property_reply(connection_, cookie, nullptr));
    check();
    if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
    const int length = ::xcb_get_property_value_length(reply.get());
    property.type = reply->type;
    property.bytes.append(static_cast<const char *>(::xcb_get_property_value(reply.get())),
                          static_cast<std::size_t>(length));
    if (property.bytes.size() + reply->bytes_after > kMaximumContentBytes)
      throw PasteboardError(ErrorCode::tooLarge, "the clipboard holds too much");
    if (reply->bytes_after == 0 || length == 0) return property;
    offset += static_cast<std::uint32_t>(length) / 4;
  }
}

xcb_timestamp_t X11Connection::serverTime(const Patience &patience) {
  ::xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
  for (const Deadline deadline = patience.step();;) {
    const X11Event event = waitForEvent(deadline);
    const auto *notice = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
    if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY && notice->atom == XCB_ATOM_WM_NAME)
      return notice->time;
  }
}

X11Event X11Connection::pollEvent() {
  X11Event event(::xcb_poll_for_event(connection_));
  if (!event) check();
  return event;
}

X11Event X11Connection::waitForEvent(const Deadline &deadline) {
  flush();
  for (;;) {
    if (X11Event event = pollEvent()) return event;
    if (deadline.isOver())
      throw PasteboardError(ErrorCode::timeLimit,
                            "the program that owns the clipboard does not answer in time");
    pollfd waited = {::xcb_get_file_descriptor(connection_), POLLIN, 0};
    ::poll(&waited, 1, deadline.remainingMilliseconds());
  }
}

void X11Connection::flush() {
  ::xcb_flush(connection_);
  check();
}

std::vector<xcb_atom_t> atomsIn(const X11Property &property) {
  std::vector<xcb_atom_t> atoms(property.bytes.size() / sizeof(xcb_atom_t));
  if (!atoms.empty()) std::memcpy(atoms.data(), property.bytes.data(), atoms.size() * sizeof(xcb_atom_t));
  return atoms;
}

}  // namespace nimbo
