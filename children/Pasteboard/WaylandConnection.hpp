// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <wayland-client.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "children/Pasteboard/DataControl.hpp"
#include "children/Pasteboard/Patience.hpp"

namespace nimbo {

/// A connection to a Wayland compositor that knows a data-control protocol, and what it says the clipboard
/// holds. Its methods raise `PasteboardError` when the compositor has gone.
class WaylandConnection {
 public:
  /// To the compositor that WAYLAND_DISPLAY names; raises `PasteboardError` when there is none, or it has no
  /// such protocol.
  explicit WaylandConnection(const Patience &patience);
  WaylandConnection(const WaylandConnection &) = delete;
  ~WaylandConnection();

  wl_proxy *manager() const { return manager_.get(); }
  wl_proxy *device() const { return device_.get(); }
  /// The clipboard's offer; null when it is empty.
  wl_proxy *offer() const { return offer_.get(); }
  /// How many offers there have been.
  std::size_t offerCount() const { return offerCount_; }
  /// The types of the offer; of more than there may be, one too many.
  const std::vector<std::string> &types() const { return types_; }
  /// Readable when there is something to dispatch.
  int descriptor() const;
  /// Sends what has been asked for, and hears what has come.
  void dispatch();
  /// Waits until all that was asked for has been done; raises `timeLimit`.
  void roundTrip(const Patience &patience);

 private:
  static void global(void *data, wl_registry *registry, std::uint32_t name, const char *interface,
                     std::uint32_t version);
  static void dataOffer(void *data, wl_proxy *device, wl_proxy *offer);
  static void selection(void *data, wl_proxy *device, wl_proxy *offer);
  static void primarySelection(void *data, wl_proxy *device, wl_proxy *offer);
  static void finished(void *data, wl_proxy *device);
  static void offersType(void *data, wl_proxy *offer, const char *type);
  static constexpr DataControlDeviceListener kDeviceListener = {dataOffer, selection, finished,
                                                                primarySelection};
  static constexpr DataControlOfferListener kOfferListener = {offersType};

  void check() const;

  struct Disconnect {
    void operator()(wl_display *display) const { ::wl_display_disconnect(display); }
  };
  std::unique_ptr<wl_display, Disconnect> display_;
  wl_registry *registry_ = nullptr;
  wl_seat *seat_ = nullptr;
  DataControlManager manager_;
  DataControlDevice device_;
  /// An offer whose types are being told; it is not known yet what it is of.
  DataControlOffer newOffer_, offer_;
  std::size_t offerCount_ = 0;
  std::vector<std::string> newTypes_, types_;
  bool isFinished_ = false;
};

}  // namespace nimbo
