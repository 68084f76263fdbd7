// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+URLUtilities/Simplifying.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/URLs/URLParameters.hpp"
#include "Classes/URLs/URLStringParts.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace URLUtilities {

namespace {

using View = std::u16string_view;

/// The string without the units from `start` to before `end`; itself when there are none.
NSString without(const NSString &string, std::size_t start, std::size_t end) {
  return answerOr(string, [&] {
    if (start == end) return string;
    const View units = string.view();
    return stringByConcatenating(units.substr(0, start), units.substr(end));
  });
}

View nameOfParam(View param) {
  return param.substr(0, param.find(u'='));
}

/// Takes away the parameters of the query that the predicate picks, the separators before them, and a "?" with
/// nothing left behind it.
template <class Predicate>
NSString withoutParams(const NSString &string, Predicate isRemoved) {
  return answerOr(string, [&] {
    const View url = string.view();
    const URLStringParts parts = partsOfURLString(url);
    if (parts.isText || parts.queryStart == parts.fragmentStart) return string;
    NSMutableString kept;
    View query = url.substr(parts.queryStart, parts.fragmentStart - parts.queryStart);
    while (!query.empty()) {
      const View param = query.substr(1, std::min(query.find_first_of(u"&;", 1), query.size()) - 1);
      if (!isRemoved(param)) {
        kept.appendCharacter(kept.length() == 0 ? u'?' : query.front());
        kept.append(param);
      }
      query.remove_prefix(1 + param.size());
    }
    if (kept.length() == parts.fragmentStart - parts.queryStart) return string;
    return stringByConcatenating(url.substr(0, parts.queryStart), kept, url.substr(parts.fragmentStart));
  });
}

/// Takes away the sessions among the parameters of path components. A component may be nothing but a session.
NSString withoutPathSessions(const NSString &string) {
  return answerOr(string, [&] {
    const View url = string.view();
    const URLStringParts parts = partsOfURLString(url);
    if (parts.isText) return string;
    const View path = url.substr(parts.pathStart, parts.queryStart - parts.pathStart);
    NSMutableString kept;
    kept.append(url.substr(0, parts.pathStart));
    for (std::size_t at = 0; at < path.size();) {
      const View piece = path.substr(at, std::min(path.find_first_of(u"/;", at + 1), path.size()) - at);
      const bool isSession = piece.front() == u';'
                                 ? isURLNameOfKind(nameOfParam(piece.substr(1)), URLNameKind::session)
                                 : piece.starts_with(u"/(S(") && piece.ends_with(u"))");
      if (!isSession) kept.append(piece);
      at += piece.size();
    }
    if (kept.length() == parts.queryStart) return string;
    kept.append(url.substr(parts.queryStart));
    return std::move(kept).string();
  });
}

/// The host without its port, or with the brackets of an IPv6 address in part.
View hostOfStringURL(View url) {
  const URLStringParts parts = partsOfURLString(url);
  const View authority = url.substr(parts.authorityStart, parts.pathStart - parts.authorityStart);
  const View host = authority.substr(startOfHost(authority));
  return host.substr(0, host.find(u':'));
}

bool isDefaultPort(View scheme, View port) {
  if (port.empty()) return true;
  if (port == u"80") return equalsOneOfASCIINoCase(scheme, {"http", "feed"});
  if (port == u"443") return equalsASCIINoCase(scheme, "https");
  return port == u"21" && equalsASCIINoCase(scheme, "ftp");
}

NSString withPlainSchemeAndHost(const NSString &string) {
  return answerOr(string, [&] {
    const View url = string.view();
    const URLStringParts parts = partsOfURLString(url);
    const View authority = url.substr(parts.authorityStart, parts.pathStart - parts.authorityStart);
    const std::size_t hostStart = parts.authorityStart + startOfHost(authority);
    std::size_t hostEnd = parts.pathStart;
    const std::size_t colon = authority.rfind(u':');
    if (colon != View::npos && parts.authorityStart + colon >= hostStart) {
      const View port = authority.substr(colon + 1);
      const bool isPort = std::ranges::all_of(port, isASCIIDigit<unichar>);
      if (isPort && isDefaultPort(url.substr(0, parts.schemeLength), port))
        hostEnd = parts.authorityStart + colon;
    }
    if (hostEnd == parts.pathStart &&
        std::ranges::none_of(url.substr(0, parts.schemeLength), isASCIIUppercase<unichar>) &&
        std::ranges::none_of(url.substr(hostStart, hostEnd - hostStart), isASCIIUppercase<unichar>)) {
      return string;
    }
    NSMutableString plain(without(string, hostEnd, parts.pathStart));
    const auto makeSmall = [&](std::size_t start, std::size_t end) {
      unichar *const units = plain.mutableCharacters();
      std::transform(units + start, units + end, units + start, toASCIILower<unichar>);
    };
    makeSmall(0, parts.schemeLength);
    makeSmall(hostStart, hostEnd);
    return std::move(plain).string();
  });
}

}  // namespace

NSString simplifiedStringURLByRemovingSessionIDs(const NSString &string, Flag sessionIDs, Flag analytics,
                                                 Flag indexPages, Flag emptyParams, Flag anchors) {
  NSString url = withPlainSchemeAndHost(string);
  if (sessionIDs) url = stringURLByRemovingSessionIDs(url);
  if (analytics) url = stringURLByRemovingAnalytics(url);
  if (emptyParams) url = stringURLByRemovingEmptyParams(url);
  if (indexPages) url = stringURLByRemovingIndexPages(url);
  if (anchors) url = stringURLWithoutAnchor(url);
  return url;
}

NSString simplifiedStringURL(const NSString &string) {
  return simplifiedStringURLByRemovingSessionIDs(string, true, true, true, true, true);
}

NSString stringURLByRemovingSessionIDs(const NSString &string) {
  return withoutParams(withoutPathSessions(string),
                       [](View param) { return isURLNameOfKind(nameOfParam(param), URLNameKind::session); });
}

NSString stringURLByRemovingAnalytics(const NSString &string) {
  const View host = hostOfStringURL(string.view());
  return withoutParams(
      string, [&](View param) { return isURLNameOfKind(nameOfParam(param), URLNameKind::analytics, host); });
}

NSString stringURLByRemovingEmptyParams(const NSString &string) {
  return withoutParams(
      string, [](View param) { return param.empty() || nameOfParam(param).size() + 1 == param.size(); });
}

NSString stringURLByRemovingIndexPages(const NSString &string) {
  const View url = string.view();
  const URLStringParts parts = partsOfURLString(url);
  if (!parts.isHierarchical || parts.queryStart != parts.fragmentStart) return string;
  const View path = url.substr(parts.pathStart, parts.queryStart - parts.pathStart);
  const std::size_t slash = path.rfind(u'/');
  if (slash == View::npos || !isURLNameOfKind(path.substr(slash + 1), URLNameKind::index)) return string;
  return without(string, parts.pathStart + slash + 1, parts.queryStart);
}

NSString stringURLWithoutAnchor(const NSString &string) {
  const View url = string.view();
  return without(string, std::min(url.find(u'#'), url.size()), url.size());
}

}  // namespace URLUtilities
}  // namespace nimbo
