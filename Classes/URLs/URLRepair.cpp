// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLRepair.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/URLs/URLStringParts.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/URLs/HostNames.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/URLs/URLScheme.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

using View = std::u16string_view;

// What may stand in the parts of a URL besides letters and digits.
constexpr std::string_view kPlainInUserInfo = "-._~!$&'()*+,;=:%";
constexpr std::string_view kPlainInHost = "-._~!$&'()*+,;=%";
constexpr std::string_view kPlainInPath = "/-._~!$&'()*+,;=:@%";
constexpr std::string_view kPlainInQuery = "?/-._~!$&'()*+,;=:@%";

constexpr View kForeignSchemes[] = {u"ymsgr:",  u"message:", u"icq:",         u"irc:", u"ircs:",
                                    u"aim:",    u"mailto:",  u"javascript:",  u"tel:", u"data:",
                                    u"magnet:", u"news:",    u"applescript:", u"urn:"};

constexpr View kEscapedQuote = u"%22";
constexpr View kEscapedBlank = u"%20";

bool hasPrefixNoCase(View string, View prefix) {
  const auto length = static_cast<std::uint32_t>(prefix.size());
  return string.size() >= prefix.size() &&
         fastCaseInsensitiveCompareUnichars(string.data(), length, prefix.data(), length) == 0;
}

std::size_t countSlashes(View url) {
  return std::min(url.find_first_not_of(u"/\\"), url.size());
}

/// The URL without colons, slashes and blanks in front.
View withoutSeparators(View url) {
  for (;;) {
    url.remove_prefix(std::min(url.find_first_not_of(u":/\\ "), url.size()));
    if (!url.starts_with(kEscapedBlank)) return url;
    url.remove_prefix(kEscapedBlank.size());
  }
}

bool isASCII(unichar c) {
  return c < 0x80;
}

/// The bytes of characters that are not ASCII.
std::string bytesOfRun(View run, std::optional<NSStringEncoding> encoding) {
  const NSString string = NSString::stringWithCharacters(run);
  const NSData data = encoding ? dataUsingEncoding(string, *encoding) : NSData();
  return data ? std::string(data.view()) : string.UTF8String();
}

/// A part with all but `plain` escaped; what is not ASCII in UTF-8 without an encoding.
void appendEscaped(std::string &result, View part, std::string_view plain,
                   std::optional<NSStringEncoding> encoding = std::nullopt) {
  while (!part.empty()) {
    const auto firstHigh = static_cast<std::size_t>(std::ranges::find_if_not(part, isASCII) - part.begin());
    const std::string low =
        bytesByAddingPercentEscapes(std::string(part.begin(), part.begin() + firstHigh), plain);
    for (std::size_t i = 0; i < low.size(); ++i) {
      result.push_back(low[i]);
      const bool isEscape = i + 2 < low.size() && isASCIIHexDigit(low[i + 1]) && isASCIIHexDigit(low[i + 2]);
      if (low[i] == '%' && !isEscape) result.append("25");
    }
    part.remove_prefix(firstHigh);
    const auto nextLow = static_cast<std::size_t>(std::ranges::find_if(part, isASCII) - part.begin());
    if (nextLow > 0)
      result.append(bytesByAddingPercentEscapes(bytesOfRun(part.substr(0, nextLow), encoding), ""));
    part.remove_prefix(nextLow);
  }
}

/// False when the host has no ASCII form.
bool appendAuthority(std::string &result, View authority) {
  if (const std::size_t at = authority.rfind(u'@'); at != View::npos) {
    appendEscaped(result, authority.substr(0, at), kPlainInUserInfo);
    result.push_back('@');
    authority.remove_prefix(at + 1);
  }
  const std::size_t bracket = authority.starts_with(u'[') ? authority.find(u']') : View::npos;
  const std::size_t hostEnd =
      bracket != View::npos ? bracket + 1 : std::min(authority.rfind(u':'), authority.size());
  const NSString host = NSString::stringWithCharacters(authority.substr(0, hostEnd));
  if (bracket != View::npos) {
    appendEscaped(result, host.view(), "[]:.%");
  } else {
    const NSString name = ASCIIHostName(hostWithoutEscapes(host));
    if (!name) return false;
    appendEscaped(result, name.view(), kPlainInHost);
  }
  appendEscaped(result, authority.substr(hostEnd), ":%");
  return true;
}

NSString stringURLWithRightBeginning(const NSString &string) {
  View url = withoutWrongBeginning(string.view());
  if (string.view().starts_with(kEscapedQuote) && url.ends_with(kEscapedQuote))
    url.remove_suffix(kEscapedQuote.size());
  if (startsWithASCIINoCase(url, "ttp://") || startsWithASCIINoCase(url, "ttps://"))
    return stringByConcatenating(u"h", url);
  return url.size() == string.length() ? string : NSString::stringWithCharacters(url);
}

