// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

class id;

namespace detail {
struct WebResourceStorage;
}
/// Ends the storage of a resource.
template <>
NIMBO_PUBLIC void destroyShared<detail::WebResourceStorage>(ReferenceCounted *storage) noexcept;

/// What a page is made of, or refers to: its bytes, and what the server said of them. An immutable handle whose
/// copies share their storage. A default-made one is nil: it tests false, and all its parts are nil.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     const NSURL url = NSURL::URLWithString(u"http://example.org/"_ns);
///     const auto page = WebResource::resourceWithData(bytes, url, u"text/html"_ns, u"UTF-8"_ns);
///     page.MIMEType();  // "text/html"
class WebResource {
 public:
  WebResource() noexcept = default;

  /// A resource of these parts; nil when there is no data. The others may be nil, when nobody knows them.
  static WebResource resourceWithData(const NSData &data, const NSURL &URL, const NSString &MIMEType,
                                      const NSString &textEncodingName = NSString(),
                                      const NSString &frameName = NSString());

  /// The bytes.
  NSData data() const;
  /// Where they came from.
  NSURL URL() const;
  /// What they are, as "text/html".
  NSString MIMEType() const;
  /// The name of their character set, when they are text.
  NSString textEncodingName() const;
  /// The name of the frame that shows the resource; nil when it is shown in none.
  NSString frameName() const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const WebResource &other) const noexcept { return storage_ == other.storage_; }
  /// Whether all parts are equal; nil equals only nil.
  bool operator==(const WebResource &other) const;

 private:
  friend class WebArchive;

  using Storage = detail::WebResourceStorage;

  static WebResource resourceWithPropertyList(const id &propertyList);
  id propertyList() const;
  explicit WebResource(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
