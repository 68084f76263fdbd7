// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/DataURL.hpp"

#include <algorithm>
#include <string>

#include "platform/Foundation/NSDataBase64.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo::detail {
namespace {

std::string_view withoutBlanks(std::string_view text) {
  return trimmed(text, isASCIIWhiteSpace<char>);
}

std::string lowercase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), toASCIILower<char>);
  return lower;
}

/// The text up to the separator; the rest behind it stays.
std::string_view takeUntil(std::string_view &text, char separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return withoutBlanks(taken);
}

}  // namespace

ContentTypeField contentTypeOfField(std::string_view field) {
  ContentTypeField type;
  const std::string mimeType = lowercase(takeUntil(field, ';'));
  if (mimeType.find('/') != std::string::npos) type.MIMEType = NSString::stringWithUTF8String(mimeType);
  while (!field.empty() && !type.charset) {
    std::string_view value = takeUntil(field, ';');
    const std::string name = lowercase(takeUntil(value, '='));
    value = withoutBlanks(value);
    if (value.size() > 1 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
      value = value.substr(1, value.size() - 2);
    if (name == "charset" && !value.empty()) type.charset = NSString::stringWithUTF8String(value);
  }
  return type;
}

std::optional<DataURL> DataURL::ofURL(const NSURL &url) {
  if (!url || lowercase(url.scheme().UTF8String()) != "data") return std::nullopt;
  const std::string specifier = url.resourceSpecifier().UTF8String();
  std::string_view body = specifier;
  body = body.substr(0, body.find('#'));
  const std::size_t comma = body.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  const std::string plainHead = bytesByReplacingPercentEscapes(body.substr(0, comma));
  std::string_view head = withoutBlanks(plainHead);
  constexpr std::string_view kBase64 = "base64";
  const std::size_t last = head.rfind(';');
  const bool isBase64 =
      last != std::string_view::npos && lowercase(withoutBlanks(head.substr(last + 1))) == kBase64;
  if (isBase64) head = head.substr(0, last);
  const std::string bytes = bytesByReplacingPercentEscapes(body.substr(comma + 1));
  DataURL result;
  result.type = contentTypeOfField(head);
  if (!result.type.MIMEType) result.type.MIMEType = u"text/plain"_ns;
  result.data = isBase64 ? dataWithBase64EncodedString(NSString::stringWithUTF8String(bytes))
                         : NSData::dataWithBytes(bytes.data(), bytes.size());
  return result;
}

}  // namespace nimbo::detail
