// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/DataControl.hpp"

#include <algorithm>
#include <cstring>

namespace nimbo {
namespace {

/// The numbers of requests in their interfaces; those of destruction stand with the owning pointers.
constexpr std::uint32_t kCreateDataSource = 0, kGetDataDevice = 1, kSetSelection = 0, kOfferType = 0,
                        kReceiveType = 0;

/// A protocol: its four interfaces, which name each other. Signatures are the library's: "n" a new object, "o"
/// an object, "s" a string, "h" a file, "?" may be null; a number is the version that it came with.
struct Protocol {
  const char *managerName, *deviceName, *sourceName, *offerName;
  /// The version with the primary selection, which is the newest known here.
  int version;
  const char *primarySelection;

  const wl_interface *seatTypes[2] = {&device, &wl_seat_interface};
  const wl_interface *sourceTypes[1] = {&source};
  const wl_interface *offerTypes[1] = {&offer};
  const wl_interface *noTypes[2] = {};

  wl_message offerRequests[2] = {{"receive", "sh", noTypes}, {"destroy", "", noTypes}};
  wl_message offerEvents[1] = {{"offer", "s", noTypes}};
  wl_message sourceRequests[2] = {{"offer", "s", noTypes}, {"destroy", "", noTypes}};
  wl_message sourceEvents[2] = {{"send", "sh", noTypes}, {"cancelled", "", noTypes}};
  wl_message deviceRequests[3] = {{"set_selection", "?o", sourceTypes},
                                  {"destroy", "", noTypes},
                                  {"set_primary_selection", primarySelection, sourceTypes}};
  wl_message deviceEvents[4] = {{"data_offer", "n", offerTypes},
                                {"selection", "?o", offerTypes},
                                {"finished", "", noTypes},
                                {"primary_selection", primarySelection, offerTypes}};
  wl_message managerRequests[3] = {
      {"create_data_source", "n", sourceTypes}, {"get_data_device", "no", seatTypes}, {"destroy", "", noTypes}};

  wl_interface offer = {offerName, version, 2, offerRequests, 1, offerEvents};
  wl_interface source = {sourceName, version, 2, sourceRequests, 2, sourceEvents};
  wl_interface device = {deviceName, version, 3, deviceRequests, 4, deviceEvents};
  wl_interface manager = {managerName, version, 3, managerRequests, 0, nullptr};
};

const Protocol kProtocols[] = {
    {"ext_data_control_manager_v1", "ext_data_control_device_v1", "ext_data_control_source_v1",
     "ext_data_control_offer_v1", 1, "?o"},
    {"zwlr_data_control_manager_v1", "zwlr_data_control_device_v1", "zwlr_data_control_source_v1",
     "zwlr_data_control_offer_v1", 2, "2?o"},
};

const Protocol &protocolOf(wl_proxy *manager) {
  const char *const name = ::wl_proxy_get_class(manager);
  return *std::ranges::find_if(
      kProtocols, [name](const Protocol &protocol) { return std::strcmp(protocol.managerName, name) == 0; });
}

}  // namespace

const wl_interface *dataControlManagerInterface(const char *name) {
  const auto *const protocol = std::ranges::find_if(
      kProtocols, [name](const Protocol &other) { return std::strcmp(other.managerName, name) == 0; });
  return protocol == std::end(kProtocols) ? nullptr : &protocol->manager;
}

DataControlDevice getDataDevice(wl_proxy *manager, wl_seat *seat) {
  return DataControlDevice(::wl_proxy_marshal_flags(manager, kGetDataDevice, &protocolOf(manager).device,
                                                    ::wl_proxy_get_version(manager), 0, nullptr, seat));
}

DataControlSource createDataSource(wl_proxy *manager) {
  return DataControlSource(::wl_proxy_marshal_flags(manager, kCreateDataSource, &protocolOf(manager).source,
                                                    ::wl_proxy_get_version(manager), 0, nullptr));
}

void setSelection(wl_proxy *device, wl_proxy *source) {
  ::wl_proxy_marshal_flags(device, kSetSelection, nullptr, ::wl_proxy_get_version(device), 0, source);
}

void offerType(wl_proxy *source, const char *type) {
  ::wl_proxy_marshal_flags(source, kOfferType, nullptr, ::wl_proxy_get_version(source), 0, type);
}

void receiveType(wl_proxy *offer, const char *type, int file) {
  ::wl_proxy_marshal_flags(offer, kReceiveType, nullptr, ::wl_proxy_get_version(offer), 0, type, file);
}

}  // namespace nimbo
