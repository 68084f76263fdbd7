// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

struct ClassDescription;

/// A folder that holds a program or a library with its information: NAME/Contents/Info.plist and, for this
/// system, NAME/Contents/Linux/EXECUTABLE. A default-made one is nil: it tests false and has no path. It never
/// changes, and any thread may ask it.
///
/// A bundle names its classes in its information: under "NimboClasses" a dictionary of the classes' names and,
/// for each, that of the function which the executable exports for it and which answers the class:
///
///     extern "C" const nimbo::ClassDescription *greeterClass();
///     <key>NimboClasses</key> <dict><key>Greeter</key><string>greeterClass</string></dict>
///     <key>NSPrincipalClass</key> <string>Greeter</string>
///
///     const NSBundle bundle(u"/usr/lib/quiverleaf/importers/PDF.mdimporter"_ns);
///     NSError error;
///     const NSDictionary info = bundle.infoDictionary(&error);
///     if (!info) NSLog(error.localizedFailureReason);
class NSBundle {
 public:
  /// A larger information file is not read.
  static constexpr std::uint32_t kMaximumInfoBytes = 1 << 20;

  NSBundle() noexcept = default;
  /// The bundle at the path, at which nothing is looked yet.
  explicit NSBundle(NSString path) : path_(std::move(path)) {}
  /// The bundle at the path; nil when there is none: no folder with an information file that can be read.
  static NSBundle bundleWithPath(const NSString &path);
  /// The main bundle or the first loaded one whose identifier this is; nil when there is none.
  static NSBundle bundleWithIdentifier(const NSString &identifier);
  /// The bundle that the running program lies in, in its Contents/Linux; for any other program the folder in
  /// which its file lies.
  static NSBundle mainBundle();
  /// The bundle in whose Contents/Linux the file lies that holds `address`, code or a constant; for any other
  /// file the folder in which it lies; the main bundle for the program itself, for an address of no file, and
  /// when the file was loaded by a path that leads nowhere any more.
  static NSBundle bundleForAddress(const void *address);

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(path_); }
  /// The path that the bundle was made with.
  const NSString &bundlePath() const NIMBO_LIFETIMEBOUND { return path_; }
  /// The content of Info.plist, read on every call. Nil when there is none that can be read, or it is no
  /// dictionary; `*error` says why.
  NSDictionary infoDictionary(NSError *error = nullptr) const;
  /// The content of an information file, at whatever path; else as `infoDictionary`.
  static NSDictionary infoDictionaryOfFile(const NSString &path, NSError *error = nullptr);
  /// What the information has as CFBundleIdentifier; nil when that is missing.
  NSString bundleIdentifier() const;
  /// Where the bundle's own plug-ins are, if it has any: Contents/PlugIns.
  NSString builtInPlugInsPath() const;
  /// The value under the key of `infoDictionary`; nil when there is none.
  id objectForInfoDictionaryKey(const NSString &key) const;
  /// Where the file that CFBundleExecutable names should be. Nil when that is missing or no plain file name.
  NSString executablePath() const;
  /// What the information names as CFBundleExecutable. Nil when that is missing or no plain file name.
  static NSString executableName(const NSDictionary &info);
  /// The names of the user's languages, the one they like best first, each that has a region or a variant with
  /// the plain one behind it, and as language tags: "pt_BR", "pt-BR", "pt", "en". One that is written in
  /// several scripts is there with its script, too, and the others behind it: "zh_TW", "zh-TW", "zh-Hant",
  /// "zh_Hant", "zh", "zh-Hans", "zh_Hans". From `$LANGUAGE`, `$LC_ALL`, `$LC_MESSAGES` and `$LANG`, on each
  /// call. Bundles have no localisations of their own that would leave any out.
  std::vector<NSString> preferredLocalizations() const;

  /// Loads the bundle's code into this process, where it stays; true when it was loaded before, as that of the
  /// main bundle always is. False when it cannot be loaded, or must not be, because others than root and the
  /// user could change it (see `BundleLibrary`); `*error` says why. What the code itself does while it is
  /// loaded cannot be limited.
  bool load(NSError *error = nullptr) const;
  /// Whether the code of the bundle that its path leads to now was loaded by `load`, or is the main bundle's.
  bool isLoaded() const;
  /// The class of this name among those that the bundle names, which is loaded for that as any library, also
  /// when it is the main bundle, whose program is none; it lives as long as the process. Null when there is
  /// none: the bundle cannot be loaded, does not name the class or does not export its function, or that raises
  /// or answers another class; `*error` says why.
  const ClassDescription *classNamed(const NSString &name, NSError *error = nullptr) const;
  /// The class that the information has as NSPrincipalClass, as `classNamed`.
  const ClassDescription *principalClass(NSError *error = nullptr) const;

 private:
  NSString path_;
};

}  // namespace nimbo
