// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"

#include <unicode/ucnv.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <optional>
#include <string>

#include "platform/CoreServices/TextEncodings/TECConverter.hpp"

namespace nimbo {
namespace {

struct Row {
  CFStringEncoding encoding;
  NSStringEncoding stringEncoding;
  const char *name;
  const char *converter;
};

constexpr Row kRows[] = {
#include "StringEncodings.inc"
};

static_assert(std::ranges::adjacent_find(kRows, std::ranges::greater_equal(), &Row::encoding) ==
              std::end(kRows));

constexpr NSStringEncoding kExtended = 0x80000000;

const Row *rowOf(CFStringEncoding encoding) {
  const Row *row = std::ranges::lower_bound(kRows, encoding, {}, &Row::encoding);
  return row != std::end(kRows) && row->encoding == encoding ? row : nullptr;
}

/// ICU's first name for what it knows by `name`; null when it knows none.
const char *canonicalName(const char *name) {
  UErrorCode status = U_ZERO_ERROR;
  const char *canonical = ucnv_getAlias(name, 0, &status);
  return U_SUCCESS(status) ? canonical : nullptr;
}

}  // namespace

bool CFStringIsEncodingAvailable(CFStringEncoding encoding) {
  std::unique_ptr<TECConverter> converter;
  return TECCreateConverter(converter, encoding, kCFStringEncodingUnicode) == noErr;
}

std::vector<CFStringEncoding> CFStringGetListOfAvailableEncodings() {
  std::vector<CFStringEncoding> available;
  for (const Row &row : kRows)
    if (CFStringIsEncodingAvailable(row.encoding)) available.push_back(row.encoding);
  return available;
}

NSStringEncoding CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding) {
  const Row *row = rowOf(encoding);
  return row ? row->stringEncoding : kCFStringEncodingInvalidId;
}

CFStringEncoding CFStringConvertNSStringEncodingToEncoding(NSStringEncoding encoding) {
  const Row *row = std::ranges::find(kRows, encoding, &Row::stringEncoding);
  // The long form of an encoding that has a short number is good, too.
  if (row == std::end(kRows)) row = (encoding & kExtended) ? rowOf(encoding & ~kExtended) : nullptr;
  return row ? row->encoding : kCFStringEncodingInvalidId;
}

CFStringEncoding CFStringConvertIANACharSetNameToEncoding(const NSString &name) {
  const std::string wanted = name.UTF8String();
  const char *const canonical = wanted.empty() ? nullptr : canonicalName(wanted.c_str());
  const Row *best = nullptr;
  for (const Row &row : kRows) {
    if (!*row.converter) continue;
    if (ucnv_compareNames(row.name, wanted.c_str()) == 0) return row.encoding;
    // ICU knows other names of converters that are not its own, too.
    const bool isICU = std::string_view(row.converter).find(':') == std::string_view::npos;
    const char *const other = canonical ? canonicalName(isICU ? row.converter : row.name) : nullptr;
    if (!other || std::string_view(other) != canonical) continue;
    // Of several with one converter, that of the short list is the usual one.
    if (!best || (best->stringEncoding & ~row.stringEncoding & kExtended)) best = &row;
  }
  return best ? best->encoding : kCFStringEncodingInvalidId;
}

NSString CFStringConvertEncodingToIANACharSetName(CFStringEncoding encoding) {
  const Row *row = rowOf(encoding);
  return row ? NSString::stringWithUTF8String(row->name) : NSString();
}

std::string_view converterNameOfEncoding(CFStringEncoding encoding) {
  const Row *row = rowOf(encoding);
  return row ? row->converter : std::string_view();
}

CFStringEncoding encodingWithByteOrderMark(CFStringEncoding encoding, std::string_view bytes,
                                           std::uint32_t *markLength) {
  using namespace std::literals;
  *markLength = 0;
  struct Mark {
    std::string_view bytes;
    CFStringEncoding encoding;
    CFStringEncoding found;
  };
  static constexpr Mark kMarks[] = {
      {"\xfe\xff"sv, kCFStringEncodingUnicode, kCFStringEncodingUTF16BE},
      {"\xff\xfe"sv, kCFStringEncodingUnicode, kCFStringEncodingUTF16LE},
      {"\0\0\xfe\xff"sv, kCFStringEncodingUTF32, kCFStringEncodingUTF32BE},
      {"\xff\xfe\0\0"sv, kCFStringEncodingUTF32, kCFStringEncodingUTF32LE},
  };
  for (const Mark &mark : kMarks) {
    if (mark.encoding != encoding || !bytes.starts_with(mark.bytes)) continue;
    *markLength = static_cast<std::uint32_t>(mark.bytes.size());
    return mark.found;
  }
  return encoding;
}

}  // namespace nimbo
