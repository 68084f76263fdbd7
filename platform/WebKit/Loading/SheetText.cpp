// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/SheetText.hpp"

#include <string_view>

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"
#include "platform/WebKit/Loading/DataURL.hpp"

namespace nimbo::detail {
namespace {

/// Text that is written in ASCII characters tells by them that its encoding is none of these.
bool isOfWideUnits(CFStringEncoding encoding) {
  return encoding == kCFStringEncodingUTF16 || encoding == kCFStringEncodingUTF16BE ||
         encoding == kCFStringEncodingUTF16LE;
}

/// What browsers take a name for: Latin 1 and ASCII are parts of another encoding.
CFStringEncoding encodingNamed(const NSString &name) {
  const CFStringEncoding encoding = CFStringConvertIANACharSetNameToEncoding(name);
  const bool isPart = encoding == kCFStringEncodingISOLatin1 || encoding == kCFStringEncodingASCII;
  return isPart ? kCFStringEncodingWindowsLatin1 : encoding;
}

/// The encoding of an "@charset" rule, which has to be written in just this way.
CFStringEncoding charsetRule(std::string_view bytes) {
  constexpr std::string_view kRule = "@charset \"";
  if (!bytes.starts_with(kRule)) return kCFStringEncodingInvalidId;
  bytes.remove_prefix(kRule.size());
  const std::size_t end = bytes.find('"');
  constexpr std::size_t kLongestName = 64;
  if (end > kLongestName) return kCFStringEncodingInvalidId;
  const CFStringEncoding encoding = encodingNamed(NSString::stringWithUTF8String(bytes.substr(0, end)));
  return isOfWideUnits(encoding) ? kCFStringEncodingUTF8 : encoding;
}

/// Nil when the bytes are none of the encoding.
NSString decoded(const NSData &data, CFStringEncoding encoding) {
  if (encoding == kCFStringEncodingInvalidId) return NSString();
  if (encoding == kCFStringEncodingUTF8) return NSString::stringWithUTF8String(data.view());
  return initWithData(data, CFStringConvertEncodingToNSStringEncoding(encoding));
}

}  // namespace

NSString declaredEncodingName(const HTMLDocument &document) {
  for (HTMLNodeIndex i = HTMLDocument::kRoot; i != kNoHTMLNode; i = document.nextInTree(i)) {
    const HTMLNode &node = document.node(i);
    if (!node.isHTML("meta"_atom)) continue;
    if (const auto charset = document.attribute(node, "charset"_atom))
      return NSString::stringWithCharacters(trimmed(*charset, isASCIIWhiteSpace<char16_t>));
    const auto header = document.attribute(node, "http-equiv"_atom);
    const auto content = document.attribute(node, "content"_atom);
    if (!header || !content ||
        !equalsASCIINoCase(trimmed(*header, isASCIIWhiteSpace<char16_t>), "content-type"))
      continue;
    const ContentTypeField type = contentTypeOfField(NSString::stringWithCharacters(*content).UTF8String());
    if (type.charset) return type.charset;
  }
  return NSString();
}

NSString textOfSheet(const NSData &data, const NSString &textEncodingName, const NSString &pageEncodingName) {
  if (!data) return NSString();
  std::string_view bytes = data.view();
  constexpr std::string_view kUTF8Mark = "\xEF\xBB\xBF";
  CFStringEncoding encoding = kCFStringEncodingInvalidId;
  if (bytes.starts_with(kUTF8Mark)) {
    bytes.remove_prefix(kUTF8Mark.size());
  } else {
    if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE"))
      encoding = kCFStringEncodingUTF16;
    else if (textEncodingName)
      encoding = encodingNamed(textEncodingName);
    if (encoding == kCFStringEncodingInvalidId) encoding = charsetRule(bytes);
  }
  if (NSString text = decoded(data, encoding)) return text;
  if (NSString text = NSString::stringWithUTF8String(bytes)) return text;
  encoding = encodingNamed(pageEncodingName);
  if (!isOfWideUnits(encoding))
    if (NSString text = decoded(data, encoding)) return text;
  return NSString::stringWithLossyUTF8String(bytes);
}

}  // namespace nimbo::detail
