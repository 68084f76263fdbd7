// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "Classes/Pages/PageFactHandlers.hpp"
#include "tests/Classes/Markup/PlainTagScanner.hpp"

namespace nimbo {

/// The plain twin of the facts and links of a page: every question walks over all tags, which are found unit by
/// unit, and is answered in the order in which its rules are told.
class PlainPage {
 public:
  using Strings = std::set<std::u16string>;

  explicit PlainPage(std::u16string_view page) {
    for (const TagCall &call : PlainTagScanner(page).calls()) {
      const auto part = [&](std::size_t from, std::size_t to) {
        from = std::min(from, page.size());
        return std::u16string(page.substr(from, std::max(from, std::min(to, page.size())) - from));
      };
      const std::size_t start = call.tag.location;
      Tag tag{call.kind == kOrdinaryTag ? upper(part(call.name.location, call.name.location + call.name.length))
                                        : u"",
              part(start, start + call.tag.length), part(call.text.location, start), start};
      tags_.push_back(std::move(tag));
    }
  }

  std::u16string title() const {
    for (const Tag &tag : tags_) {
      if (tag.name == u"TITLE" && tag.endsTitle()) return tag.text;
      if (tag.name == u"BODY") break;
    }
    return {};
  }

  NSURL base(bool isLastOfAll) const {
    NSURL base;
    for (const Tag &tag : tags_) {
      if (tag.name == u"BODY" && !isLastOfAll) break;
      if (tag.name != u"BASE" || !tag.isOpening() || tag.value("HREF").empty()) continue;
      base = baseURL(string(tag.value("HREF")));
      if (!isLastOfAll) break;
    }
    return base;
  }

  std::u16string canonical() const {
    for (const Tag &tag : tags_) {
      if (tag.name == u"BODY") break;
      if (tag.name != u"LINK" || !tag.isOpening() || upper(tag.value("REL")) != u"CANONICAL") continue;
      const std::u16string url = normalized(tag.value("HREF"));
      if (!url.empty() && url[0] != u'#') return url;
    }
    return {};
  }

  std::u16string date() const {
    for (const Tag &tag : tags_) {
      if (tag.name == u"BODY") break;
      if (tag.name != u"META") continue;
      const std::u16string name = upper(tag.value("NAME"));
      if (name != u"DATE" && name != u"DC.DATE" && upper(tag.value("HTTP-EQUIV")) != u"LAST-MODIFIED") continue;
      if (const std::u16string content = tag.content(); !content.empty()) return content;
    }
    return {};
  }

  std::u16string meta(const char *attribute, std::u16string_view first, std::u16string_view second) const {
    std::u16string result;
    for (const Tag &tag : tags_) {
      if (tag.name == u"BODY") break;
      const std::u16string value = upper(tag.value(attribute));
      if (tag.name != u"META" || value.empty() || (value != upper(first) && value != upper(second))) continue;
      if (const auto content = tag.content(); !content.empty())
        result += (result.empty() ? u"" : u" ") + content;
    }
    return result;
  }

  std::map<std::u16string, std::u16string> metas() const {
    std::map<std::u16string, std::u16string> result;
    for (const Tag &tag : tags_) {
      if (tag.name == u"BODY") break;
      if (tag.name != u"META" || tag.value("NAME").empty() || tag.content().empty()) continue;
      std::u16string &value = result[lower(tag.value("NAME"))];
      value += (value.empty() ? u"" : u" ") + tag.content();
    }
    return result;
  }

  /// The plain form, and the one of the Dublin Core, which counts when there is one.
  std::u16string indexed(std::u16string_view name, bool isJoined) const {
    std::u16string plain, core;
    bool hasPlain = false;
    for (const Tag &tag : tags_) {
      if (name == u"TITLE" && tag.name == u"TITLE" && tag.endsTitle() && !hasPlain) {
        plain = tag.text;
        hasPlain = true;
      }
      if (tag.name != u"META" || tag.content().empty()) continue;
      const std::u16string own = upper(tag.value("NAME"));
      if (own == name && (isJoined || !hasPlain)) {
        plain += (plain.empty() ? u"" : u" ") + tag.content();
        hasPlain = true;
      } else if (own == u"DC." + std::u16string(name) && (isJoined || core.empty())) {
        core += (core.empty() ? u"" : u" ") + tag.content();
      }
    }
    return core.empty() ? plain : core;
  }

