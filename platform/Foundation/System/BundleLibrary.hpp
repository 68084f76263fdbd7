// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The code of a bundle in this process, which stays loaded for the life of the process: objects that it made,
/// exceptions that it threw and functions that it registered elsewhere may outlive every handle. It may be
/// copied and read from any thread.
///
///     NSError error;
///     const auto library = BundleLibrary::load(path, &error);
///     if (!library) return tell(error.localizedFailureReason);
///     const auto function = reinterpret_cast<Function>(library->symbol("function"));
class BundleLibrary {
 public:
  /// Loads the executable of the bundle at `path`. Nothing when it cannot be loaded, or must not be: the
  /// bundle, its folders "Contents" and "Contents/Linux", its information file and its library must belong to
  /// root or the user, be no symbolic links, and not be writable by group or others; so must the folder that
  /// holds it, which may be sticky instead and reached by links. What is loaded is what was checked. `*error`
  /// says why. A descriptor stays open for each bundle.
  static std::optional<BundleLibrary> load(const NSString &path, NSError *error = nullptr);

  /// The content of the information file that the executable was named by.
  const NSDictionary &infoDictionary() const NIMBO_LIFETIMEBOUND { return info_; }
  /// What the library exports under a name; null when it has no such thing itself, whatever libraries that it
  /// needs have.
  void *symbol(const std::string &name) const;

 private:
  BundleLibrary(NSDictionary info, void *library) : info_(std::move(info)), library_(library) {}

  NSDictionary info_;
  void *library_;
};

}  // namespace nimbo
