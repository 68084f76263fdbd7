// SPDX-License-Identifier: Apache-2.0
#include "importers/Packages/DocumentBudget.hpp"

#include <algorithm>

namespace nimbo {

bool DocumentBudget::spendBytes(std::uint64_t bytes) {
  if (bytes > bytes_)
    return end(ErrorCode::incomplete, "only the first 512 MiB of its unpacked parts are read");
  bytes_ -= bytes;
  return checkTime();
}

bool DocumentBudget::checkTime() {
  if (isSpent_) return false;
  return !deadline_.isOver() || end(ErrorCode::timeLimit, "the document takes too long to read whole");
}

std::uint32_t DocumentBudget::spendText(std::uint32_t units) {
  if (units > text_) end(ErrorCode::incomplete, "only the first 16 Mi units of the text are read");
  const std::uint32_t kept = std::min(units, text_);
  text_ -= kept;
  return kept;
}

void DocumentBudget::fail(ErrorCode code, std::string_view reason) {
  if (!error_) error_ = NSError::errorWithCode(code, reason);
}

bool DocumentBudget::end(ErrorCode code, std::string_view reason) {
  fail(code, reason);
  isSpent_ = true;
  return false;
}

}  // namespace nimbo