  std::u16string favIcon(bool isLast) const {
    std::u16string icon;
    for (const Tag &tag : tags_) {
      if (tag.name != u"LINK" || !tag.isOpening() || !contains(tag.value("REL"), u"SHORTCUT ICON")) continue;
      const std::u16string link = relative(tag.value("HREF"));
      if (!link.empty()) icon = link;
      if (!icon.empty() && !isLast) break;
    }
    return icon;
  }

  Strings links(std::u16string_view containing, bool noFollow, bool isFiltered) const {
    Strings links;
    std::u16string text, pending;
    bool isOpen = false;
    const auto add = [&](const std::u16string &link) {
      if (link.empty() || (isFiltered && filterLink(string(link)))) return;
      if (const auto url = normalized(link); !url.empty()) links.insert(url);
    };
    for (const Tag &tag : tags_) {
      if (isOpen) text += tag.text;
      if (tag.name != u"A" && (tag.name != u"AREA" || !containing.empty())) continue;
      const bool isSkipped = noFollow && contains(tag.value("REL"), u"NOFOLLOW");
      const std::u16string link = isSkipped || !tag.isOpening() ? u"" : tag.value("HREF");
      if (containing.empty()) {
        add(link);
      } else if (tag.isOpening()) {
        text.clear();
        pending = link;
        isOpen = !link.empty();
      } else if (tag.isEnd()) {
        if (isOpen && text.find(containing) != text.npos) add(pending);
        isOpen = false;
      }
    }
    return links;
  }

  Strings frames(bool withLinks) const {
    Strings frames;
    for (const Tag &tag : tags_) {
      if (!tag.isOpening()) continue;
      if (tag.name == u"FRAME" || tag.name == u"IFRAME") addTo(frames, normalized(tag.value("SRC")));
      if (withLinks && (tag.name == u"A" || tag.name == u"AREA")) addTo(frames, normalized(tag.value("HREF")));
    }
    return frames;
  }

  bool isFeed() const {
    for (const Tag &tag : tags_) {
      if (!tag.isOpening()) continue;
      if (tag.name == u"HTML" || tag.name == u"HEAD" || tag.name == u"BODY") return false;
      if (tag.name == u"RSS" || tag.name == u"FEED" || tag.name == u"RDF:RDF") return true;
    }
    return false;
  }

  std::u16string robots() const {
    std::u16string robots;
    for (const Tag &tag : tags_)
      if (tag.name == u"META" && tag.isOpening() && upper(tag.value("NAME")) == u"ROBOTS" &&
          !tag.content().empty())
        robots += (robots.empty() ? u"" : u",") + tag.content();
    return robots;
  }

  Strings images() const {
    Strings images;
    for (const Tag &tag : tags_) {
      if (!tag.isOpening()) continue;
      if (tag.name == u"IMG") addTo(images, normalized(tag.value("SRC")));
      if (tag.name == u"BODY") addTo(images, normalized(tag.value("BACKGROUND")));
      if (tag.name == u"LINK" && (contains(tag.value("REL"), u"ICON") || contains(tag.value("REL"), u"IMAGE")))
        addTo(images, relative(tag.value("HREF")));
    }
    return images;
  }

  Strings sheets() const {
    Strings sheets;
    for (const Tag &tag : tags_) {
      if (!tag.isOpening()) continue;
      const std::u16string relation = tag.value("REL");
      if (tag.name == u"LINK" &&
          (contains(relation, u"STYLE") || contains(relation, u"SHEET") || contains(relation, u"SCRIPT")))
        addTo(sheets, relative(tag.value("HREF")));
      if (tag.name != u"STYLE" && tag.name != u"SCRIPT") continue;
      std::u16string url = normalized(tag.value("SRC"));
      const std::size_t import = upper(tag.tag).find(u"@IMPORT");
      if (url.empty() && import != url.npos) {
        const std::size_t open = tag.tag.find(u'"', import);
        const std::size_t close = open == url.npos ? open : tag.tag.find(u'"', open + 1);
        if (close != url.npos) url = normalized(tag.tag.substr(open + 1, close - open - 1));
      }
      addTo(sheets, url);
    }
    return sheets;
  }

