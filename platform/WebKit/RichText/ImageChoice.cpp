// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/ImageChoice.hpp"

#include <algorithm>
#include <optional>

#include "platform/CSS/CSSMedium.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"
#include "platform/WebKit/RichText/Numbers.hpp"

namespace nimbo::detail {

namespace {

bool isBlank(unichar c) {
  return isASCIIWhiteSpace(c);
}

/// How many nodes in front of an "img" its "picture" may have; those behind them do not count.
constexpr std::size_t kMaximumPictureNodes = 256;

/// One of the sources of a "srcset".
struct Candidate {
  std::u16string_view url;
  double density = 1;
};

/// The pixels of a length such as "50vw", "20em" or "300px"; nothing for other text.
std::optional<double> pixelsOfLength(std::u16string_view text) {
  static constexpr struct {
    std::string_view name;
    double pixels;
  } kUnits[] = {{"px", 1}, {"em", 16}, {"rem", 16}, {"vw", 12.8}, {"vh", 7.2}, {"pt", 4.0 / 3}, {"", 1}};
  std::u16string_view rest = trimmed(text, isBlank);
  const std::optional<double> number = takeNumber(&rest);
  if (!number) return {};
  for (const auto &unit : kUnits)
    if (equalsASCIINoCase(rest, unit.name)) return *number * unit.pixels;
  return {};
}

/// The part of the text up to the first comma outside of parentheses, which is taken off it with the comma.
std::u16string_view takeListItem(std::u16string_view *list) {
  std::size_t depth = 0;
  std::size_t end = 0;
  for (; end < list->size(); ++end) {
    const unichar c = (*list)[end];
    if (c == u'(') ++depth;
    if (c == u')' && depth > 0) --depth;
    if (c == u',' && depth == 0) break;
  }
  const std::u16string_view item = list->substr(0, end);
  list->remove_prefix(std::min(end + 1, list->size()));
  return trimmed(item, isBlank);
}

/// The pixels that an image is wide by its "sizes".
double widthBySizes(std::u16string_view sizes) {
  while (!sizes.empty()) {
    const std::u16string_view item = takeListItem(&sizes);
    // The length is what stands behind the last blank that is in no parentheses.
    std::size_t start = item.size();
    for (std::size_t depth = 0; start > 0; --start) {
      const unichar c = item[start - 1];
      if (c == u')') ++depth;
      if (c == u'(' && depth > 0) --depth;
      if (depth == 0 && isBlank(c)) break;
    }
    const std::optional<double> width = pixelsOfLength(item.substr(start));
    if (width && *width > 0 && matchesMedium(trimmed(item.substr(0, start), isBlank), CSSMedium()))
      return *width;
  }
  return CSSMedium().widthInPixels;
}

/// Reads one source and takes it off the set; nothing when it cannot be used.
std::optional<Candidate> takeCandidate(std::u16string_view *set, std::u16string_view sizes,
                                       std::optional<double> *width) {
  const auto isNoPart = [](unichar c) { return isBlank(c) || c == u','; };
  while (!set->empty() && isNoPart(set->front())) set->remove_prefix(1);
  const std::size_t end = static_cast<std::size_t>(std::ranges::find_if(*set, isBlank) - set->begin());
  Candidate candidate{set->substr(0, end)};
  set->remove_prefix(end);
  if (candidate.url.empty()) return {};
  if (candidate.url.ends_with(u',')) {
    while (candidate.url.ends_with(u',')) candidate.url.remove_suffix(1);
    return candidate;
  }
  std::u16string_view descriptors = takeListItem(set);
  if (descriptors.empty()) return candidate;
  const std::optional<double> number = takeNumber(&descriptors);
  if (!number || *number <= 0 || descriptors.empty()) return {};
  if (descriptors.front() == u'x') {
    candidate.density = *number;
  } else if (descriptors.front() == u'w') {
    if (!*width) *width = widthBySizes(sizes);
    candidate.density = *number / **width;
  } else {
    return {};
  }
  return candidate;
}

/// Whether a picture of the type can be shown by whoever reads rich text.
bool isShownType(std::optional<std::u16string_view> type) {
  if (!type) return true;
  return equalsOneOfASCIINoCase(trimmed(*type, isBlank),
                                {"", "image/png", "image/jpeg", "image/jpg", "image/gif", "image/webp",
                                 "image/svg+xml", "image/bmp", "image/tiff"});
}

}  // namespace

std::u16string_view chosenSource(std::u16string_view srcset, std::u16string_view sizes,
                                 std::u16string_view src) {
  std::optional<Candidate> best;
  const auto consider = [&](const Candidate &candidate) {
    const bool isEnough = candidate.density >= 1;
    if (!best || (best->density >= 1 ? isEnough && candidate.density < best->density
                                     : candidate.density > best->density))
      best = candidate;
  };
  std::optional<double> width;
  while (!srcset.empty())
    if (const auto candidate = takeCandidate(&srcset, sizes, &width)) consider(*candidate);
  src = trimmed(src, isBlank);
  if (!src.empty() && !width) consider({src});
  return best ? best->url : src;
}

std::u16string_view chosenImage(const HTMLDocument &document, HTMLNodeIndex image) {
  const HTMLNode &element = document.node(image);
  const auto attribute = [&](const HTMLNode &node, HTMLAtom name) {
    return document.attribute(node, name).value_or(std::u16string_view());
  };
  if (element.parent != kNoHTMLNode && document.node(element.parent).isHTML("picture"_atom)) {
    HTMLNodeIndex sibling = document.node(element.parent).firstChild;
    for (std::size_t i = 0; i < kMaximumPictureNodes && sibling != image && sibling != kNoHTMLNode;
         ++i, sibling = document.node(sibling).nextSibling) {
      const HTMLNode &source = document.node(sibling);
      if (!source.isHTML("source"_atom) || !isShownType(document.attribute(source, "type"_atom)) ||
          !matchesMedium(attribute(source, "media"_atom), CSSMedium()))
        continue;
      const auto url = chosenSource(attribute(source, "srcset"_atom), attribute(source, "sizes"_atom), {});
      if (!url.empty()) return url;
    }
  }
  return chosenSource(attribute(element, "srcset"_atom), attribute(element, "sizes"_atom),
                      attribute(element, "src"_atom));
}

}  // namespace nimbo::detail
