// SPDX-License-Identifier: Apache-2.0
//
// Plug-in bundles, loaded into this process. One thread loads and calls them at a time.
//
//     const auto plugIn = CFPlugInCreate(path, &error);
//     if (!plugIn) return;
//     for (const CFUUIDBytes &factory : CFPlugInFindFactoriesForPlugInTypeInPlugIn(type, *plugIn))
//       if (const CFPlugInInstance object = CFPlugInInstanceCreate(*plugIn, factory, type)) use(object.get());
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Foundation/System/BundleLibrary.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A UUID, its bytes in the order in which they are written.
using CFUUIDBytes = std::array<std::uint8_t, 16>;

/// Reads "8B08C4BF-415B-11D8-B3F9-0003936726FC", in either case; nothing when it is no UUID.
std::optional<CFUUIDBytes> CFUUIDCreateFromString(const NSString &string);

/// What the function table of every plug-in object begins with.
struct IUnknownVTbl {
  /// Not used.
  void *reserved;
  /// Stores the object under the interface, with a reference more, and answers 0; else null and another number.
  std::int32_t (*QueryInterface)(void *thisInterface, const std::uint8_t *interfaceID, void **interface);
  /// Adds a reference and answers how many there are.
  std::uint32_t (*AddRef)(void *thisInterface);
  /// Takes a reference away and answers how many are left; at 0 the object is freed.
  std::uint32_t (*Release)(void *thisInterface);
};

/// One reference to an object of a plug-in, released with this handle; tests false when there is none.
class CFPlugInInstance {
 public:
  CFPlugInInstance() noexcept = default;
  /// Takes over one reference.
  explicit CFPlugInInstance(void *object) noexcept : object_(object) {}

  /// The object, borrowed; null when there is none.
  void *get() const noexcept NIMBO_LIFETIMEBOUND { return object_.get(); }
  /// Whether there is an object.
  explicit operator bool() const noexcept { return object_ != nullptr; }
  /// The object under another interface; none when it does not have that.
  CFPlugInInstance QueryInterface(const CFUUIDBytes &interfaceID) const;

 private:
  struct Release {
    void operator()(void *object) const noexcept;
  };
  std::unique_ptr<void, Release> object_;
};

/// A loaded plug-in bundle, whose code stays loaded.
class CFPlugIn {
 private:
  friend std::optional<CFPlugIn> CFPlugInCreate(const NSString &bundlePath, NSError *error);
  friend std::vector<CFUUIDBytes> CFPlugInFindFactoriesForPlugInTypeInPlugIn(const CFUUIDBytes &type,
                                                                             const CFPlugIn &plugIn);
  friend CFPlugInInstance CFPlugInInstanceCreate(const CFPlugIn &plugIn, const CFUUIDBytes &factory,
                                                 const CFUUIDBytes &type);

  explicit CFPlugIn(BundleLibrary library) : library_(std::move(library)) {}

  BundleLibrary library_;
};

/// Loads a bundle. Nothing when it cannot be loaded, or must not be, as `BundleLibrary` says. `*error` says
/// why, and the log, once for each bundle.
std::optional<CFPlugIn> CFPlugInCreate(const NSString &bundlePath, NSError *error = nullptr);

/// The factories that the bundle's CFPlugInTypes names for a type, in its order.
std::vector<CFUUIDBytes> CFPlugInFindFactoriesForPlugInTypeInPlugIn(const CFUUIDBytes &type,
                                                                    const CFPlugIn &plugIn);

/// Calls a factory of the bundle's CFPlugInFactories. None when that is missing or makes no object of the type.
CFPlugInInstance CFPlugInInstanceCreate(const CFPlugIn &plugIn, const CFUUIDBytes &factory,
                                        const CFUUIDBytes &type);

}  // namespace nimbo