  Strings objects() const {
    Strings objects;
    for (const Tag &tag : tags_)
      if ((tag.name == u"EMBED" || tag.name == u"OBJECT") && tag.isOpening())
        addTo(objects, normalized(tag.value("HREF")));
    return objects;
  }

 private:
  struct Tag {
    std::u16string name, tag, text;
    std::size_t location;

    bool isEnd() const { return tag.size() > 1 && tag[1] == u'/'; }
    bool isOpening() const { return tag.size() >= 3 && !isEnd(); }
    bool endsTitle() const { return tag.size() >= 4 && (isEnd() || tag[tag.size() - 2] == u'/'); }
    std::u16string value(const char *attribute) const {
      return std::u16string(
          attributeOfTagCharacters(tag.data(), static_cast<std::uint32_t>(tag.size()), attribute).view());
    }
    std::u16string content() const;
  };

  static NSString string(std::u16string_view units) { return NSString::stringWithCharacters(units); }
  static std::u16string normalized(const std::u16string &url) {
    return std::u16string(normalizedStringURL(string(url)).view());
  }
  static std::u16string relative(const std::u16string &url) {
    return std::u16string(normalizedRelLink(string(url)).view());
  }
  static void addTo(Strings &strings, const std::u16string &url) {
    if (!url.empty()) strings.insert(url);
  }
  static std::u16string upper(std::u16string_view units) {
    std::u16string result(units);
    for (char16_t &c : result)
      if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 32);
    return result;
  }
  static std::u16string lower(std::u16string_view units) {
    std::u16string result(units);
    for (char16_t &c : result)
      if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
    return result;
  }
  static bool contains(const std::u16string &text, std::u16string_view upperCaseWord) {
    return upper(text).find(upperCaseWord) != std::u16string::npos;
  }

  std::vector<Tag> tags_;
};

inline std::u16string PlainPage::Tag::content() const {
  const CharacterSetRep &whites = *whiteCharacterSetRep(), &alphaNums = *alphaNumCharacterSetRep();
  const std::size_t length = tag.size();
  if (length < 13) return {};
  const std::u16string folded = upper(tag);
  std::size_t i = 0, value = 0;
  while (i <= length - 8 && value == 0) {
    if (tag[i] == u'"' || tag[i] == u'\'') {
      std::size_t twin = i + 1;
      while (twin <= length - 8 && tag[twin] != tag[i]) ++twin;
      i = twin + 1;
      continue;
    }
    if (folded.compare(i, 7, u"CONTENT") == 0 && (i == 0 || !alphaNums.contains(tag[i - 1]))) {
      std::size_t next = i + 7;
      while (next < length && whites.contains(tag[next])) ++next;
      if (next < length && tag[next] == u'=') value = next + 1;
    }
    ++i;
  }
  if (value == 0) return {};
  while (value < length && whites.contains(tag[value])) ++value;
  if (value == length) return {};
  std::size_t end = value;
  if (const char16_t quote = tag[value]; quote == u'"' || quote == u'\'') {
    int depth = 0;
    for (end = ++value; end < length && tag[end] != quote; ++end) {
      if (tag[end] == u'<') {
        if (folded.compare(end + 1, 4, u"META") == 0) break;
        ++depth;
      } else if (tag[end] == u'>' && end > value && --depth < 0) {
        break;
      }
    }
    if (end < length && tag[end] == quote && depth == 1) {
      if (end > value && tag[end - 1] == u'<')
        end -= 1;
      else if (end > value + 1 && tag[end - 1] == u'/' && tag[end - 2] == u'<')
        end -= 2;
    }
  } else {
    while (end < length && tag[end] != u'>' && !whites.contains(tag[end])) ++end;
  }
  while (end > value && whites.contains(tag[end - 1])) --end;
  return tag.substr(value, end - value);
}

}  // namespace nimbo
