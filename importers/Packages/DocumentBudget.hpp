// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// What the reading of one document may cost, and what went wrong first. It is handed to whoever reads a part
/// of the document.
class DocumentBudget {
 public:
  /// Well below what callers wait.
  static constexpr double kSeconds = 6;
  /// Parts of the document behind so many unpacked bytes are left out.
  static constexpr std::uint64_t kMaximumBytes = std::uint64_t{512} << 20;
  /// Text behind so many units, of all parts together, is left out.
  static constexpr std::uint32_t kMaximumTextLength = 16u << 20;

  /// Whether there is time and room for these bytes; else it has become an error.
  bool spendBytes(std::uint64_t bytes);
  /// Whether there is time left.
  bool checkTime();
  /// How much of so many units of text may be kept; that it is less becomes an error.
  std::uint32_t spendText(std::uint32_t units);

  /// Keeps the error unless there is an earlier one.
  void fail(ErrorCode code, std::string_view reason);
  /// Whether nothing more shall be read.
  bool isSpent() const noexcept { return isSpent_; }
  /// Why the answer is not whole; nil when it is.
  const NSError &error() const noexcept { return error_; }

 private:
  bool end(ErrorCode code, std::string_view reason);

  Deadline deadline_ = Deadline::after(kSeconds);
  std::uint64_t bytes_ = kMaximumBytes;
  std::uint32_t text_ = kMaximumTextLength;
  bool isSpent_ = false;
  NSError error_;
};

}  // namespace nimbo
