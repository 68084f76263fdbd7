// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/SafeMarkup.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Feeds/FeedTexts.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

/// How the tags of an element are written.
enum class Writing : std::uint8_t {
  kDropped,
  kBalanced,
  /// Its end tag may be missing.
  kFree,
  kVoid,
};

constexpr auto kWritings = [] {
  using enum TagName;
  std::array<Writing, kTagNames> writings{};
  const auto set = [&](Writing writing, std::initializer_list<TagName> names) {
    for (const TagName name : names) writings[static_cast<std::size_t>(name)] = writing;
  };
  set(Writing::kBalanced,
      {kA,       kAbbr,       kAcronym, kAddress, kArticle, kAside, kAudio,   kB,      kBdi,     kBdo,
       kBig,     kBlockquote, kCenter,  kCite,    kCode,    kDel,   kDetails, kDfn,    kDiv,     kDl,
       kEm,      kFigcaption, kFigure,  kFont,    kFooter,  kH1,    kH2,      kH3,     kH4,      kH5,
       kH6,      kHeader,     kI,       kIns,     kKbd,     kMain,  kMark,    kOl,     kPicture, kPre,
       kQ,       kRuby,       kS,       kSamp,    kSection, kSmall, kSpan,    kStrike, kStrong,  kSub,
       kSummary, kSup,        kTable,   kTime,    kTt,      kU,     kUl,      kVar,    kVideo});
  set(Writing::kFree,
      {kP, kLi, kDt, kDd, kTr, kTd, kTh, kTbody, kThead, kTfoot, kColgroup, kCaption, kRb, kRp, kRt, kRtc});
  set(Writing::kVoid, {kBr, kHr, kImg, kWbr, kCol, kSource});
  return writings;
}();

Writing writingOf(TagName name) {
  return kWritings[static_cast<std::size_t>(name)];
}

struct Attribute {
  std::string_view name;
  bool isLink = false;
  /// The elements that it is kept of; all of them when there are none here.
  std::array<TagName, 5> elements{};
  /// Whether browsers show what it leads to in the page.
  bool isEmbedded = false;
};

constexpr auto kAttributes = [] {
  using enum TagName;
  return std::to_array<Attribute>({
      {"href", true, {kA}},
      {"src", true, {kImg, kAudio, kVideo, kSource}, true},
      {"poster", true, {kVideo}, true},
      {"cite", true, {kBlockquote, kQ, kDel, kIns}},
      {"alt", false, {kImg}},
      {"width", false, {kImg, kVideo, kTable, kTd, kTh}},
      {"height", false, {kImg, kVideo}},
      {"align", false, {kImg, kTd, kTh, kP, kDiv}},
      {"valign", false, {kTd, kTh, kTr}},
      {"colspan", false, {kTd, kTh}},
      {"rowspan", false, {kTd, kTh}},
      {"span", false, {kCol, kColgroup}},
      {"border", false, {kTable, kImg}},
      {"color", false, {kFont}},
      {"start", false, {kOl}},
      {"type", false, {kOl, kUl, kSource}},
      {"datetime", false, {kTime, kDel, kIns}},
      {"controls", false, {kAudio, kVideo}},
      {"title"},
      {"lang"},
      {"dir"},
  });
}();

bool isOf(const Attribute &attribute, TagName element) {
  return attribute.elements[0] == TagName::kUnknown || std::ranges::count(attribute.elements, element) > 0;
}

/// Whether a URL is a picture itself, of a kind that runs nothing.
bool isPictureInPage(std::u16string_view url) {
  constexpr std::string_view kPictures[] = {"data:image/png", "data:image/gif", "data:image/jpeg",
                                            "data:image/webp"};
  // Behind a longer type name may be anything: XML ends in "+xml".
  return std::ranges::any_of(kPictures, [=](std::string_view start) {
    return startsWithASCIINoCase(url, start) && url.size() > start.size() &&
           (url[start.size()] == u';' || url[start.size()] == u',');
  });
}

/// Whether a URL, whose references are decoded, leads to nothing but a page, a file or a person.
bool isHarmless(std::u16string_view url) {
  // Browsers pass over control characters and white space, also within a scheme.
  std::u16string_view::size_type i = 0;
  std::string scheme;
  for (; i < url.size(); ++i) {
    if (url[i] == u':') break;
    if (url[i] == u'/' || url[i] == u'?' || url[i] == u'#') return true;
    if (url[i] > u' ' && url[i] < 0x7f) scheme += static_cast<char>(toASCIILower(url[i]));
  }
  if (i == url.size()) return true;
  // Some programs drop this one and open the rest.
  if (scheme == "feed") return isHarmless(url.substr(i + 1));
  constexpr std::string_view kSchemes[] = {"http", "https", "ftp", "mailto", "tel", "news", "xmpp", "magnet"};
  return std::ranges::count(kSchemes, std::string_view(scheme)) > 0;
}

