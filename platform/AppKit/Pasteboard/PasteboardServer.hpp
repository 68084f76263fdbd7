// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/SharedPointer.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo::detail {

/// What keeps the contents of a pasteboard. Any thread may ask.
class PasteboardServer : public ReferenceCounted {
 public:
  PasteboardServer() = default;
  PasteboardServer(const PasteboardServer &) = delete;
  virtual ~PasteboardServer() = default;

  /// The pasteboard's name.
  virtual NSString name() const = 0;
  /// Whether it can be used; `*error` says why not.
  virtual bool isAvailable(NSError *error) const = 0;
  /// How often what it holds has been replaced, as far as is known here.
  virtual std::int64_t changeCount() const = 0;
  /// What there is, in the order of who wrote it.
  virtual std::vector<NSString> types(NSError *error) const = 0;
  /// Replaces all by these types, without data as yet.
  virtual bool declareTypes(std::span<const NSString> types, NSError *error) = 0;
  /// Gives a declared type its data.
  virtual bool setData(const NSData &data, const NSString &type, NSError *error) = 0;
  /// The data of a type; nil when there is none.
  virtual NSData dataForType(const NSString &type, NSError *error) const = 0;
  /// By when what is asked from now on must be answered, where other programs take part in that.
  virtual void setDeadline(const Deadline &) {}
};

/// That of nil, which answers why nothing comes of it.
PasteboardServer &nilPasteboard();
/// The pasteboard of a name in this process.
SharedPointer<PasteboardServer> privatePasteboard(const NSString &name);
/// A new one in this process, which ends with its last handle.
SharedPointer<PasteboardServer> newPrivatePasteboard(const NSString &name);
/// That of the desktop.
SharedPointer<PasteboardServer> desktopPasteboard();

}  // namespace nimbo::detail
