// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/PageSheets.hpp"

#include <algorithm>
#include <deque>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/CSS/CSSNames.hpp"
#include "platform/CSS/CSSStyleSheet.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"
#include "platform/WebKit/Loading/References.hpp"
#include "platform/WebKit/Loading/SheetText.hpp"

namespace nimbo::detail {
namespace {

constexpr std::u16string_view kBlanks = u" \t\n\r\f";

bool isEqualNoCase(std::u16string_view text, std::u16string_view lower) {
  return std::ranges::equal(text, lower, {}, toASCIILower<char16_t>);
}

std::u16string_view withoutBlanks(std::u16string_view text) {
  return trimmed(text, isASCIIWhiteSpace<char16_t>);
}

/// Whether a word stands in a list of words.
bool hasWord(std::u16string_view list, std::u16string_view lower) {
  while (!(list = withoutBlanks(list)).empty()) {
    const std::size_t end = std::min(list.find_first_of(kBlanks), list.size());
    if (isEqualNoCase(list.substr(0, end), lower)) return true;
    list.remove_prefix(end);
  }
  return false;
}

bool isStyleSheetType(std::optional<std::u16string_view> type) {
  if (!type) return true;
  const std::u16string_view name = withoutBlanks(type->substr(0, type->find(u';')));
  return name.empty() || isEqualNoCase(name, u"text/css");
}

/// A sheet on its way. The places of those that it imports come behind it.
struct Sheet {
  NSString text = {};
  /// Where it comes from; relative references in it begin there.
  NSURL URL;
  std::u16string_view media = {};
  std::vector<std::size_t> imports = {};
  std::size_t depth = 0;
  bool isToLoad = false;
};

class SheetLoading {
 public:
  SheetLoading(const CSSMedium &medium, WebResourceLoader &loader) : medium_(medium), loader_(loader) {}

  void addPageSheets(const HTMLDocument &document, const NSURL &base);
  void loadAll();
  std::vector<AuthorSheet> takeAll();

 private:
  std::size_t add(Sheet sheet);
  void addLink(const HTMLDocument &document, const HTMLNode &link, const NSURL &base);
  void addStyle(const HTMLDocument &document, const HTMLNode &style, const NSURL &base);
  bool isOfChosenSet(const HTMLDocument &document, const HTMLNode &sheet);
  void addImports(std::size_t importer);
  void fetch(std::size_t begin, std::size_t end);
  AuthorSheet take(std::size_t index);

