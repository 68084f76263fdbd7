// SPDX-License-Identifier: Apache-2.0
#include "platform/SystemConfiguration/SCNetworkReachability.hpp"

#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr SCNetworkConnectionFlags kNear = kSCNetworkFlagsIsLocalAddress | kSCNetworkFlagsIsDirect;

struct FreeAddresses {
  void operator()(addrinfo *addresses) const { freeaddrinfo(addresses); }
  void operator()(ifaddrs *addresses) const { freeifaddrs(addresses); }
};

/// The bytes of an IPv6 address; an IPv4 address is mapped into them, so that one comparison serves both.
using AddressBytes = std::array<std::uint8_t, 16>;

constexpr AddressBytes kMappedPrefix = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
constexpr std::size_t kMappedPrefixBytes = 12;

std::optional<AddressBytes> bytesOf(const sockaddr *address) {
  AddressBytes bytes = kMappedPrefix;
  if (address && address->sa_family == AF_INET)
    std::memcpy(&bytes[kMappedPrefixBytes], &reinterpret_cast<const sockaddr_in *>(address)->sin_addr,
                sizeof(in_addr));
  else if (address && address->sa_family == AF_INET6)
    std::memcpy(bytes.data(), &reinterpret_cast<const sockaddr_in6 *>(address)->sin6_addr, sizeof(in6_addr));
  else
    return std::nullopt;
  return bytes;
}

bool isMapped(const AddressBytes &bytes) {
  return std::equal(kMappedPrefix.begin(), kMappedPrefix.begin() + kMappedPrefixBytes, bytes.begin());
}

/// Loopback addresses, and those that stand for any address of this machine.
bool isLoopback(const AddressBytes &bytes) {
  constexpr AddressBytes kAny = {};
  constexpr AddressBytes kLoopback = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
  constexpr AddressBytes kMappedAny = kMappedPrefix;
  constexpr std::uint8_t kLoopbackNetwork = 127;
  return bytes == kAny || bytes == kLoopback || bytes == kMappedAny ||
         (isMapped(bytes) && bytes[kMappedPrefixBytes] == kLoopbackNetwork);
}

/// Whether two addresses are equal under the mask of an interface, which says something: one of no bits does
/// not.
bool isOnNetwork(const AddressBytes &bytes, const AddressBytes &network, const sockaddr *mask) {
  const std::optional<AddressBytes> maskBytes = bytesOf(mask);
  if (!maskBytes || isMapped(bytes) != isMapped(network)) return false;
  const std::size_t first = isMapped(bytes) ? kMappedPrefixBytes : 0;
  if (std::all_of(maskBytes->begin() + first, maskBytes->end(), [](std::uint8_t byte) { return byte == 0; }))
    return false;
  for (std::size_t index = first; index < bytes.size(); ++index)
    if ((bytes[index] & (*maskBytes)[index]) != (network[index] & (*maskBytes)[index])) return false;
  return true;
}

/// What the interfaces say of an address.
SCNetworkConnectionFlags flagsByInterfaces(const AddressBytes &bytes) {
  ifaddrs *list = nullptr;
  if (getifaddrs(&list) != 0) return 0;
  const std::unique_ptr<ifaddrs, FreeAddresses> interfaces(list);
  SCNetworkConnectionFlags flags = 0;
  for (const ifaddrs *interface = list; interface; interface = interface->ifa_next) {
    const std::optional<AddressBytes> own = bytesOf(interface->ifa_addr);
    if (!own || (interface->ifa_flags & IFF_UP) == 0) continue;
    if (*own == bytes) flags |= kSCNetworkFlagsIsLocalAddress;
    const bool isPointToPoint = (interface->ifa_flags & IFF_POINTOPOINT) != 0;
    if (isPointToPoint ? bytesOf(interface->ifa_dstaddr) == bytes
                       : isOnNetwork(bytes, *own, interface->ifa_netmask))
      flags |= kSCNetworkFlagsIsDirect;
  }
  return flags;
}

std::atomic<int> waitingNames = 0;

/// A question to the resolver, which the asker may give up while it goes on.
struct Resolution {
  Resolution() { ++waitingNames; }
  ~Resolution() { --waitingNames; }
  Resolution(const Resolution &) = delete;
  Resolution &operator=(const Resolution &) = delete;

  void ask(const std::string &name, int resolverFlags) {
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = resolverFlags;
    addrinfo *found = nullptr;
    if (getaddrinfo(name.c_str(), nullptr, &hints, &found) != 0) found = nullptr;
    const std::scoped_lock lock(mutex);
    addresses.reset(found);
    isDone = true;
    done.notify_all();
  }

  std::mutex mutex;
  std::condition_variable done;
  bool isDone = false;
  std::unique_ptr<addrinfo, FreeAddresses> addresses;
};

/// Whether the name is always this machine's (RFC 6761), which no name server has to be asked for.
bool isLoopbackName(std::string_view name) {
  if (name.ends_with('.')) name.remove_suffix(1);
  return equalsASCIINoCase(name, "localhost") || endsWithASCIINoCase(name, ".localhost");
}

/// The addresses of a name; none when it has none or they are not known in time.
std::unique_ptr<addrinfo, FreeAddresses> addressesOf(const char *nodename, const Deadline &deadline) {
  const auto resolution = std::make_shared<Resolution>();
  resolution->ask(nodename, AI_NUMERICHOST);
  if (resolution->addresses) return std::move(resolution->addresses);
  if (waitingNames > kMaximumWaitingHostNames) return nullptr;
  resolution->isDone = false;
  try {
    std::thread([resolution, name = std::string(nodename)] { resolution->ask(name, 0); }).detach();
  } catch (const std::system_error &) {
    return nullptr;
  }
  std::unique_lock lock(resolution->mutex);
  const auto isDone = [&] { return resolution->isDone; };
  if (deadline.isNever())
    resolution->done.wait(lock, isDone);
  else
    resolution->done.wait_until(lock, deadline.moment(), isDone);
  return std::move(resolution->addresses);
}

}  // namespace

SCNetworkConnectionFlags SCNetworkFlagsOfAddress(const sockaddr &address) {
  const std::optional<AddressBytes> bytes = bytesOf(&address);
  if (!bytes) return 0;
  return kSCNetworkFlagsReachable |
         (isLoopback(*bytes) ? kSCNetworkFlagsIsLocalAddress : flagsByInterfaces(*bytes));
}

bool SCNetworkCheckReachabilityByName(const char *nodename, SCNetworkConnectionFlags *flags,
                                      const Deadline &deadline) {
  if (isLoopbackName(nodename)) {
    *flags = kSCNetworkFlagsReachable | kSCNetworkFlagsIsLocalAddress;
    return true;
  }
  const std::unique_ptr<addrinfo, FreeAddresses> addresses = addressesOf(nodename, deadline);
  if (!addresses) return false;
  *flags = 0;
  bool isNear = true;
  for (const addrinfo *address = addresses.get(); address; address = address->ai_next) {
    const SCNetworkConnectionFlags found = SCNetworkFlagsOfAddress(*address->ai_addr);
    *flags |= found;
    isNear = isNear && (found & kNear) != 0;
  }
  if (!isNear) *flags &= ~kNear;
  return true;
}

}  // namespace nimbo
