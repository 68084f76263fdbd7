// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Desktop/DesktopServices.hpp"

#include <atomic>

#include "platform/Foundation/Desktop/SessionDesktop.hpp"
#include "platform/Foundation/NSNumber.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"

namespace nimbo {
namespace {

constexpr double kAlertSeconds = 120;

std::atomic<DesktopServices *> others = nullptr;

SessionDesktop::Options standardOptions() {
  const NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  NSString tool = defaults.stringForKey(u"BrowserTool"_ns);
  return {.alertSeconds = doubleValue(defaults.objectForKey(u"AlertTimeLimit"_ns)).value_or(kAlertSeconds),
          .browserTool = tool ? std::move(tool) : u"/usr/bin/xdg-open"_ns};
}

}  // namespace

DesktopServices::~DesktopServices() = default;

DesktopServices &DesktopServices::shared() {
  if (DesktopServices *const set = others) return *set;
  static SessionDesktop desktop(standardOptions());
  return desktop;
}

void DesktopServices::setShared(DesktopServices *services) {
  others = services;
}

}  // namespace nimbo
