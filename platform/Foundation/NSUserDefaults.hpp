// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What the user has set: the entries of a property list file, and behind them values that the program
/// registers. Any thread may read them, as soon as the last is registered.
///
///     NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
///     defaults.registerDefaults({{u"Language"_ns, u"en"_ns}});
///     const NSString language = defaults.stringForKey(u"Language"_ns);
class NSUserDefaults {
 public:
  /// Reads `path` once, now; a file that is missing or no dictionary counts as empty, and all but a missing one
  /// is logged.
  explicit NSUserDefaults(const NSString &path);

  /// The program's own, read on first use: `$QUIVERLEAF_DEFAULTS`, else "quiverleaf/defaults.plist" in
  /// `$XDG_CONFIG_HOME` when that is an absolute path, else in the home folder's ".config".
  static NSUserDefaults &standardUserDefaults();

  /// Adds values that count where the file has none; later ones replace earlier ones of the same key.
  void registerDefaults(const NSDictionary &defaults);
  /// The file's value, else the registered one, else nil.
  id objectForKey(const NSString &key) const;
  /// The value when it is a string, else nil.
  NSString stringForKey(const NSString &key) const { return objectForKey(key).string(); }
  /// The value when it is an array of strings, else nothing.
  std::optional<std::vector<NSString>> stringArrayForKey(const NSString &key) const;

 private:
  NSDictionary values_;
  NSDictionary registered_;
};

}  // namespace nimbo
