// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/References.hpp"

#include <algorithm>
#include <string>

#include "platform/Foundation/URLs/HostNames.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo::detail {
namespace {

/// What may stand in a URL beside letters and digits; brackets may in a host alone.
constexpr std::string_view kPlain = "-._~:/?#@!$&'()*+,;=%";

/// Without what browsers pass over.
std::u16string cleaned(std::u16string_view reference) {
  std::u16string result(trimmed(reference, [](char16_t c) { return c <= u' '; }));
  std::erase_if(result, [](char16_t c) { return c == u'\t' || c == u'\n' || c == u'\r'; });
  return result;
}

/// The length of "scheme:", or 0.
std::size_t schemeLength(std::u16string_view reference) {
  const auto isPart = [](char16_t c) { return isASCIIAlphanumeric(c) || c == u'+' || c == u'-' || c == u'.'; };
  const auto end = std::ranges::find_if_not(reference, isPart);
  if (end == reference.end() || *end != u':' || end == reference.begin() || !isASCIILetter(reference.front()))
    return 0;
  return static_cast<std::size_t>(end - reference.begin()) + 1;
}

/// A "%" that begins no escape stands for itself, as does a "#" behind the first.
std::string escaped(std::u16string_view part) {
  const std::string bytes =
      bytesByAddingPercentEscapes(NSString::stringWithCharacters(part).UTF8String(), kPlain);
  std::string result;
  bool isFragment = false;
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    const char c = bytes[place];
    const bool isEscape = c == '%' && place + 2 < bytes.size() && isASCIIHexDigit(bytes[place + 1]) &&
                          isASCIIHexDigit(bytes[place + 2]);
    if (c == '%' && !isEscape)
      result += "%25";
    else if (c == '#' && isFragment)
      result += "%23";
    else
      result += c;
    isFragment = isFragment || c == '#';
  }
  return result;
}

/// The port that a scheme has when none is written, as ":80"; empty for a scheme whose URLs have no host.
std::string_view ownPort(std::string_view scheme) {
  if (scheme == "http:" || scheme == "ws:") return ":80";
  if (scheme == "https:" || scheme == "wss:") return ":443";
  return scheme == "ftp:" ? ":21" : "";
}

/// User, host and port; what is no ASCII in a host has a form of its own.
std::string authority(std::u16string_view part, std::string_view scheme) {
  const std::size_t user = part.rfind(u'@');
  const std::size_t hostStart = user == part.npos ? 0 : user + 1;
  const std::u16string_view host = part.substr(hostStart);
  const NSString ascii = ASCIIHostName(NSString::stringWithCharacters(host));
  std::string name = ascii ? ascii.UTF8String() : escaped(host);
  std::ranges::transform(name, name.begin(), toASCIILower<char>);
  const std::string_view port = ownPort(scheme);
  if (!port.empty() && name.ends_with(port)) name.resize(name.size() - port.size());
  return escaped(part.substr(0, hostStart)) + name;
}

}  // namespace

NSURL URLOfReference(std::u16string_view reference, const NSURL &base) {
  std::u16string text = cleaned(reference);
  if (text.empty() && !reference.empty()) return NSURL();
  const std::size_t scheme = schemeLength(text);
  const bool isOpaque = scheme > 0 && scheme < text.size() && text[scheme] != u'/' && text[scheme] != u'\\';
  const std::size_t pathEnd = std::min(text.find_first_of(u"?#"), text.size());
  if (!isOpaque) std::replace(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(pathEnd), u'\\', u'/');
  const std::u16string_view view = text;
  std::string result = NSString::stringWithCharacters(view.substr(0, scheme)).UTF8String();
  std::ranges::transform(result, result.begin(), toASCIILower<char>);
  std::size_t rest = scheme;
  if (view.substr(scheme).starts_with(u"//")) {
    const std::size_t end = std::min(view.find_first_of(u"/?#", scheme + 2), view.size());
    const std::string ownScheme = scheme > 0      ? result
                                  : base.scheme() ? base.scheme().UTF8String() + ":"
                                                  : std::string();
    result += "//" + authority(view.substr(scheme + 2, end - scheme - 2), ownScheme);
    rest = end;
    if (!ownPort(ownScheme).empty() && end > scheme + 2 && !view.substr(rest).starts_with(u'/')) result += '/';
  }
  result += escaped(view.substr(rest));
  return NSURL::URLWithString(NSString::stringWithUTF8String(result), base).standardizedURL();
}

}  // namespace nimbo::detail
