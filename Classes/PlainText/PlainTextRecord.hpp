// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "Classes/PlainText/PlainTextOptions.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {
struct PlainTextConversion;
}

/// What a page is converted with: the context of `PlainTextHandler` and `SimplePlainTextHandler`. One record is
/// for one scan, and for one thread at a time. The handlers raise `std::bad_alloc` and `std::length_error` when
/// the text has no room.
///
///     PlainTextRecord record({.reformat = true});
///     GetTagsOfString(page, PlainTextHandler, &record, false);
///     const NSString text = record.hasText() ? std::move(record).text() : page;
class PlainTextRecord {
 public:
  /// A record with these options.
  explicit PlainTextRecord(const PlainTextOptions &options);
  PlainTextRecord(const PlainTextRecord &) = delete;
  PlainTextRecord &operator=(const PlainTextRecord &) = delete;
  ~PlainTextRecord();

  /// Begins anew, for another scan in which the whole page counts as its body.
  void restartEverywhere();

  /// Whether anything but white space was written.
  bool hasText() const;
  /// Whether text was left out because of `removeJunk`.
  bool isJunkFound() const;
  /// What was written, without a copy; there is nothing in the record afterwards.
  NSString text() &&;

  /// For the handlers.
  detail::PlainTextConversion &conversion() NIMBO_LIFETIMEBOUND { return *conversion_; }

 private:
  std::unique_ptr<detail::PlainTextConversion> conversion_;
};

}  // namespace nimbo
