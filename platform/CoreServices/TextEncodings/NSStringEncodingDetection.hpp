// SPDX-License-Identifier: Apache-2.0
//
// Text whose encoding nobody named. Any thread may detect it.
//
//     const DetectedString text = stringWithDetectedEncoding("caf\xc3\xa9");
//     text.string;  // "café"
//     text.encodingName;  // "UTF-8"
#pragma once

#include <string_view>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Text whose encoding nobody named, decoded.
struct DetectedString {
  /// The text without a byte order mark, its line endings as they were; nil when the bytes are not text.
  NSString string;
  /// The IANA name of the encoding, as "UTF-8" or "windows-1252" ("US-ASCII" when there is nothing else;
  /// "UTF-16" or "UTF-32" behind a byte order mark); nil when the text is. `initWithData` reads the same text
  /// in it, but for what the next field says.
  NSString encodingName;
  /// Whether damaged sequences became U+FFFD or were dropped at the end: only in UTF-8 that is valid for by far
  /// the greater part, in UTF-16 and in UTF-32.
  bool usedLossyConversion = false;
};

/// Decodes text by its byte order mark, else by the pattern of its zero bytes (UTF-16, UTF-32), else as UTF-8,
/// else by the statistics of its letters, else as windows-1252, else as macintosh or IBM850. Bytes with more
/// than a few control characters are not text, but for the shifts of ISO-2022-KR. `isCut` says that the bytes
/// are the beginning of longer ones; a character that the cut divides is dropped. No bytes are the empty
/// string.
DetectedString stringWithDetectedEncoding(std::string_view bytes, Flag isCut = false);

}  // namespace nimbo
