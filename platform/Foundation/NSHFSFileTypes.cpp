// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSHFSFileTypes.hpp"

#include <unicode/ucnv.h>

#include <array>
#include <memory>
#include <string>

#include "platform/Foundation/NSFileAttributes.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/System/BigEndian.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kCodeLength = 4;
constexpr const char *kEncoding = "macintosh";

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

}  // namespace

NSString NSFileTypeForHFSTypeCode(OSType code) {
  std::string bytes;
  if (code != 0) appendBigEndian(bytes, code, kCodeLength);
  std::array<unichar, kCodeLength> units = {};
  UErrorCode status = U_ZERO_ERROR;
  const Converter converter(ucnv_open(kEncoding, &status), &ucnv_close);
  const std::int32_t length = ucnv_toUChars(converter.get(), units.data(), units.size(), bytes.data(),
                                            static_cast<std::int32_t>(bytes.size()), &status);
  return NSString::stringWithCharacters(
      u"'" + std::u16string(units.data(), U_FAILURE(status) ? 0 : static_cast<std::size_t>(length)) + u"'");
}

OSType NSHFSTypeCodeFromFileType(const NSString &fileType) {
  const std::u16string_view view = fileType.view();
  if (view.size() != kCodeLength + 2 || view.front() != u'\'' || view.back() != u'\'') return 0;
  return OSTypeFromString(fileType.substringWithRange({1, kCodeLength}));
}

NSString NSHFSTypeOfFile(const NSString &path) {
  const auto code = fileAttributeAtPath(path, NSFileHFSTypeCode(), true).integer();
  return code ? NSFileTypeForHFSTypeCode(static_cast<OSType>(*code)) : NSString();
}

OSType OSTypeFromString(const NSString &characters) {
  if (characters.length() != kCodeLength) return 0;
  std::array<char, kCodeLength + 1> bytes = {};
  UErrorCode status = U_ZERO_ERROR;
  const Converter converter(ucnv_open(kEncoding, &status), &ucnv_close);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  const std::int32_t length = ucnv_fromUChars(converter.get(), bytes.data(), bytes.size(),
                                              characters.characters(), kCodeLength, &status);
  if (U_FAILURE(status) || length != kCodeLength) return 0;
  return static_cast<OSType>(bigEndian(reinterpret_cast<const std::uint8_t *>(bytes.data()), kCodeLength));
}

}  // namespace nimbo
