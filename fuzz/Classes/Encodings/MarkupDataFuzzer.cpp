// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

namespace {

void require(bool good) {
  if (!good) std::abort();
}

/// An encoding for each byte; none for those above the number of encodings.
nimbo::NSStringEncoding encodingAt(std::uint8_t index) {
  static const std::vector<nimbo::CFStringEncoding> encodings = nimbo::CFStringGetListOfAvailableEncodings();
  return index < encodings.size() ? nimbo::CFStringConvertEncodingToNSStringEncoding(encodings[index])
                                  : nimbo::kCFStringEncodingInvalidId;
}

}  // namespace

/// The first two bytes choose the supplied and the default encoding, which is detected when it is none. The
/// text is what its encoding says, where that makes sense of all bytes; and it can be written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size) {
  if (size < 2) return 0;
  const auto supplied = encodingAt(bytes[0]);
  const auto defaultEncoding = encodingAt(bytes[1]);
  const nimbo::NSData data = nimbo::NSData::dataWithBytes(bytes + 2, size - 2);
  const bool detects = defaultEncoding == nimbo::kCFStringEncodingInvalidId;
  const nimbo::DecodedMarkup decoded =
      detects ? nimbo::decodeMarkup(data, supplied) : nimbo::decodeMarkup(data, supplied, defaultEncoding);
  require(static_cast<bool>(decoded.string) == (decoded.encoding != nimbo::kCFStringEncodingInvalidId));
  if (!decoded.string) return 0;
  if (const nimbo::NSString strict = nimbo::initWithData(data, decoded.encoding))
    require(strict == decoded.string);

  auto used = nimbo::kCFStringEncodingInvalidId;
  const nimbo::NSData written = nimbo::markupData(decoded.string, &used);
  const nimbo::NSString again = nimbo::initWithData(written, used);
  require(static_cast<bool>(again));
  if (used != nimbo::NSUTF8StringEncoding && !decoded.string.view().starts_with(u'\ufeff'))
    require(again == decoded.string);
  return 0;
}
