// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

#include "platform/AppKit/Pasteboard/PasteboardTypes.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/SharedPointer.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

namespace detail {
class PasteboardServer;
}
/// Ends what a pasteboard stands on.
template <>
NIMBO_PUBLIC void destroyShared<detail::PasteboardServer>(ReferenceCounted *server) noexcept;

/// What programs exchange by copying and pasting: the same thing in several types. A handle, one pointer wide,
/// which all copies share; a default-made one is nil, holds nothing and takes nothing. Any thread may use it.
///
///     const NSPasteboard pasteboard = NSPasteboard::generalPasteboard();
///     pasteboard.declareTypes({NSHTMLPboardType, NSStringPboardType});
///     pasteboard.setString(u"<b>bold</b>"_ns, NSHTMLPboardType);
///     pasteboard.setString(u"bold"_ns, NSStringPboardType);
///     const NSString text = pasteboard.stringForType(NSStringPboardType);
class NSPasteboard {
 public:
  NSPasteboard() noexcept = default;
  /// One that stands on what keeps its contents; nil for null.
  explicit NSPasteboard(SharedPointer<detail::PasteboardServer> server) : server_(std::move(server)) {}
  /// The clipboard of the desktop that this process is part of, X11 or Wayland. What is written to it stays
  /// there when this process ends, until someone else copies something. Without a desktop it is unavailable:
  /// what is read is nil, and nothing is written.
  static NSPasteboard generalPasteboard();
  /// The pasteboard of a name in this process, which other processes do not see; it lives as long as the
  /// process.
  static NSPasteboard pasteboardWithName(const NSString &name);
  /// A new one in this process, which nobody else has.
  static NSPasteboard pasteboardWithUniqueName();

  /// Its name; nil when this is.
  NSString name() const;
  /// Whether it can be used; otherwise `*error` says why.
  bool isAvailable(NSError *error = nullptr) const;
  /// A number that grows when what it holds is replaced through this process; 0 for nil.
  std::int64_t changeCount() const;
  /// What there is, in the order of who wrote it; `*error` says why there is nothing.
  std::vector<NSString> types(NSError *error = nullptr) const;
  /// The first of the given types that is there; nil when none is, and `*error` says why.
  NSString availableTypeFromArray(std::span<const NSString> types, NSError *error = nullptr) const;

  /// Replaces all that is there by these types, of which nobody provides data later: it is set next. False when
  /// the pasteboard is unavailable; `*error` says why.
  bool declareTypes(std::span<const NSString> types, NSError *error = nullptr) const;
  /// The same.
  bool declareTypes(std::initializer_list<NSString> types, NSError *error = nullptr) const;
  /// Sets the data of a declared type. False when it is not declared, the data is nil, or somebody else has
  /// copied something since or the desktop is gone; `*error` says so.
  bool setData(const NSData &data, const NSString &type, NSError *error = nullptr) const;
  /// Sets a string, as UTF-8.
  bool setString(const NSString &string, const NSString &type, NSError *error = nullptr) const;
  /// Sets a property list, as XML.
  bool setPropertyList(const id &list, const NSString &type, NSError *error = nullptr) const;

  /// The data of a type; nil when there is none or who has it does not give it in time; `*error` says why.
  NSData dataForType(const NSString &type, NSError *error = nullptr) const;
  /// The data of a type as a string, read as UTF-8, with damage replaced; nil as above.
  NSString stringForType(const NSString &type, NSError *error = nullptr) const;
  /// The property list that is there; nil as above, and when it is none.
  id propertyListForType(const NSString &type, NSError *error = nullptr) const;

  /// By when what is asked of it from now on, through whatever handle, must be answered; never at first. It
  /// shortens what the programs of the desktop have anyway; a pasteboard of this process waits for nobody.
  void setDeadline(const Deadline &deadline) const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(server_); }

 private:
  /// That of a nil pasteboard answers why nothing comes of it.
  detail::PasteboardServer &server() const;

  SharedPointer<detail::PasteboardServer> server_;
};

}  // namespace nimbo
