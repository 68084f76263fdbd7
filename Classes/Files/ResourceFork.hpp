// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSHFSFileTypes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A row of bytes in a resource fork, found by its type and number.
struct Resource {
  /// The type.
  OSType type = 0;
  /// The number, by which the resources of one type are told apart.
  std::int16_t ID = 0;
  /// The bits of the format: compressed 1, changed 2, preload 4, protected 8, locked 16, purgeable 32.
  std::uint8_t attributes = 0;
  /// Nil when it has none; at most 255 characters of Mac Roman.
  NSString name = {};
  /// The content; a compressed one stays so.
  NSData data = {};
};

/// The typed, numbered resources that a file has beside its content, where file servers keep them: in an
/// extended attribute, or in a companion "._name" beside the file. One thread uses one at a time.
///
///     auto fork = ResourceFork::resourceForkForWritingAtPath(path);
///     if (fork && fork->addString(u"http://example.org/"_ns, OSTypeFromString(u"url "_ns), 256))
///       NSLog(u"%d bytes", fork->dataForType(OSTypeFromString(u"url "_ns), 256).length());
class ResourceFork {
 public:
  /// What the file has now; later changes are not seen. Nothing when it has no fork or a damaged one; `*error`
  /// says which.
  static std::optional<ResourceFork> resourceForkForReadingAtPath(const NSString &path,
                                                                  NSError *error = nullptr);
  /// The same, for changes; a file without a fork has an empty one. Nothing when there is no such file, or its
  /// fork is damaged.
  static std::optional<ResourceFork> resourceForkForWritingAtPath(const NSString &path,
                                                                  NSError *error = nullptr);

  /// The bytes of a resource; nil when there is none.
  NSData dataForType(OSType type, std::int16_t ID) const;
  /// All resources in the order of the fork; borrowed until it is changed.
  const std::vector<Resource> &resources() const noexcept NIMBO_LIFETIMEBOUND { return resources_; }

  /// Makes a resource, or gives one that is there this content; its name and its other attributes stay. The
  /// fork is written at once. False, with all as it was, when the fork was opened for reading, the data is nil,
  /// or the fork cannot be written or would hold more than 16 MB.
  bool addData(const NSData &data, OSType type, std::int16_t ID, NSError *error = nullptr);
  /// The same with the string in UTF-8.
  bool addString(const NSString &string, OSType type, std::int16_t ID, NSError *error = nullptr);
  /// Removes a resource; the last one takes the fork with it. False when there is none, or as above.
  bool removeType(OSType type, std::int16_t ID, NSError *error = nullptr);

 private:
  ResourceFork() = default;

  /// Writes the resources; takes them over when that is done.
  bool write(std::vector<Resource> resources, NSError *error);

  NSString path_;
  bool isForWriting_ = false;
  std::uint16_t attributes_ = 0;
  NSData reserved_;
  std::vector<Resource> resources_;
};

}  // namespace nimbo