/// Writes markup without what is not known to be harmless.
class SafeWriter {
 public:
  explicit SafeWriter(const NSURL &base) : base_(base) {}

  void take(const TagShape &tag) {
    takeText(tag.text());
    if (!tag.isOrdinary()) return;
    if (!isTagOfBrowsers(tag.tag())) return takeText(tag.tag());
    const TagName name = tag.tagName();
    const Writing writing = writingOf(name);
    if (writing == Writing::kDropped) return;
    if (tag.isEndTag()) return takeEndTag(tag, name, writing);
    if (writing == Writing::kBalanced && open_.size() == kMaximumDepth) return;
    result_.append(u"<");
    result_.append(tag.name());
    takeAttributes(tag, name);
    result_.append(u">");
    if (writing != Writing::kBalanced) return;
    ++openOf(name);
    open_.push_back({name, tag.name()});
    if (tag.isEmptyElementTag()) closeLast();
  }

  NSString string() && {
    while (!open_.empty()) closeLast();
    return std::move(result_).string();
  }

 private:
  /// Browsers become slow in elements that stand in more than some hundred others.
  static constexpr std::size_t kMaximumDepth = 256;

  struct Element {
    TagName name;
    std::u16string_view units;
  };

  /// Whether it is no "<" of a text, in front of anything but a name.
  static bool isTagOfBrowsers(std::u16string_view tag) {
    const unichar next = tag[1];
    return isASCIILetter(next) || next == u'/' || next == u'!' || next == u'?';
  }

  std::uint32_t &openOf(TagName name) { return openCounts_[static_cast<std::size_t>(name)]; }

  void takeText(std::u16string_view text) { appendEscaped(text, false); }

  void appendEscaped(std::u16string_view text, bool isValue) {
    while (!text.empty()) {
      const std::size_t run = std::min(text.find_first_of(isValue ? u"<>\"" : u"<"), text.size());
      result_.append(text.substr(0, run));
      if (run == text.size()) return;
      result_.append(text[run] == u'<' ? u"&lt;" : text[run] == u'>' ? u"&gt;" : u"&quot;");
      text.remove_prefix(run + 1);
    }
  }

  void takeEndTag(const TagShape &tag, TagName name, Writing writing) {
    if (writing == Writing::kFree) {
      result_.append(u"</");
      result_.append(tag.name());
      result_.append(u">");
    } else if (writing == Writing::kBalanced && openOf(name) > 0) {
      while (open_.back().name != name) closeLast();
      closeLast();
    }
  }

  void closeLast() {
    result_.append(u"</");
    result_.append(open_.back().units);
    result_.append(u">");
    --openOf(open_.back().name);
    open_.pop_back();
  }

  void takeAttributes(const TagShape &tag, TagName name) {
    if (tag.tag().size() <= tag.name().size() + 3) return;
    for (const Attribute &attribute : kAttributes) {
      if (!isOf(attribute, name)) continue;
      const std::u16string_view value = tag.attribute(attribute.name);
      if (value.empty() && !(attribute.name == "controls" && tag.hasAttribute(attribute.name))) continue;
      const NSString link = attribute.isLink ? linkOf(value, attribute.isEmbedded) : NSString();
      if (attribute.isLink && link.length() == 0) continue;
      result_.append(u" ");
      result_.append(attribute.name);
      result_.append(u"=\"");
      if (attribute.isLink)
        result_.appendString(link);
      else
        appendEscaped(value, true);
      result_.append(u"\"");
    }
  }

  NSString linkOf(std::u16string_view value, bool isEmbedded) const {
    NSString link = detail::feedText(value, detail::Decoding::kReferences);
    if (isEmbedded && isPictureInPage(link.view())) return stringByConvertingCharactersToStandardEntities(link);
    if (base_)
      if (const NSURL url = URLRelativeTo(link, base_)) link = url.absoluteString();
    return safeLink(link);
  }

  const NSURL base_;
  NSMutableString result_;
  std::vector<Element> open_;
  std::array<std::uint32_t, kTagNames> openCounts_{};
};

}  // namespace

NSString safeMarkup(const NSString &markup, const NSURL &base) {
  if (!markup) return markup;
  SafeWriter writer(base);
  scanTags(markup, [&](const TagShape &tag) { writer.take(tag); });
  return std::move(writer).string();
}

NSString safeText(const NSString &markup) {
  if (!markup) return markup;
  NSMutableString text;
  scanTags(markup, [&](const TagShape &tag) { text.append(tag.text()); });
  SafeWriter writer{NSURL()};
  // Without its tags a text may hold others.
  writer.take(TagShape(text.view(), {NSNotFound, 0}, {text.length(), 0}, 0, kClosingCall));
  return std::move(writer).string();
}

NSString safeLink(const NSString &url) {
  if (!url || isHarmless(url.view())) return stringByConvertingCharactersToStandardEntities(url);
  return NSString::string();
}

}  // namespace nimbo
