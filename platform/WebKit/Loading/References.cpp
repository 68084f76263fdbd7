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

/// A host in ASCII and in lower case. Escapes stand for characters, unless these may not be in a host.
std::string hostName(std::u16string_view part) {
  const NSString host = hostWithoutEscapes(NSString::stringWithCharacters(part));
  const NSString ascii = ASCIIHostName(host);
  std::string name = ascii ? ascii.UTF8String() : escaped(host.view());
  std::ranges::transform(name, name.begin(), toASCIILower<char>);
  return name;
}

/// User, host and port, which is left out when it is the scheme's own.
std::string authority(std::u16string_view part, std::string_view scheme) {
  const std::size_t user = part.rfind(u'@');
  const std::size_t hostStart = user == part.npos ? 0 : user + 1;
  const std::u16string_view place = part.substr(hostStart);
  const std::size_t colon = std::min(place.find(u':', place.rfind(u']') + 1), place.size());
  std::string port = escaped(place.substr(colon));
  const std::string_view own = ownPort(scheme);
  if (!own.empty()) {
    if (port.size() > 1) port.erase(1, std::min(port.find_first_not_of('0', 1), port.size() - 1) - 1);
    if (port == own || port == ":") port.clear();
  }
  std::string result;
  for (const char c : escaped(part.substr(0, user == part.npos ? 0 : user)))
    result += c == '@' ? "%40" : std::string(1, c);
  if (user != part.npos) result += '@';
  return result + hostName(place.substr(0, colon)) + port;
}

/// With the two slashes before a host that browsers read where a scheme has hosts, whatever is written; without
/// the base's own scheme when none follow.
void repairSlashes(std::u16string &reference, std::string_view ownScheme, std::string_view baseScheme) {
  if (ownPort(ownScheme).empty()) return;
  const std::size_t scheme = schemeLength(reference);
  const std::size_t rest = std::min(reference.find_first_not_of(u"/\\", scheme), reference.size());
  if (scheme > 0 && rest - scheme < 2 && ownScheme == baseScheme) {
    reference.erase(0, scheme);
    if (schemeLength(reference) > 0) reference.insert(0, u"./");
  } else if (scheme > 0 || rest >= 2) {
    reference.replace(scheme, rest - scheme, u"//");
  }
}

/// With the colon behind it; empty for none.
std::string lowercaseScheme(std::u16string_view scheme) {
  std::string result = NSString::stringWithCharacters(scheme).UTF8String();
  std::ranges::transform(result, result.begin(), toASCIILower<char>);
  return result;
}

}  // namespace

NSURL URLOfReference(std::u16string_view reference, const NSURL &base) {
  std::u16string text = cleaned(reference);
  if (text.empty() && !reference.empty()) return NSURL();
  const std::string baseScheme = base.scheme() ? lowercaseScheme(base.scheme().view()) + ":" : std::string();
  const std::string written = lowercaseScheme(std::u16string_view(text).substr(0, schemeLength(text)));
  const std::string ownScheme = written.empty() ? baseScheme : written;
  repairSlashes(text, ownScheme, baseScheme);
  const std::size_t scheme = schemeLength(text);
  const bool isOpaque = scheme > 0 && scheme < text.size() && text[scheme] != u'/' && text[scheme] != u'\\';
  const std::size_t pathEnd = std::min(text.find_first_of(u"?#"), text.size());
  if (!isOpaque) std::replace(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(pathEnd), u'\\', u'/');
  const std::u16string_view view = text;
  std::string result = lowercaseScheme(view.substr(0, scheme));
  std::size_t rest = scheme;
  if (view.substr(scheme).starts_with(u"//")) {
    const std::size_t end = std::min(view.find_first_of(u"/?#", scheme + 2), view.size());
    result += "//" + authority(view.substr(scheme + 2, end - scheme - 2), ownScheme);
    rest = end;
    if (!ownPort(ownScheme).empty() && end > scheme + 2 && !view.substr(rest).starts_with(u'/')) result += '/';
  }
  // A colon in the first part of a path would end a scheme.
  const std::size_t part = view.find_first_of(u":/?#");
  if (scheme == 0 && part != view.npos && view[part] == u':') result += "./";
  result += escaped(view.substr(rest));
  return NSURL::URLWithString(NSString::stringWithUTF8String(result), base).standardizedURL();
}

}  // namespace nimbo::detail
