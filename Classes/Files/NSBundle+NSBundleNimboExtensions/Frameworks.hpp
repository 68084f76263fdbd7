// SPDX-License-Identifier: Apache-2.0
//
// Bundles of code that may be there or not. Any thread may call.
//
//     if (loadSystemFrameworkIfAvailable(u"Speech.framework"_ns)) speak(text);
//     loadBundleIfAvailable(u"/opt/Example/Extra.bundle"_ns);
//     if (const NSBundle additions = NimboPDFKitBundle()) NSLog(additions.bundlePath());
#pragma once

#include "platform/Foundation/NSBundle.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSBundleNimboExtensions {

/// Loads the bundle at the path. False when nothing is there, when it is no bundle and when it cannot be
/// loaded.
bool loadBundleIfAvailable(const NSString &path);
/// The same for the name in the folder of the system's frameworks (user default "SystemFrameworksFolder").
bool loadSystemFrameworkIfAvailable(const NSString &name);
/// The same in the folder of its private ones (user default "PrivateSystemFrameworksFolder").
bool loadPrivateSystemFrameworkIfAvailable(const NSString &name);

/// The loaded bundle of the maker's additions to WebKit; nil when there is none. The user default
/// "NimboWebKitBundleIdentifier" names it.
NSBundle NimboWebKitBundle();
/// The same for PDFKit, by "NimboPDFKitBundleIdentifier".
NSBundle NimboPDFKitBundle();
/// The same for AppKit, by "NimboAppKitBundleIdentifier".
NSBundle NimboAppKitBundle();
/// The same for Foundation, by "NimboFoundationBundleIdentifier".
NSBundle NimboFoundationBundle();

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
