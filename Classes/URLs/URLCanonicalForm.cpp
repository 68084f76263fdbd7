// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLCanonicalForm.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/AsciiSetKernels.hpp"
#include "Classes/URLs/URLStringParts.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/URLs/DotSegments.hpp"
#include "platform/Foundation/URLs/HostNames.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/URLs/URLScheme.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

using View = std::u16string_view;

bool isUnreserved(unichar c) {
  return isASCIIAlphanumeric(c) || View(u"-._~").find(c) != View::npos;
}

/// What escapes may be written otherwise for.
constexpr detail::AsciiSet kEscapes = detail::AsciiSet::of([](unichar c) { return c == u'%'; }, true);

bool hasCapital(View units) {
  return std::ranges::any_of(units, isASCIIUppercase<unichar>);
}

/// The characters that are not ASCII and begin the units, as many as are whole.
std::size_t lengthOfOthers(View units) {
  std::size_t end = 0;
  while (end < units.size() && units[end] >= 0x80) {
    const bool isPair =
        (units[end] & 0xfc00) == 0xd800 && end + 1 < units.size() && (units[end + 1] & 0xfc00) == 0xdc00;
    if (!isPair && (units[end] & 0xf800) == 0xd800) break;
    end += isPair ? 2 : 1;
  }
  return end;
}

/// Appends the part of a URL with its escapes as they are to be.
void appendWithPlainEscapes(std::u16string &out, View part) {
  while (!part.empty()) {
    const std::size_t count = detail::findOneOfAsciiSet(part.data(), part.size(), kEscapes);
    out.append(part.substr(0, count));
    part.remove_prefix(count);
    if (const std::size_t others = lengthOfOthers(part); others > 0) {
      const std::string bytes = NSString::stringWithCharacters(part.substr(0, others)).UTF8String();
      const std::string escaped = bytesByAddingPercentEscapes(bytes, "");
      out.append(escaped.begin(), escaped.end());
      part.remove_prefix(others);
    } else if (part.size() > 2 && part[0] == u'%' && isASCIIHexDigit(part[1]) && isASCIIHexDigit(part[2])) {
      const auto value = static_cast<unichar>(16 * hexDigitValue(part[1]) + hexDigitValue(part[2]));
      if (isUnreserved(value))
        out.push_back(value);
      else
        out.append({u'%', toASCIIUpper(part[1]), toASCIIUpper(part[2])});
      part.remove_prefix(3);
    } else if (!part.empty()) {
      out.append(part[0] == u'%' ? View(u"%25") : part.substr(0, 1));
      part.remove_prefix(1);
    }
  }
}

bool isDefaultPort(View scheme, View port) {
  if (port.empty()) return true;
  if (port == u"80") return equalsOneOfASCIINoCase(scheme, {"http", "feed", "ws"});
  if (port == u"443") return equalsOneOfASCIINoCase(scheme, {"https", "wss"});
  if (port == u"22") return equalsASCIINoCase(scheme, "sftp");
  return port == u"21" && equalsASCIINoCase(scheme, "ftp");
}

/// Where the host with its port ends when the scheme's own port is left out. What has several ports keeps them.
std::size_t endOfNeededPort(View hostAndPort, View scheme) {
  const std::size_t colon = hostAndPort.rfind(u':');
  if (colon == View::npos) return hostAndPort.size();
  const View host = hostAndPort.substr(0, colon), port = hostAndPort.substr(colon + 1);
  const bool isOnlyPort = host.ends_with(u']') || host.find(u':') == View::npos;
  const bool isLeftOut =
      isOnlyPort && std::ranges::all_of(port, isASCIIDigit<unichar>) && isDefaultPort(scheme, port);
  return isLeftOut ? colon : hostAndPort.size();
}

void appendHost(std::u16string &out, View hostAndPort) {
  const std::size_t start = out.size();
  const std::size_t end = std::min(hostAndPort.rfind(u':'), hostAndPort.size());
  const NSString host = hostWithoutEscapes(NSString::stringWithCharacters(hostAndPort.substr(0, end)));
  const NSString name = ASCIIHostName(host);
  appendWithPlainEscapes(out, name ? name.view() : host.view());
  appendWithPlainEscapes(out, hostAndPort.substr(end));
  for (std::size_t i = start; i < out.size(); ++i) {
    // The digits of an escape stay capital.
    if (out[i] == u'%')
      i += 2;
    else
      out[i] = toASCIILower(out[i]);
  }
}

/// A URL taken apart.
struct Pieces {
  explicit Pieces(View url)
      : parts(partsOfURLString(url)),
        scheme(url.substr(0, parts.schemeLength)),
        authority(url.substr(parts.authorityStart, parts.pathStart - parts.authorityStart)),
        path(url.substr(parts.pathStart, parts.queryStart - parts.pathStart)),
        behindPath(url.substr(parts.queryStart)) {
    const View hostAndPort = authority.substr(startOfHost(authority));
    neededHost = hostAndPort.substr(0, endOfNeededPort(hostAndPort, scheme));
  }

  /// An authority may be empty, too.
  bool hasAuthority() const { return parts.authorityStart > (scheme.empty() ? 0 : scheme.size() + 1); }

  URLStringParts parts;
  View scheme, authority, path, behindPath;
  /// With the port, if it is not the scheme's own.
  View neededHost;
};

}  // namespace

NSString canonicalStringURL(const NSString &string) {
  const View url = string.view();
  const Pieces pieces(url);
  const bool isPathPlain =
      !pieces.parts.isHierarchical ||
      (pieces.path.starts_with(u'/') ? !mayHoldDotSegments(pieces.path) : pieces.authority.empty());
  const bool isRestPlain =
      pieces.parts.isText ||
      (isPathPlain && !hasCapital(pieces.neededHost) && pieces.authority.ends_with(pieces.neededHost) &&
       detail::findOneOfAsciiSet(url.data(), url.size(), kEscapes) == url.size());
  if (isRestPlain && !hasCapital(pieces.scheme)) return string;
  return answerOr(string, [&] {
    std::u16string out;
    out.reserve(url.size() + 1);
    for (const unichar c : url.substr(0, pieces.parts.authorityStart)) out.push_back(toASCIILower(c));
    if (pieces.parts.isText) {
      out.append(url.substr(out.size()));
      return NSString::stringWithCharacters(out);
    }
    appendWithPlainEscapes(out, pieces.authority.substr(0, startOfHost(pieces.authority)));
    appendHost(out, pieces.neededHost);
    std::u16string path;
    appendWithPlainEscapes(path, pieces.path);
    if (pieces.parts.isHierarchical && path.starts_with(u'/')) {
      path = pathWithoutDotSegments(path);
      // It would be taken for a host.
      if (!pieces.hasAuthority() && path.starts_with(u"//")) path.insert(0, u"/.");
    } else if (pieces.parts.isHierarchical && path.empty() && !pieces.authority.empty()) {
      path = u"/";
    } else if (pieces.scheme.empty() && !schemeOfStringURL(path).empty()) {
      path.insert(0, u"./");  // Else the first component would be taken for a scheme.
    }
    out.append(path);
    appendWithPlainEscapes(out, pieces.behindPath);
    return out == url ? string : NSString::stringWithCharacters(out);
  });
}

}  // namespace nimbo
