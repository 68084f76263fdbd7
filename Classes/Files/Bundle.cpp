// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/Bundle.hpp"

#include "Classes/Files/UpdateCheck.hpp"
#include "platform/Foundation/NSNumber.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"

namespace nimbo {
namespace {

constexpr double kTimeLimitSeconds = 10;

}  // namespace

bool Bundle::checkForNewVersion() {
  const NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  const UpdateCheck check{
      .application = NSBundle::mainBundle(),
      .library = NSBundle::bundleForAddress(&kTimeLimitSeconds),
      .list = updateListOfHost(defaults.stringForKey(u"UpdateHost"_ns)),
      .timeLimitSeconds = doubleValue(defaults.objectForKey(u"UpdateTimeLimit"_ns)).value_or(kTimeLimitSeconds),
      .desktop = DesktopServices::shared()};
  return check.run();
}

}  // namespace nimbo
