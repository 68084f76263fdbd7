// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+URLUtilities/Simplifying.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/UnicharKernels.hpp"
#include "Classes/URLs/URLCanonicalForm.hpp"
#include "Classes/URLs/URLParameters.hpp"
#include "Classes/URLs/URLSessions.hpp"
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

/// The index of the first of these units; the length when there is none.
std::size_t firstOf(const NSString &string, const detail::UnicharChoice &choice) {
  return detail::findOneOfChoice(string.characters(), string.length(), choice);
}

std::size_t startOfAnchor(const NSString &string) {
  return firstOf(string, detail::UnicharChoice::only(u'#'));
}

View nameOfParam(View param) {
  return param.substr(0, param.find(u'='));
}

/// What stands between parameters where a reference of markup was not decoded.
constexpr View kEscapedAmpersand = u"&amp;";

/// Takes away the parameters of the query that the predicate picks, the separators before them, and a "?" with
/// nothing left behind it.
template <class Predicate>
NSString withoutParams(const NSString &string, Predicate isRemoved) {
  if (firstOf(string, detail::UnicharChoice::only(u'?')) == string.length()) return string;
  return answerOr(string, [&] {
    const View url = string.view();
    const URLStringParts parts = partsOfURLString(url);
    if (parts.isText || parts.queryStart == parts.fragmentStart) return string;
    NSMutableString kept;
    View query = url.substr(parts.queryStart, parts.fragmentStart - parts.queryStart);
    while (!query.empty()) {
      const View separator = query.starts_with(kEscapedAmpersand) ? kEscapedAmpersand : query.substr(0, 1);
      query.remove_prefix(separator.size());
      const View param = query.substr(0, std::min(query.find_first_of(u"&;"), query.size()));
      if (!isRemoved(param)) {
        kept.append(kept.length() == 0 ? u"?" : separator);
        kept.append(param);
      }
      query.remove_prefix(param.size());
    }
    if (kept.length() == parts.fragmentStart - parts.queryStart) return string;
    return stringByConcatenating(url.substr(0, parts.queryStart), kept, url.substr(parts.fragmentStart));
  });
}

/// Whether the path is of a file's name, in which nothing stands for something else.
bool isOfFile(View url, const URLStringParts &parts) {
  return equalsASCIINoCase(url.substr(0, parts.schemeLength), "file");
}

/// Takes away the sessions among the parameters of path components. A component may be nothing but a session.
NSString withoutPathSessions(const NSString &string) {
  if (firstOf(string, {2, {u';', u'(', u';', u';'}}) == string.length()) return string;
  return answerOr(string, [&] {
    const View url = string.view();
    const URLStringParts parts = partsOfURLString(url);
    if (parts.isText || isOfFile(url, parts)) return string;
    const View path = url.substr(parts.pathStart, parts.queryStart - parts.pathStart);
    std::u16string kept;
    for (std::size_t at = 0; at < path.size();) {
      const View piece = path.substr(at, std::min(path.find_first_of(u"/;", at + 1), path.size()) - at);
      const bool isSession = piece.front() == u';' ? isSessionParameter(piece.substr(1))
                                                   : piece.starts_with(u"/(S(") && piece.ends_with(u"))");
      if (!isSession) kept.append(piece);
      at += piece.size();
    }
    if (kept.size() == path.size()) return string;
    // Without a host what is left would be taken for one.
    const bool becomesHost = parts.authorityStart == (parts.schemeLength == 0 ? 0 : parts.schemeLength + 1) &&
                             kept.starts_with(u"//");
    return stringByConcatenating(url.substr(0, parts.pathStart), becomesHost ? u"/." : u"", kept,
                                 url.substr(parts.queryStart));
  });
}

/// The host without its port, or with the brackets of an IPv6 address in part.
View hostOfStringURL(View url) {
  const URLStringParts parts = partsOfURLString(url);
  const View authority = url.substr(parts.authorityStart, parts.pathStart - parts.authorityStart);
  const View host = authority.substr(startOfHost(authority));
  return host.substr(0, host.find(u':'));
}

/// The string without its anchor, unless that is the route of a page which a script makes: another page.
NSString withoutPlainAnchor(const NSString &string) {
  const View anchor = string.view().substr(startOfAnchor(string));
  return anchor.starts_with(u"#!") || anchor.starts_with(u"#/") ? string : stringURLWithoutAnchor(string);
}

}  // namespace

NSString simplifiedStringURLByRemovingSessionIDs(const NSString &string, Flag sessionIDs, Flag analytics,
                                                 Flag indexPages, Flag emptyParams, Flag anchors) {
  NSString url = canonicalStringURL(string);
  if (sessionIDs) url = stringURLByRemovingSessionIDs(url);
  if (analytics) url = stringURLByRemovingAnalytics(url);
  if (emptyParams) url = stringURLByRemovingEmptyParams(url);
  if (indexPages) url = stringURLByRemovingIndexPages(url);
  if (anchors) url = withoutPlainAnchor(url);
  return url;
}

NSString simplifiedStringURL(const NSString &string) {
  return simplifiedStringURLByRemovingSessionIDs(string, true, true, true, true, true);
}

NSString stringURLByRemovingSessionIDs(const NSString &string) {
  return withoutParams(withoutPathSessions(string), isSessionParameter);
}

NSString stringURLByRemovingAnalytics(const NSString &string) {
  std::optional<View> host;
  return withoutParams(string, [&](View param) {
    if (!host) host = hostOfStringURL(string.view());
    return isURLNameOfKind(nameOfParam(param), URLNameKind::analytics, *host);
  });
}

NSString stringURLByRemovingEmptyParams(const NSString &string) {
  return withoutParams(
      string, [](View param) { return param.empty() || nameOfParam(param).size() + 1 == param.size(); });
}

NSString stringURLByRemovingIndexPages(const NSString &string) {
  const View url = string.view();
  const std::size_t end = firstOf(string, {2, {u'?', u'#', u'?', u'?'}});
  const std::size_t slash = url.substr(0, end).rfind(u'/');
  if (slash == View::npos || url.substr(end).starts_with(u'?')) return string;
  if (!isURLNameOfKind(url.substr(slash + 1, end - slash - 1), URLNameKind::index)) return string;
  const URLStringParts parts = partsOfURLString(url);
  const bool isPage = parts.isHierarchical && slash >= parts.pathStart && !isOfFile(url, parts);
  return isPage ? without(string, slash + 1, end) : string;
}

NSString stringURLWithoutAnchor(const NSString &string) {
  return without(string, startOfAnchor(string), string.length());
}

}  // namespace URLUtilities
}  // namespace nimbo
