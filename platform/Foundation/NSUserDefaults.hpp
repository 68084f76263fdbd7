// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <optional>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What the user has set: the entries of a property list file, and behind them values that the program
/// registers. Any thread may read and change them. Changes count at once in this process, and stand in the file
/// after `synchronize`.
///
///     NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
///     defaults.registerDefaults({{u"Language"_ns, u"en"_ns}});
///     const NSString language = defaults.stringForKey(u"Language"_ns);
///     defaults.setObject(u"de"_ns, u"Language"_ns);
///     if (!defaults.synchronize(&error)) NSLog(error.localizedFailureReason);
class NSUserDefaults {
 public:
  /// How long `synchronize` waits for others who write the file, in seconds.
  static constexpr double kLockSeconds = 10;

  /// Reads `path` now; a file that is missing or has no content counts as empty, and so does one that cannot be
  /// read or is no dictionary, which is logged.
  explicit NSUserDefaults(const NSString &path);
  NSUserDefaults(const NSUserDefaults &) = delete;
  NSUserDefaults &operator=(const NSUserDefaults &) = delete;

  /// The program's own, read on first use: `$QUIVERLEAF_DEFAULTS`, else "quiverleaf/defaults.plist" in
  /// `$XDG_CONFIG_HOME` when that is an absolute path, else in the home folder's ".config".
  static NSUserDefaults &standardUserDefaults();

  /// Adds values that count where the file has none; later ones replace earlier ones of the same key.
  void registerDefaults(const NSDictionary &defaults);
  /// The value that is set, else the registered one, else nil.
  id objectForKey(const NSString &key) const;
  /// The value when it is a string, else nil.
  NSString stringForKey(const NSString &key) const { return objectForKey(key).string(); }
  /// The value when it is an array of strings, else nothing.
  std::optional<std::vector<NSString>> stringArrayForKey(const NSString &key) const;
  /// Sets the value, which is to stand in a property list; nil and the null object remove it. Nothing happens
  /// when the key is nil.
  void setObject(id object, const NSString &key);
  /// Removes the value that is set; a registered one counts again.
  void removeObjectForKey(const NSString &key);
  /// Writes the changes into the file as it is by now, and reads what others have changed in it: of two
  /// processes that write at once, neither loses what the other one set under another key. Its folder is made
  /// when it is missing. The file is replaced as a whole; a lock file beside it, ".NAME.lock", stays. False
  /// when the file cannot be read or written; `*error` says why: it is then as it was, and the changes still
  /// wait.
  bool synchronize(NSError *error = nullptr);

 private:
  const NSString path_;
  /// One thread at a time is in `synchronize`; others read meanwhile.
  std::mutex synchronizing_;
  mutable std::mutex mutex_;
  NSDictionary values_;
  NSDictionary registered_;
  /// What was set since the last time in sync; the null object stands for what was removed.
  NSDictionary changes_;
};

}  // namespace nimbo
