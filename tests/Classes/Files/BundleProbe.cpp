// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <string_view>

#include "Classes/Files/Bundle.hpp"
#include "Classes/Files/NSBundle+NSBundleNimboExtensions.hpp"

// A program that stands in a bundle: looks for its own new version, or says what its bundle is.

using namespace nimbo;

int main(int count, char **arguments) {
  constexpr int kOffered = 10, kUpToDate = 11;
  if (count > 1 && std::string_view(arguments[1]) == "check")
    return Bundle::checkForNewVersion() ? kOffered : kUpToDate;
  const auto print = [](const NSString &text) { std::puts(text ? text.UTF8String().c_str() : "nil"); };
  const NSBundle bundle = NSBundle::mainBundle();
  print(bundle.bundlePath());
  for (const NSString &text : {bundleName(bundle), localizedBundleName(bundle), getShortVersionString(bundle),
                               getInfoString(bundle), mainNibFile(bundle), logFile(bundle)})
    print(text);
  for (const NSBundle &plugin : loadPlugins()) print(plugin.bundlePath());
}
