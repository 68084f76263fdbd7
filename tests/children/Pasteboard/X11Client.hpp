// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <poll.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace nimbo {

/// A client of the X server that does as a test tells it, right or wrong.
class X11Client {
 public:
  using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;

  X11Client() : connection_(::xcb_connect(nullptr, nullptr)), window_(::xcb_generate_id(connection_)) {
    const xcb_screen_t &screen = *::xcb_setup_roots_iterator(::xcb_get_setup(connection_)).data;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    ::xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen.root, 0, 0, 1, 1, 0,
                        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, XCB_CW_EVENT_MASK, &events);
  }
  ~X11Client() { ::xcb_disconnect(connection_); }
  X11Client(const X11Client &) = delete;

  xcb_connection_t *connection() const { return connection_; }
  xcb_window_t window() const { return window_; }
  xcb_atom_t atom(std::string_view name) const {
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        ::xcb_intern_atom_reply(
            connection_,
            ::xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr),
        std::free);
    return reply->atom;
  }
  void own(std::string_view selection) const {
    ::xcb_set_selection_owner(connection_, window_, atom(selection), XCB_CURRENT_TIME);
    ::xcb_flush(connection_);
  }
  void set(xcb_window_t window, xcb_atom_t property, std::string_view type, int format,
           std::string_view bytes) const {
    ::xcb_change_property(
        connection_, XCB_PROP_MODE_REPLACE, window, property, atom(type), static_cast<std::uint8_t>(format),
        static_cast<std::uint32_t>(bytes.size() * 8) / static_cast<std::uint32_t>(format), bytes.data());
    ::xcb_flush(connection_);
  }
  std::string atoms(std::initializer_list<std::string_view> names) const {
    std::string bytes;
    for (const std::string_view name : names) {
      const xcb_atom_t one = name.empty() ? xcb_atom_t{XCB_ATOM_NONE} : atom(name);
      bytes.append(reinterpret_cast<const char *>(&one), sizeof one);
    }
    return bytes;
  }
  void watch(xcb_window_t window) const {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    ::xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &events);
  }
  /// Answers a request; with the property none, refuses it.
  void answer(const xcb_selection_request_event_t &request, xcb_atom_t property) const {
    xcb_generic_event_t bytes = {};
    auto &notice = reinterpret_cast<xcb_selection_notify_event_t &>(bytes);
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = property;
    ::xcb_send_event(connection_, 0, request.requestor, 0, reinterpret_cast<const char *>(&bytes));
    ::xcb_flush(connection_);
  }
  void ask(std::string_view selection, std::string_view target, std::string_view property,
           xcb_timestamp_t time = XCB_CURRENT_TIME) const {
    ::xcb_convert_selection(connection_, window_, atom(selection), atom(target), atom(property), time);
    ::xcb_flush(connection_);
  }
  /// The property's bytes, of which it is then rid; the name of their type is `*type`.
  std::string take(std::string_view property, std::string *type = nullptr) const {
    const auto cookie =
        ::xcb_get_property(connection_, 1, window_, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 24);
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        ::xcb_get_property_reply(connection_, cookie, nullptr), std::free);
    if (type) *type = reply->type == XCB_ATOM_NONE ? "" : nameOf(reply->type);
    return {static_cast<const char *>(::xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(::xcb_get_property_value_length(reply.get()))};
  }
  std::string nameOf(xcb_atom_t atom) const {
    const std::unique_ptr<xcb_get_atom_name_reply_t, decltype(&std::free)> reply(
        ::xcb_get_atom_name_reply(connection_, ::xcb_get_atom_name(connection_, atom), nullptr), std::free);
    return {::xcb_get_atom_name_name(reply.get()),
            static_cast<std::size_t>(::xcb_get_atom_name_name_length(reply.get()))};
  }
  /// Whether a property of a watched window is taken away before the window goes.
  bool waitUntilTaken() const {
    for (;;) {
      const Event event = waitForOne({XCB_PROPERTY_NOTIFY, XCB_DESTROY_NOTIFY});
      if (!event || (event->response_type & 0x7f) == XCB_DESTROY_NOTIFY) return false;
      if (reinterpret_cast<const xcb_property_notify_event_t &>(*event).state == XCB_PROPERTY_DELETE)
        return true;
    }
  }
  /// The next event of a kind, within some seconds; null when there is none.
  Event wait(int kind, double seconds = 60) const { return waitForOne({kind}, seconds); }

 private:
  Event waitForOne(std::initializer_list<int> kinds, double seconds = 60) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    do {
      while (xcb_generic_event_t *const event = ::xcb_poll_for_event(connection_)) {
        Event owned(event, std::free);
        if (std::ranges::find(kinds, event->response_type & 0x7f) != kinds.end()) return owned;
      }
      pollfd waited = {::xcb_get_file_descriptor(connection_), POLLIN, 0};
      ::poll(&waited, 1, 10);
    } while (std::chrono::steady_clock::now() < end && !::xcb_connection_has_error(connection_));
    return {nullptr, std::free};
  }

  xcb_connection_t *connection_;
  xcb_window_t window_;
};

}  // namespace nimbo
