// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "Classes/Files/ResourceFork.hpp"

namespace nimbo {

/// The bytes of a resource fork, and what is in them: a header of offsets and lengths, the contents of the
/// resources, and the map, which has a list of types, a list of resources for each type, and their names. It is
/// a plain value.
///
///     const auto map = ResourceMap::resourceMapWithData(bytes);
///     for (const Resource &resource : map->resources) NSLog(NSFileTypeForHFSTypeCode(resource.type));
struct ResourceMap {
  /// Bits of the fork as a whole.
  std::uint16_t attributes = 0;
  /// What stands between the header and the contents, for the use of the system and of programs; nil when there
  /// is nothing.
  NSData reserved;
  /// In the order of the map.
  std::vector<Resource> resources;

  /// Reads a fork. Nothing when any offset or length leads out of its area, or the lists overlap.
  static std::optional<ResourceMap> resourceMapWithData(const NSData &data);

  /// The bytes of a fork: types in the order in which they first come. Nil when the format has no room for the
  /// resources or for their names.
  NSData data() const;
};

}  // namespace nimbo
