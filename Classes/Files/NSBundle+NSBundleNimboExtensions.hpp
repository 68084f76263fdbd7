// SPDX-License-Identifier: Apache-2.0
//
// Bundles: what they are called, their plug-ins, frameworks that may be there, and folders of their own. Any
// thread may call.
//
//     const NSString name = localizedBundleName(NSBundle::mainBundle());
//     for (const NSBundle &plugin : loadPlugins()) NSLog(plugin.bundlePath());
//     const NSString folder = bundleTemporaryDirectory();
#pragma once

#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Frameworks.hpp"
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Information.hpp"
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Locations.hpp"
#include "Classes/Files/NSBundle+NSBundleNimboExtensions/Plugins.hpp"
