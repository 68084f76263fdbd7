// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>

#include "platform/Foundation/NSError.hpp"

namespace nimbo {

/// Why the clipboard cannot be read or owned; `what` is a clause for people.
class PasteboardError : public std::runtime_error {
 public:
  PasteboardError(ErrorCode reason, const std::string &clause) : std::runtime_error(clause), code(reason) {}

  const ErrorCode code;
};

/// Who owned the clipboard has ended, and another program owns it, so that it may be read anew.
class OwnerReplaced : public PasteboardError {
 public:
  using PasteboardError::PasteboardError;
};

}  // namespace nimbo
