// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A folder that holds a program or a library with its information: NAME/Contents/Info.plist and, for this
/// system, NAME/Contents/Linux/EXECUTABLE. It never changes, and any thread may ask it.
///
///     const NSBundle bundle(u"/usr/lib/quiverleaf/importers/PDF.mdimporter"_ns);
///     NSError error;
///     const NSDictionary info = bundle.infoDictionary(&error);
///     if (!info) NSLog(error.localizedFailureReason);
class NSBundle {
 public:
  /// A larger information file is not read.
  static constexpr std::uint32_t kMaximumInfoBytes = 1 << 20;

  /// The bundle at the path, at which nothing is looked yet.
  explicit NSBundle(NSString path) : path_(std::move(path)) {}
  /// The folder in which the running program's file lies.
  static NSBundle mainBundle();
  /// The bundle whose executable holds `address`, code or a constant; for a file that is no bundle's executable
  /// the folder in which it lies; the main bundle for the program itself and for an address of no file.
  static NSBundle bundleForAddress(const void *address);

  /// The path that the bundle was made with.
  const NSString &bundlePath() const NIMBO_LIFETIMEBOUND { return path_; }
  /// The content of Info.plist, read on every call. Nil when there is none that can be read, or it is no
  /// dictionary; `*error` says why.
  NSDictionary infoDictionary(NSError *error = nullptr) const;
  /// The content of an information file, at whatever path; else as `infoDictionary`.
  static NSDictionary infoDictionaryOfFile(const NSString &path, NSError *error = nullptr);
  /// The value under the key of `infoDictionary`; nil when there is none.
  id objectForInfoDictionaryKey(const NSString &key) const;
  /// Where the file that CFBundleExecutable names should be. Nil when that is missing or no plain file name.
  NSString executablePath() const;
  /// What the information names as CFBundleExecutable. Nil when that is missing or no plain file name.
  static NSString executableName(const NSDictionary &info);
  /// The names of the user's languages, the one they like best first, each that has a region or a variant with
  /// the plain one behind it: "pt_BR", "pt", "en". From `$LANGUAGE`, `$LC_ALL`, `$LC_MESSAGES` and `$LANG`, on
  /// each call. Bundles have no localisations of their own that would leave any out.
  std::vector<NSString> preferredLocalizations() const;

 private:
  NSString path_;
};

}  // namespace nimbo
