// SPDX-License-Identifier: Apache-2.0
//
// The data-control protocol of Wayland, by which clients without a window read and own the clipboard. There are
// two of the same shape, the newer of which is called "ext"; what stands here fits both.
#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <memory>

namespace nimbo {

/// Destroys an object here and in the compositor.
template <std::uint32_t DestroyRequest>
struct DestroyProxy {
  void operator()(wl_proxy *proxy) const {
    ::wl_proxy_marshal_flags(proxy, DestroyRequest, nullptr, ::wl_proxy_get_version(proxy),
                             WL_MARSHAL_FLAG_DESTROY);
  }
};
using DataControlManager = std::unique_ptr<wl_proxy, DestroyProxy<2>>;
using DataControlDevice = std::unique_ptr<wl_proxy, DestroyProxy<1>>;
using DataControlSource = std::unique_ptr<wl_proxy, DestroyProxy<1>>;
using DataControlOffer = std::unique_ptr<wl_proxy, DestroyProxy<1>>;

/// What a device tells, in the protocol's order; an offer is owned by who is told of it, and null for none.
struct DataControlDeviceListener {
  void (*dataOffer)(void *data, wl_proxy *device, wl_proxy *offer);
  void (*selection)(void *data, wl_proxy *device, wl_proxy *offer);
  void (*finished)(void *data, wl_proxy *device);
  void (*primarySelection)(void *data, wl_proxy *device, wl_proxy *offer);
};
/// What a source tells: send the data of a type to a file, which is the receiver's then; it is over.
struct DataControlSourceListener {
  void (*send)(void *data, wl_proxy *source, const char *type, std::int32_t file);
  void (*cancelled)(void *data, wl_proxy *source);
};
/// What an offer tells: a type.
struct DataControlOfferListener {
  void (*offer)(void *data, wl_proxy *offer, const char *type);
};

/// The interface of a manager, of the older or newer protocol, by its name; null for other names.
const wl_interface *dataControlManagerInterface(const char *name);

DataControlDevice getDataDevice(wl_proxy *manager, wl_seat *seat);
DataControlSource createDataSource(wl_proxy *manager);
/// Null for no source.
void setSelection(wl_proxy *device, wl_proxy *source);
void offerType(wl_proxy *source, const char *type);
/// The file stays the caller's.
void receiveType(wl_proxy *offer, const char *type, int file);

}  // namespace nimbo
