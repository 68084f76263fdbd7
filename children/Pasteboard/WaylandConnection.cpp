// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/WaylandConnection.hpp"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "children/Pasteboard/PasteboardError.hpp"
#include "children/Pasteboard/TypeNames.hpp"

namespace nimbo {
WaylandConnection::WaylandConnection(const Patience &patience) : display_(::wl_display_connect(nullptr)) {
  if (!display_)
    throw PasteboardError(ErrorCode::other,
                          "the Wayland compositor that WAYLAND_DISPLAY names does not answer");
  static constexpr wl_registry_listener kListener = {global, [](void *, wl_registry *, std::uint32_t) {}};
  registry_ = ::wl_display_get_registry(display_.get());
  ::wl_registry_add_listener(registry_, &kListener, this);
  roundTrip(patience);
  if (!manager_)
    throw PasteboardError(ErrorCode::unsupportedType,
                          "the Wayland compositor has no data-control protocol, which lets programs without a "
                          "window use the clipboard");
  if (!seat_) throw PasteboardError(ErrorCode::other, "the Wayland compositor has no seat");
  device_ = getDataDevice(manager_.get(), seat_);
  ::wl_proxy_add_listener(
      device_.get(), reinterpret_cast<void (**)()>(const_cast<DataControlDeviceListener *>(&kDeviceListener)),
      this);
  roundTrip(patience);
}

WaylandConnection::~WaylandConnection() {
  newOffer_.reset();
  offer_.reset();
  device_.reset();
  manager_.reset();
  if (seat_) ::wl_seat_destroy(seat_);
  ::wl_registry_destroy(registry_);
}

void WaylandConnection::check() const {
  if (::wl_display_get_error(display_.get()) != 0 || isFinished_)
    throw PasteboardError(ErrorCode::other, "the Wayland compositor has gone");
}

int WaylandConnection::descriptor() const {
  return ::wl_display_get_fd(display_.get());
}

void WaylandConnection::dispatch() {
  while (::wl_display_prepare_read(display_.get()) != 0) ::wl_display_dispatch_pending(display_.get());
  ::wl_display_flush(display_.get());
  pollfd ready = {descriptor(), POLLIN, 0};
  if (::poll(&ready, 1, 0) > 0)
    ::wl_display_read_events(display_.get());
  else
    ::wl_display_cancel_read(display_.get());
  ::wl_display_dispatch_pending(display_.get());
  ::wl_display_flush(display_.get());
  check();
}

void WaylandConnection::roundTrip(const Patience &patience) {
  bool isDone = false;
  static constexpr wl_callback_listener kListener = {
      [](void *data, wl_callback *, std::uint32_t) { *static_cast<bool *>(data) = true; }};
  wl_callback *const callback = ::wl_display_sync(display_.get());
  ::wl_callback_add_listener(callback, &kListener, &isDone);
  const std::unique_ptr<wl_callback, void (*)(wl_callback *)> owned(callback, ::wl_callback_destroy);
  for (const Deadline deadline = patience.step();;) {
    dispatch();
    if (isDone) return;
    if (deadline.isOver())
      throw PasteboardError(ErrorCode::timeLimit, "the Wayland compositor does not answer in time");
    pollfd waited = {descriptor(), POLLIN, 0};
    ::poll(&waited, 1, deadline.remainingMilliseconds());
  }
}

void WaylandConnection::global(void *data, wl_registry *registry, std::uint32_t name, const char *interface,
                               std::uint32_t version) {
  auto &self = *static_cast<WaylandConnection *>(data);
  if (!self.seat_ && std::string_view(interface) == wl_seat_interface.name)
    self.seat_ = static_cast<wl_seat *>(::wl_registry_bind(registry, name, &wl_seat_interface, 1));
  const wl_interface *const manager = dataControlManagerInterface(interface);
  if (!manager || self.manager_) return;
  const std::uint32_t known = std::min(version, static_cast<std::uint32_t>(manager->version));
  self.manager_.reset(static_cast<wl_proxy *>(::wl_registry_bind(registry, name, manager, known)));
}

void WaylandConnection::dataOffer(void *data, wl_proxy * /*device*/, wl_proxy *offer) {
  auto &self = *static_cast<WaylandConnection *>(data);
  self.newOffer_.reset(offer);
  self.newTypes_.clear();
  ::wl_proxy_add_listener(
      offer, reinterpret_cast<void (**)()>(const_cast<DataControlOfferListener *>(&kOfferListener)), data);
}

void WaylandConnection::offersType(void *data, wl_proxy *offer, const char *type) {
  auto &self = *static_cast<WaylandConnection *>(data);
  if (offer == self.newOffer_.get() && isTypeName(type) && self.newTypes_.size() <= kMaximumTypes)
    self.newTypes_.emplace_back(type);
}

void WaylandConnection::selection(void *data, wl_proxy * /*device*/, wl_proxy *offer) {
  auto &self = *static_cast<WaylandConnection *>(data);
  ++self.offerCount_;
  self.offer_.reset();
  self.types_.clear();
  if (!offer || offer != self.newOffer_.get()) return;
  self.offer_ = std::move(self.newOffer_);
  self.types_ = std::move(self.newTypes_);
}

void WaylandConnection::primarySelection(void *data, wl_proxy * /*device*/, wl_proxy *offer) {
  auto &self = *static_cast<WaylandConnection *>(data);
  if (offer && offer == self.newOffer_.get()) self.newOffer_.reset();
}

void WaylandConnection::finished(void *data, wl_proxy * /*device*/) {
  static_cast<WaylandConnection *>(data)->isFinished_ = true;
}

}  // namespace nimbo
