// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/WebKit/WebResource.hpp"

namespace NIMBO_PUBLIC nimbo {

class NSDictionary;

namespace detail {
struct WebArchiveStorage;
}
/// Ends the storage of an archive.
template <>
NIMBO_PUBLIC void destroyShared<detail::WebArchiveStorage>(ReferenceCounted *storage) noexcept;

/// A saved page with all that it is made of: a tree, in which every frame is an archive of its own. An
/// immutable handle whose copies share their storage. A default-made one is nil: it tests false and has no
/// parts.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     NSError error;
///     const WebArchive archive = WebArchive::archiveWithData(data, &error);
///     if (!archive) NSLog(error.localizedFailureReason);
///     for (const WebResource &image : archive.subresources()) NSLog(image.URL().absoluteString());
class WebArchive {
 public:
  /// How many archives may stand inside of each other, the outermost one included; frames further in are left
  /// out.
  static constexpr std::uint32_t kMaximumDepth = 64;
  /// How many archives and resources one may hold in all; those beyond are left out.
  static constexpr std::uint32_t kMaximumParts = 100'000;

  WebArchive() noexcept = default;

  /// An archive of these parts. Resources and frames that are nil are left out; nil when nothing is left, or
  /// frames would stand deeper inside of each other than may be.
  static WebArchive archiveWithMainResource(const WebResource &mainResource,
                                            std::vector<WebResource> subresources = {},
                                            std::vector<WebArchive> subframeArchives = {});
  /// Reads a property list, binary or XML. A part that is none, because it has the wrong type or lacks its
  /// data, is left out. Nil when the data is no archive: no property list, or none with any of an archive's
  /// parts.
  /// `*error` says that, or that frames or resources beyond the limits above are left out. The data of
  /// resources share the storage of a binary list.
  static WebArchive archiveWithData(const NSData &data, NSError *error = nullptr);

  /// The page itself; nil when the archive has none.
  WebResource mainResource() const;
  /// What the page shows and uses: images, style sheets ...; borrowed from this handle.
  std::span<const WebResource> subresources() const NIMBO_LIFETIMEBOUND;
  /// The frames of the page, in order; borrowed from this handle.
  std::span<const WebArchive> subframeArchives() const NIMBO_LIFETIMEBOUND;

  /// The archive as a binary property list; nil for nil and for one of too many parts for a property list.
  /// `*error` then says why.
  NSData data(NSError *error = nullptr) const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const WebArchive &other) const noexcept { return storage_ == other.storage_; }
  /// Whether all parts are equal; nil equals only nil.
  bool operator==(const WebArchive &other) const;

 private:
  using Storage = detail::WebArchiveStorage;
  struct Reading;

  static WebArchive archiveWithPropertyList(const NSDictionary &list, std::uint32_t depth, Reading &reading);
  id propertyList() const;
  explicit WebArchive(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
