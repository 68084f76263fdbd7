// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// What is asked of a PDF, and how; without anything set, the text of all pages.
struct PDFTextOptions {
  /// Tried on a locked document, unless it is nil.
  NSString password = {};
  /// The numbers of the first page and of the last one, from 1 on.
  std::uint32_t firstPage = 1;
  std::uint32_t lastPage = UINT32_MAX;
  /// Whether the text has attributes; it is RTFD data then.
  bool attributed = false;
  /// Whether each page is a text of its own.
  bool byPage = false;
};

/// The options of a request. Raises NSInvalidArgumentException for a key that there is not, and for a value of
/// the wrong kind or one that makes no sense.
PDFTextOptions PDFTextOptionsOfDictionary(const NSDictionary &dictionary);

}  // namespace nimbo
