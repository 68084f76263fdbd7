// SPDX-License-Identifier: Apache-2.0
//
// What bundles say of themselves in their information; nil where they do not say it. Any thread may ask.
//
//     const NSBundle bundle(u"/opt/Example"_ns);
//     const NSString name = localizedBundleName(bundle);
//     NSLog(u"%@ %@", name, getShortVersionString(bundle));
#pragma once

#include "platform/Foundation/NSBundle.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSBundleNimboExtensions {

/// CFBundleShortVersionString: the version as people know it.
NSString getShortVersionString(const NSBundle &bundle);
/// CFBundleGetInfoString: a line about version and rights.
NSString getInfoString(const NSBundle &bundle);
/// NSMainNibFile: the name of the main user interface.
NSString mainNibFile(const NSBundle &bundle);
/// CFBundleName.
NSString bundleName(const NSBundle &bundle);
/// CFBundleName in the user's language, where the bundle has it.
NSString localizedBundleName(const NSBundle &bundle);

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