NSString stringURLWithTwoSlashes(const NSString &string, View baseScheme) {
  const View units = string.view(), scheme = schemeOfStringURL(units);
  const View rest = units.substr(scheme.empty() ? 0 : scheme.size() + 1);
  const std::size_t slashes = countSlashes(rest);
  if (slashes == rest.size() || !isSlashedScheme(scheme.empty() ? baseScheme : scheme)) return string;
  if (scheme.empty()) return slashes > 2 ? NSString::stringWithCharacters(rest.substr(slashes - 2)) : string;
  if (slashes == 2) return string;
  if (slashes < 2 && std::ranges::equal(scheme, baseScheme, {}, toASCIILower<unichar>, toASCIILower<unichar>)) {
    // What looks like another scheme is part of the path.
    return stringByConcatenating(schemeOfStringURL(rest).empty() ? u"" : u"./", rest);
  }
  return stringByConcatenating(scheme, u"://", rest.substr(slashes));
}

}  // namespace

View withoutWrongBeginning(View url) {
  if (url.starts_with(kEscapedQuote)) url.remove_prefix(kEscapedQuote.size());
  if (equalsOneOfASCIINoCase(schemeOfStringURL(url), {"hhttp", "hhttps", "emailto"})) url.remove_prefix(1);
  // Behind a single "/" all is a path.
  if (countSlashes(url) == 1) return url;
  for (View rest = url;;) {
    rest = withoutSeparators(rest);
    const View scheme = schemeOfStringURL(rest);
    const bool isPage = equalsOneOfASCIINoCase(scheme, {"http", "https"});
    if (!isPage && !equalsOneOfASCIINoCase(scheme, {"ttp", "ttps", "mailto"})) return url;
    const View behind = rest.substr(scheme.size() + 1);
    if (isPage && countSlashes(behind) >= 2) url = rest;
    rest = behind;
  }
}

NSString repairedStringURL(const NSString &string, View baseScheme) {
  return stringURLWithTwoSlashes(stringURLWithRightBeginning(string), baseScheme);
}

bool isUsualLink(View link) {
  if (withoutWrongBeginning(link).size() < link.size()) return false;
  const View scheme = schemeOfStringURL(link);
  if (scheme.empty()) {
    if (!link.starts_with(u"//")) return true;
  } else {
    if (!equalsOneOfASCIINoCase(scheme, {"http", "https"})) return false;
    link.remove_prefix(scheme.size() + 1);
    if (!link.starts_with(u"//")) return false;
  }
  // The escapes of a host stand for characters.
  return !link.substr(2).starts_with(u'/') && link.substr(0, link.find(u'/', 2)).find(u'%') == View::npos;
}

bool isForeignLink(const NSString &string) {
  return std::ranges::any_of(kForeignSchemes,
                             [&](View scheme) { return hasPrefixNoCase(string.view(), scheme); });
}

NSString ASCIIStringURL(const NSString &string, NSStringEncoding encoding) {
  if (!string) return NSString();
  View units = string.view();
  std::string result;
  const View scheme = schemeOfStringURL(units);
  if (!scheme.empty()) {
    result.assign(scheme.begin(), scheme.end()).push_back(':');
    units.remove_prefix(result.size());
  }
  if (units.starts_with(u"//")) {
    const View authority = units.substr(2, std::min(units.find_first_of(u"/?#", 2), units.size()) - 2);
    result.append("//");
    if (!appendAuthority(result, authority)) return NSString();
    units.remove_prefix(2 + authority.size());
  } else if (scheme.empty() && units.substr(0, units.find_first_of(u"/?#")).find(u':') != View::npos) {
    result.append("./");  // Else the first component would be taken for a scheme.
  }
  const std::size_t anchor = std::min(units.find(u'#'), units.size());
  const std::size_t question = std::min(units.find(u'?'), anchor);
  appendEscaped(result, units.substr(0, question), kPlainInPath);
  if (question < anchor) {
    const bool containsASCII = dataUsingEncoding(u"a"_ns, encoding).view() == "a";
    result.push_back('?');
    appendEscaped(result, units.substr(question + 1, anchor - question - 1), kPlainInQuery,
                  containsASCII ? std::optional(encoding) : std::nullopt);
  }
  if (anchor < units.size()) {
    result.push_back('#');
    appendEscaped(result, units.substr(anchor + 1), kPlainInQuery);
  }
  return NSString::stringWithUTF8String(result);
}

}  // namespace nimbo