  const CSSMedium &medium_;
  WebResourceLoader &loader_;
  std::deque<Sheet> sheets_;
  std::size_t pageSheets_ = 0;
  /// The title of the first sheet that has one.
  std::u16string_view chosenSet_;
  NSString pageEncodingName_;
};

std::size_t SheetLoading::add(Sheet sheet) {
  sheets_.push_back(std::move(sheet));
  return sheets_.size() - 1;
}

/// Sheets with a title are sets of which readers choose one; the first is theirs until they do.
bool SheetLoading::isOfChosenSet(const HTMLDocument &document, const HTMLNode &sheet) {
  const std::u16string_view title = document.attribute(sheet, "title"_atom).value_or(u"");
  if (chosenSet_.empty()) chosenSet_ = title;
  return title.empty() || title == chosenSet_;
}

void SheetLoading::addLink(const HTMLDocument &document, const HTMLNode &link, const NSURL &base) {
  const std::u16string_view rel = document.attribute(link, "rel"_atom).value_or(u"");
  const std::optional<std::u16string_view> reference = document.attribute(link, "href"_atom);
  if (!reference || !hasWord(rel, u"stylesheet") || hasWord(rel, u"alternate") ||
      document.attribute(link, "disabled"_atom))
    return;
  const std::u16string_view media = document.attribute(link, "media"_atom).value_or(u"");
  if (!isStyleSheetType(document.attribute(link, "type"_atom)) || !matchesMedium(media, medium_)) return;
  if (!isOfChosenSet(document, link)) return;
  add({.URL = URLOfReference(*reference, base), .media = media, .isToLoad = true});
}

void SheetLoading::addStyle(const HTMLDocument &document, const HTMLNode &style, const NSURL &base) {
  const std::u16string_view media = document.attribute(style, "media"_atom).value_or(u"");
  if (!isStyleSheetType(document.attribute(style, "type"_atom)) || !matchesMedium(media, medium_)) return;
  if (!isOfChosenSet(document, style)) return;
  NSMutableString text;
  for (HTMLNodeIndex child = style.firstChild; child != kNoHTMLNode; child = document.node(child).nextSibling)
    if (document.node(child).kind == HTMLNodeKind::text) text.append(document.text(document.node(child)));
  add({.text = std::move(text).string(), .URL = base, .media = media});
}

void SheetLoading::addPageSheets(const HTMLDocument &document, const NSURL &base) {
  for (HTMLNodeIndex index = document.nextInTree(HTMLDocument::kRoot);
       index != kNoHTMLNode && sheets_.size() < kMaximumPageSheets; index = document.nextInTree(index)) {
    const HTMLNode &node = document.node(index);
    if (node.isHTML("link"_atom)) addLink(document, node, base);
    const bool isStyle =
        node.isHTML("style"_atom) || (node.name == "style"_atom && node.nameSpace == HTMLNamespace::svg);
    if (isStyle) addStyle(document, node, base);
  }
  pageSheets_ = sheets_.size();
  pageEncodingName_ = declaredEncodingName(document);
}

void SheetLoading::fetch(std::size_t begin, std::size_t end) {
  std::vector<NSURL> urls;
  for (std::size_t index = begin; index < end; ++index)
    if (sheets_[index].isToLoad) urls.push_back(sheets_[index].URL);
  const std::vector<WebResource> loaded = loader_.load(urls);
  auto resource = loaded.begin();
  for (std::size_t index = begin; index < end; ++index) {
    if (!sheets_[index].isToLoad) continue;
    sheets_[index].text = textOfSheet(resource->data(), resource->textEncodingName(), pageEncodingName_);
    ++resource;
  }
}

void SheetLoading::addImports(std::size_t importer) {
  const Sheet &sheet = sheets_[importer];
  constexpr std::u16string_view kImport = u"@import";
  const auto isEqual = [](char16_t unit, char16_t lower) { return toASCIILower(unit) == lower; };
  const std::u16string_view text = sheet.text.view();
  const bool hasImport =
      std::search(text.begin(), text.end(), kImport.begin(), kImport.end(), isEqual) != text.end();
  if (sheet.depth >= kMaximumImportDepth || !hasImport) return;
  CSSNames names;
  const CSSStyleSheet rules(sheet.text, {.selectors = {.names = &names}, .medium = medium_});
  for (const CSSImport &import : rules.imports()) {
    if (sheets_.size() >= kMaximumPageSheets) return;
    const std::size_t place =
        add({.URL = URLOfReference(import.url, sheet.URL), .depth = sheet.depth + 1, .isToLoad = true});
    sheets_[importer].imports.push_back(place);
  }
}

void SheetLoading::loadAll() {
  for (std::size_t begin = 0; begin < sheets_.size();) {
    const std::size_t end = sheets_.size();
    fetch(begin, end);
    for (; begin < end; ++begin) addImports(begin);
  }
}

AuthorSheet SheetLoading::take(std::size_t index) {
  Sheet &sheet = sheets_[index];
  AuthorSheet result{.text = sheet.text, .media = sheet.media, .imports = {}};
  for (const std::size_t import : sheet.imports) result.imports.push_back(take(import));
  return result;
}

std::vector<AuthorSheet> SheetLoading::takeAll() {
  std::vector<AuthorSheet> result;
  for (std::size_t index = 0; index < pageSheets_; ++index) result.push_back(take(index));
  return result;
}

}  // namespace

std::vector<AuthorSheet> loadPageSheets(const HTMLDocument &document, const NSURL &base,
                                        const CSSMedium &medium, WebResourceLoader &loader) {
  SheetLoading loading(medium, loader);
  loading.addPageSheets(document, base);
  loading.loadAll();
  return loading.takeAll();
}

}  // namespace nimbo::detail
