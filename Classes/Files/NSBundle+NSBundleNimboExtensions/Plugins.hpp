// SPDX-License-Identifier: Apache-2.0
//
// Plug-in bundles in a folder, by their paths with symbolic links resolved, in listing order. What is no
// bundle, or cannot be loaded where it has to be, is left out. Any thread may call.
//
//     for (const NSBundle &plugin : loadPluginsOfClassName(u"Exporter"_ns, folder)) {
//       const ClassDescription &exporter = *plugin.classNamed(u"Exporter"_ns);
//       if (exporter.make) use(exporter.make());
//     }
#pragma once

#include <vector>

#include "platform/Foundation/NSBundle.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSBundleNimboExtensions {

/// All bundles in the folder, none of which is loaded for that.
std::vector<NSBundle> loadPluginsAtPath(const NSString &path);
/// Those whose principal class this is; all are loaded.
std::vector<NSBundle> loadPluginsOfClass(const ClassDescription &description, const NSString &atPath);
/// Those in which a class of this name can be found; all are loaded.
std::vector<NSBundle> loadPluginsOfClassName(const NSString &name, const NSString &atPath);

/// `loadPluginsAtPath` of the main bundle's own plug-ins.
std::vector<NSBundle> loadPlugins();
/// `loadPluginsOfClass` of the main bundle's own plug-ins.
std::vector<NSBundle> loadPluginsOfClass(const ClassDescription &description);
/// `loadPluginsOfClassName` of the main bundle's own plug-ins.
std::vector<NSBundle> loadPluginsOfClassName(const NSString &name);

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
