// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Files.hpp"

#include <string_view>

#include "Classes/Characters/AnswerOr.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/System/DataWriting.hpp"

namespace nimbo {
namespace {

constexpr std::int32_t kLowestDetectedEncoding = -16;
constexpr auto kUnknownEncoding = static_cast<NSStringEncoding>(-1);

NSStringEncoding theDefaultEncoding = NSUTF8StringEncoding;

bool isToBeDetected(NSStringEncoding encoding) {
  const auto number = static_cast<std::int32_t>(encoding);
  return number >= kLowestDetectedEncoding && number <= 0;
}

/// Reads what detection does not take for text.
NSString stringWithLegacyReader(const NSData &data) {
  const std::string_view bytes = data.view();
  if (bytes.starts_with("\xfe\xff") || bytes.starts_with("\xff\xfe"))
    if (NSString string = initWithData(data, NSUnicodeStringEncoding)) return string;
  if (NSString string = initWithData(data, NSUTF8StringEncoding)) return string;
  return initWithData(data, NSMacOSRomanStringEncoding);
}

NSString read(const NSString &path, NSStringEncoding encoding, NSStringEncoding &used) {
  const bool detects = isToBeDetected(encoding);
  if (detects) used = kUnknownEncoding;
  const NSData data = NSData::dataWithContentsOfFile(path);
  if (!detects) return initWithData(data, encoding);
  if (!data) return NSString();
  const DetectedString found = stringWithDetectedEncoding(data.view());
  if (!found.string) return stringWithLegacyReader(data);
  // No encoding reads damaged text back, but detection does.
  if (found.usedLossyConversion) return found.string;
  used =
      CFStringConvertEncodingToNSStringEncoding(CFStringConvertIANACharSetNameToEncoding(found.encodingName));
  return found.string;
}

bool writeAndReport(const NSString &string, const NSString &path, bool atomically, NSStringEncoding encoding,
                    NSStringEncoding *usedEncoding) {
  if (usedEncoding) *usedEncoding = encoding;
  return answerOr(false, [&] {
    const NSData data = dataUsingEncoding(string, encoding);
    return data && writeDataToFile(data, path, atomically);
  });
}

}  // namespace

inline namespace NSStringNimboExtensions {

NSString stringWithContentsOfFile(const NSString &path, NSStringEncoding encoding,
                                  NSStringEncoding *usedEncoding) {
  NSStringEncoding used = encoding;
  NSString string = answerOr(NSString(), [&] { return read(path, encoding, used); });
  if (usedEncoding) *usedEncoding = used;
  return string;
}

bool writeToFile(const NSString &string, const NSString &path, Flag atomically, NSStringEncoding encoding) {
  return writeAndReport(string, path, atomically, encoding, nullptr);
}

bool writeToFileUsingDefaultEncoding(const NSString &string, const NSString &path, Flag atomically,
                                     NSStringEncoding *usedEncoding) {
  return writeAndReport(string, path, atomically, defaultEncoding(), usedEncoding);
}

bool writeToFileUsingSmallestEncoding(const NSString &string, const NSString &path, Flag atomically,
                                      NSStringEncoding *usedEncoding) {
  return writeAndReport(string, path, atomically, smallestEncoding(string), usedEncoding);
}

bool writeToFileUsingFastestEncoding(const NSString &string, const NSString &path, Flag atomically,
                                     NSStringEncoding *usedEncoding) {
  return writeAndReport(string, path, atomically, fastestEncoding(string), usedEncoding);
}

NSStringEncoding defaultEncoding() {
  return theDefaultEncoding;
}

void setDefaultEncoding(NSStringEncoding encoding) {
  theDefaultEncoding = encoding;
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
