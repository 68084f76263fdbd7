// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedNamespaces.hpp"

#include <algorithm>
#include <array>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Markup/TagAttributes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo::detail {

namespace {

struct Namespace {
  /// The beginning of the URI, without its scheme, in lower case.
  std::string_view uri;
  std::u16string_view prefix;
};

/// The first that fits counts.
constexpr auto kNamespaces = std::to_array<Namespace>({
    {"www.w3.org/2005/atom", u""},
    {"purl.org/atom/ns", u""},
    {"purl.org/rss/1.0/modules/content", u"content"},
    {"purl.org/rss/1.0/modules", u"?"},
    {"purl.org/rss/1.0", u""},
    {"purl.org/net/rss", u""},
    {"my.netscape.com/", u""},
    {"channel.netscape.com/", u""},
    {"backend.userland.com/rss", u""},
    {"blogs.law.harvard.edu/tech/rss", u""},
    {"purl.org/dc/elements", u"dc"},
    {"purl.org/dc/terms", u"dcterms"},
    {"search.yahoo.com/mrss", u"media"},
    {"www.itunes.com/dtds/podcast", u"itunes"},
    {"www.w3.org/1999/02/22-rdf-syntax-ns", u"rdf"},
    {"www.w3.org/1999/xhtml", u"xhtml"},
});

/// "?" for a namespace that nothing is read of.
std::u16string_view commonPrefix(std::u16string_view uri) {
  if (const std::size_t colon = uri.find(u"://"); colon != uri.npos) uri.remove_prefix(colon + 3);
  for (const auto &[start, prefix] : kNamespaces)
    if (startsWithASCIINoCase(uri, start)) return prefix;
  return u"?";
}

}  // namespace

void FeedNamespaces::readDeclarations(std::u16string_view tag) {
  constexpr std::u16string_view kDeclaration = u"xmlns:";
  // Most tags have none of them.
  if (!fastContainsUnichars(tag.data(), static_cast<std::uint32_t>(tag.size()), kDeclaration.data(),
                            static_cast<std::uint32_t>(kDeclaration.size())))
    return;
  for (std::size_t at = tag.find(kDeclaration); at != tag.npos; at = tag.find(kDeclaration, at)) {
    at += kDeclaration.size();
    const std::size_t equals = tag.find(u'=', at);
    if (equals == tag.npos) return;
    const auto prefix = trimmed(tag.substr(at, equals - at), isASCIIWhiteSpace<unichar>);
    at = std::min(tag.find_first_of(u"\"'", equals), tag.size() - 1);
    const std::size_t end = tag.find(tag[at], at + 1);
    if (end == tag.npos) return;
    declare(prefix, commonPrefix(tag.substr(at + 1, end - at - 1)));
    at = end;
  }
}

void FeedNamespaces::declare(std::u16string_view prefix, std::u16string_view common) {
  const auto known = std::ranges::find(commonPrefixes_, prefix, &Prefixes::first);
  if (known != commonPrefixes_.end())
    known->second = common;
  else if (commonPrefixes_.size() < kMostPrefixes)
    commonPrefixes_.emplace_back(prefix, common);
}

FeedElement FeedNamespaces::elementNamed(std::u16string_view name) const {
  const std::size_t colon = name.find(u':');
  if (colon == name.npos) return feedElementNamed(name);
  const auto declared = std::ranges::find(commonPrefixes_, name.substr(0, colon), &Prefixes::first);
  if (declared == commonPrefixes_.end()) return feedElementNamed(name);
  if (declared->second.empty()) return feedElementNamed(name.substr(colon + 1));
  // Longer names than those of the table are none of it.
  std::array<unichar, 24> units{};
  const std::u16string_view prefix = declared->second, rest = name.substr(colon);
  if (prefix.size() + rest.size() > units.size()) return FeedElement::kOther;
  const auto end = std::ranges::copy(rest, std::ranges::copy(prefix, units.begin()).out).out;
  return feedElementNamed({units.data(), static_cast<std::size_t>(end - units.begin())});
}

}  // namespace nimbo::detail
