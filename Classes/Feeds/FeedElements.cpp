// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedElements.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

struct Row {
  std::string_view name;
  FeedElement element;
};

constexpr bool isShorter(const Row &a, const Row &b) {
  return a.name.size() < b.name.size();
}

/// By length of name.
constexpr auto kRows = [] {
  using enum FeedElement;
  auto rows = std::to_array<Row>({
      {"html", kPage},
      {"head", kPage},
      {"body", kPage},
      {"rss", kRSS},
      {"feed", kAtom},
      {"rdf:rdf", kRDF},
      {"item", kItem},
      {"entry", kItem},
      {"title", kTitle},
      {"link", kLink},
      {"description", kDescription},
      {"summary", kDescription},
      {"content:encoded", kContent},
      {"content", kContent},
      {"author", kAuthor},
      {"dc:creator", kCreator},
      {"name", kName},
      {"pubdate", kPublished},
      {"dc:date", kUpdated},
      {"updated", kUpdated},
      {"published", kPublished},
      {"issued", kPublished},
      {"category", kCategory},
      {"enclosure", kEnclosure},
      {"image", kImage},
      {"textinput", kForeign},
      {"source", kForeign},
      {"contributor", kForeign},
      {"channel", kChannel},
      {"guid", kPermanentLink},
      {"id", kPermanentLink},
      {"subtitle", kSubtitle},
      {"tagline", kSubtitle},
      {"language", kLanguage},
      {"dc:language", kLanguage},
      {"url", kURL},
      {"logo", kPicture},
      {"itunes:image", kThumbnail},
      {"media:thumbnail", kThumbnail},
      {"dc:subject", kSubject},
      {"dc:title", kOtherTitle},
      {"media:title", kOtherTitle},
      {"dc:description", kOtherDescription},
      {"itunes:summary", kOtherDescription},
      {"media:description", kOtherDescription},
      {"abstract", kOtherDescription},
      {"xhtml:body", kOtherContent},
      {"fullitem", kOtherContent},
      {"dc:author", kOtherAuthor},
      {"itunes:author", kOtherAuthor},
      {"managingeditor", kOtherAuthor},
      {"dcterms:issued", kOtherPublished},
      {"dcterms:created", kOtherPublished},
      {"created", kOtherPublished},
      {"dcterms:modified", kOtherUpdated},
      {"modified", kOtherUpdated},
      {"lastbuilddate", kOtherUpdated},
      {"lastmod", kOtherUpdated},
  });
  std::ranges::sort(rows, isShorter);
  return rows;
}();

constexpr std::size_t kLongestName = kRows.back().name.size();

/// Where the rows of names of each length begin.
constexpr auto kFirstRows = [] {
  std::array<std::uint8_t, kLongestName + 2> firsts{};
  for (std::size_t length = 0; length < firsts.size(); ++length)
    firsts[length] = static_cast<std::uint8_t>(
        std::ranges::count_if(kRows, [=](const Row &row) { return row.name.size() < length; }));
  return firsts;
}();

/// Whether the element is one of feeds alone, and mostly in no text.
bool isNeverMarkup(FeedElement element) {
  using enum FeedElement;
  switch (element) {
    case kItem:
    case kCreator:
    case kPublished:
    case kUpdated:
    case kEnclosure:
    case kIdentifier:
    case kPermanentLink:
    case kOtherPublished:
    case kOtherUpdated:
      return true;
    default:
      return false;
  }
}

}  // namespace

FeedElement feedElementNamed(std::u16string_view name) {
  if (name.size() > kLongestName) return FeedElement::kOther;
  const std::size_t end = kFirstRows[name.size() + 1];
  const unichar last = name.empty() ? u'\0' : toASCIILower(name.back());
  for (std::size_t i = kFirstRows[name.size()]; i < end; ++i)
    if (last == static_cast<unichar>(kRows[i].name.back()) && equalsASCIINoCase(name, kRows[i].name))
      return kRows[i].element;
  return FeedElement::kOther;
}

bool isTitle(FeedElement element) {
  return element == FeedElement::kTitle || element == FeedElement::kOtherTitle;
}

bool holdsMarkup(FeedElement element) {
  using enum FeedElement;
  switch (element) {
    case kDescription:
    case kContent:
    case kSubtitle:
    case kOtherDescription:
    case kOtherContent:
      return true;
    default:
      return false;
  }
}

bool endsField(FeedElement field, FeedElement element) {
  using enum FeedElement;
  if (isNeverMarkup(element)) return true;
  if (holdsMarkup(field)) return false;
  switch (element) {
    case kTitle:
    case kLink:
    case kDescription:
    case kContent:
    case kAuthor:
    case kCategory:
      return true;
    default:
      return false;
  }
}

}  // namespace nimbo::detail
