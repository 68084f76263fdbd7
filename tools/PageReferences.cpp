// SPDX-License-Identifier: Apache-2.0
#include "tools/PageReferences.hpp"

#include <algorithm>
#include <optional>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "platform/CSS/CSSTokenizer.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {

namespace {

/// References beyond so many are left out.
constexpr std::size_t kMaximumReferences = 100'000;

NSString valueOfAttribute(std::u16string_view value) {
  return stringByConvertingEntitiesToCharacters(NSString::stringWithCharacters(value));
}

bool hasWord(std::u16string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find_first_of(kMarkupWhiteSpace), list.size());
    if (equalsASCIINoCase(list.substr(0, end), word)) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

/// Walks over the tags of a page.
class PageWalk {
 public:
  explicit PageWalk(PageReferences &found) : found_(found) {}

  void visit(const TagShape &tag) {
    // The text of a "style" stands between the tags, and for the scanner it may be a part of one.
    if (!tag.isOrdinary() || tag.isEndTag()) return;
    switch (tag.tagName()) {
      case TagName::kBase:
        if (!found_.base && !tag.attribute("href").empty())
          found_.base = valueOfAttribute(tag.attribute("href"));
        break;
      case TagName::kLink:
        visitLink(tag);
        break;
      case TagName::kFrame:
      case TagName::kIframe:
        add(ReferenceKind::frame, tag.attribute("src"), tag.attribute("name"));
        break;
      case TagName::kImg:
      case TagName::kSource:
        add(ReferenceKind::image, tag.isNamed("img") ? tag.attribute("src") : std::u16string_view());
        addSet(tag.attribute("srcset"));
        break;
      case TagName::kInput:
        if (equalsASCIINoCase(tag.attribute("type"), "image")) add(ReferenceKind::image, tag.attribute("src"));
        break;
      case TagName::kVideo:
        add(ReferenceKind::image, tag.attribute("poster"));
        break;
      case TagName::kImage:
        add(ReferenceKind::image, tag.attribute("href"));
        break;
      case TagName::kBody:
      case TagName::kTable:
      case TagName::kTr:
      case TagName::kTd:
      case TagName::kTh:
        add(ReferenceKind::image, tag.attribute("background"));
        break;
      default:
        break;
    }
    if (const auto style = tag.attribute("style"); !style.empty())
      appendReferencesOfSheet(valueOfAttribute(style).view(), found_.references);
  }

 private:
  void add(ReferenceKind kind, std::u16string_view url, std::u16string_view name = {}) {
    if (url.empty() || found_.references.size() >= kMaximumReferences) return;
    found_.references.push_back(
        {kind, valueOfAttribute(url), name.empty() ? NSString() : valueOfAttribute(name)});
  }

  void visitLink(const TagShape &tag) {
    const std::u16string_view relation = tag.attribute("rel");
    if (hasWord(relation, "stylesheet"))
      add(ReferenceKind::sheet, tag.attribute("href"));
    else if (hasWord(relation, "icon"))
      add(ReferenceKind::image, tag.attribute("href"));
  }

  /// A list of URLs, each with the width or density of its image behind white space: "a.png 1x, b.png 2x".
  void addSet(std::u16string_view set) {
    while (!set.empty()) {
      const std::size_t begin = set.find_first_not_of(u" \t\n\r\f,");
      if (begin == set.npos) return;
      set.remove_prefix(begin);
      std::u16string_view url = set.substr(0, set.find_first_of(kMarkupWhiteSpace));
      const std::size_t end =
          url.ends_with(u',') ? url.size() : std::min(set.find(u',', url.size()), set.size());
      set.remove_prefix(end);
      while (url.ends_with(u',')) url.remove_suffix(1);
      add(ReferenceKind::image, url);
    }
  }

  PageReferences &found_;
};

/// The texts of "style" elements, wherever they stand.
void appendReferencesOfStyles(std::u16string_view markup, std::vector<PageReference> &references) {
  constexpr std::string_view kStart = "<style", kEnd = "</style";
  const auto find = [&](std::string_view what, std::size_t from) {
    const auto found =
        std::search(markup.begin() + static_cast<std::ptrdiff_t>(from), markup.end(), what.begin(), what.end(),
                    [](unichar c, char expected) { return toASCIILower(c) == static_cast<unichar>(expected); });
    return static_cast<std::size_t>(found - markup.begin());
  };
  for (std::size_t start = find(kStart, 0); start < markup.size();) {
    const std::size_t begin = std::min(markup.find(u'>', start), markup.size());
    const std::size_t end = find(kEnd, begin);
    appendReferencesOfSheet(markup.substr(begin, end - begin), references);
    start = find(kStart, end);
  }
}

}  // namespace

PageReferences referencesOfPage(const NSString &markup) {
  PageReferences found;
  PageWalk walk(found);
  scanTags(markup, [&](const TagShape &tag) { walk.visit(tag); });
  appendReferencesOfStyles(markup.view(), found.references);
  return found;
}

void appendReferencesOfSheet(std::u16string_view sheet, std::vector<PageReference> &references) {
  CSSTokenizer tokenizer(sheet);
  CSSArena arena;
  bool isImport = false, isURL = false;
  for (CSSToken token = tokenizer.next(); token.type != CSSTokenType::kEnd; token = tokenizer.next()) {
    const bool isString = token.type == CSSTokenType::kString && (isURL || isImport);
    if ((isString || token.type == CSSTokenType::kURL) && references.size() < kMaximumReferences) {
      references.push_back({isImport ? ReferenceKind::sheet : ReferenceKind::image,
                            NSString::stringWithCharacters(tokenizer.text(token, arena)),
                            {}});
      isImport = false;
    }
    if (token.type == CSSTokenType::kWhiteSpace) continue;
    isURL = token.type == CSSTokenType::kFunction && equalsASCIINoCase(tokenizer.rawText(token), "url");
    if (token.type == CSSTokenType::kAtKeyword)
      isImport = equalsASCIINoCase(tokenizer.rawText(token), "import");
    else if (!isURL)
      isImport = false;
  }
}

}  // namespace nimbo
