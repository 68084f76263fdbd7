// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Frameworks.hpp"

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"

namespace nimbo {
inline namespace NSBundleNimboExtensions {

namespace {

NSString setting(const NSString &key, const NSString &standard) {
  NSString value = NSUserDefaults::standardUserDefaults().stringForKey(key);
  return value ? value : standard;
}

bool loadFramework(const NSString &name, const NSString &folder) {
  return loadBundleIfAvailable(stringByAppendingPathComponent(stringByExpandingTildeInPath(folder), name));
}

}  // namespace

bool loadBundleIfAvailable(const NSString &path) {
  const NSBundle bundle = NSBundle::bundleWithPath(path);
  return bundle && bundle.load();
}

bool loadSystemFrameworkIfAvailable(const NSString &name) {
  return loadFramework(name, setting(u"SystemFrameworksFolder"_ns, u"/System/Library/Frameworks"_ns));
}

bool loadPrivateSystemFrameworkIfAvailable(const NSString &name) {
  return loadFramework(name,
                       setting(u"PrivateSystemFrameworksFolder"_ns, u"/System/Library/PrivateFrameworks"_ns));
}

NSBundle NimboWebKitBundle() {
  return NSBundle::bundleWithIdentifier(
      setting(u"NimboWebKitBundleIdentifier"_ns, u"org.quiverleaf.NimboWebKit"_ns));
}

NSBundle NimboPDFKitBundle() {
  return NSBundle::bundleWithIdentifier(
      setting(u"NimboPDFKitBundleIdentifier"_ns, u"org.quiverleaf.NimboPDFKit"_ns));
}

NSBundle NimboAppKitBundle() {
  return NSBundle::bundleWithIdentifier(
      setting(u"NimboAppKitBundleIdentifier"_ns, u"org.quiverleaf.NimboAppKit"_ns));
}

NSBundle NimboFoundationBundle() {
  return NSBundle::bundleWithIdentifier(
      setting(u"NimboFoundationBundleIdentifier"_ns, u"org.quiverleaf.NimboFoundation"_ns));
}

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
