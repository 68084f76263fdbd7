// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/ExtendedEncoding.hpp"

#include <algorithm>
#include <iterator>

namespace nimbo {
namespace {

struct Extension {
  CFStringEncoding standard, extended;
};

/// EUC-KR is missing, whose converter has the maker's syllables itself.
constexpr Extension kExtensions[] = {
    {kCFStringEncodingISOLatin1, kCFStringEncodingWindowsLatin1},
    {kCFStringEncodingISOLatin5, kCFStringEncodingWindowsLatin5},
    {kCFStringEncodingISOLatinThai, kCFStringEncodingDOSThai},
    {kCFStringEncodingShiftJIS, kCFStringEncodingDOSJapanese},
    {kCFStringEncodingEUC_CN, kCFStringEncodingGBK_95},
    {kCFStringEncodingBig5, kCFStringEncodingBig5_HKSCS_1999},
};

}  // namespace

NSStringEncoding extendedEncoding(NSStringEncoding encoding) {
  const auto *const extension =
      std::ranges::find(kExtensions, CFStringConvertNSStringEncodingToEncoding(encoding), &Extension::standard);
  return extension == std::end(kExtensions) ? kCFStringEncodingInvalidId
                                            : CFStringConvertEncodingToNSStringEncoding(extension->extended);
}

}  // namespace nimbo
