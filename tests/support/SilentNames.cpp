// SPDX-License-Identifier: Apache-2.0
#include "tests/support/SilentNames.hpp"

#include <dlfcn.h>
#include <netdb.h>

#include <atomic>
#include <chrono>
#include <string_view>
#include <thread>

namespace nimbo {
namespace {

constexpr std::chrono::seconds kSilence(8);
std::atomic<int> ended = 0;

}  // namespace

int endedSilentLookups() {
  return ended;
}

}  // namespace nimbo

/// Stands before the function of the system, for libraries that are loaded later, too.
extern "C" int getaddrinfo(const char *name, const char *service, const addrinfo *hints, addrinfo **found) {
  const bool isNumeric = hints && (hints->ai_flags & AI_NUMERICHOST) != 0;
  if (!isNumeric && name && std::string_view(name).ends_with("silent.invalid")) {
    std::this_thread::sleep_for(nimbo::kSilence);
    ++nimbo::ended;
    return EAI_AGAIN;
  }
  static const auto real = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  const bool isNear = !isNumeric && name && std::string_view(name) == "near.invalid";
  return real(isNear ? "127.0.0.1" : name, service, hints, found);
}
