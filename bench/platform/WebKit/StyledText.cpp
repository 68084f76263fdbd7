// SPDX-License-Identifier: Apache-2.0
//
// The texts of pages with the styles of the elements around them, as compare-styles takes them: a line of JSON
// for each page, which is in UTF-8. Style sheets come from files beside the page.
//
//   bench-styled-text PAGE...

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "platform/CSS/CSSNames.hpp"
#include "platform/CSS/CSSStyleSheet.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/StyleResolver.hpp"

namespace {

using namespace nimbo;
using namespace nimbo::detail;
namespace fs = std::filesystem;

NSString textOfFile(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return {};
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  return NSString::stringWithLossyUTF8String(bytes);
}

std::string utf8(std::u16string_view text) {
  return NSString::stringWithCharacters(text).UTF8String();
}

/// A sheet with what it imports from files beside it.
AuthorSheet sheetWithImports(NSString text, const fs::path &folder, std::u16string_view media,
                             std::vector<fs::path> &around) {
  AuthorSheet sheet{std::move(text), media, {}};
  if (!sheet.text) return sheet;
  CSSNames names;
  const CSSStyleSheet read(sheet.text, {{&names, CSSMode::kStandard, false}, CSSMedium()});
  for (const CSSImport &import : read.imports()) {
    const fs::path path = folder / utf8(import.url);
    if (std::find(around.begin(), around.end(), path) != around.end()) {
      sheet.imports.emplace_back();
      continue;
    }
    around.push_back(path);
    sheet.imports.push_back(sheetWithImports(textOfFile(path), folder, {}, around));
    around.pop_back();
  }
  return sheet;
}

bool isStyleSheetLink(std::u16string_view rel) {
  const std::string words = " " + utf8(rel) + " ";
  return words.find(" stylesheet ") != std::string::npos && words.find(" alternate ") == std::string::npos;
}

std::vector<AuthorSheet> sheetsOf(const HTMLDocument &page, const fs::path &folder) {
  std::vector<AuthorSheet> sheets;
  std::vector<fs::path> around;
  for (HTMLNodeIndex i = HTMLDocument::kRoot; i != kNoHTMLNode; i = page.nextInTree(i)) {
    const HTMLNode &node = page.node(i);
    if (!node.isElement()) continue;
    const std::u16string_view media = page.attribute(node, "media"_atom).value_or(u"");
    if (node.name == "style"_atom) {
      std::u16string text;
      for (HTMLNodeIndex child = node.firstChild; child != kNoHTMLNode; child = page.node(child).nextSibling)
        text += page.text(page.node(child));
      sheets.push_back(sheetWithImports(NSString::stringWithCharacters(text), folder, media, around));
    } else if (node.isHTML("link"_atom) && isStyleSheetLink(page.attribute(node, "rel"_atom).value_or(u""))) {
      const fs::path path = folder / utf8(page.attribute(node, "href"_atom).value_or(u""));
      sheets.push_back(sheetWithImports(textOfFile(path), folder, media, around));
    }
  }
  return sheets;
}

void writeJSON(std::u16string_view text) {
  std::putchar('"');
  for (const char16_t c : text) std::printf("\\u%04x", static_cast<unsigned>(c));
  std::putchar('"');
}

/// Writes the runs of a page in the order of its text.
class RunWriter {
 public:
  RunWriter(HTMLDocument &page, const std::vector<AuthorSheet> &sheets)
      : page_(page), resolver_(page, sheets) {}

  void write() {
    if (page_.rootElement() != kNoHTMLNode) writeElement(page_.rootElement(), resolver_.rootStyle(), false);
  }

 private:
  void writeElement(HTMLNodeIndex index, const ComputedStyle &style, bool isLink) {
    const HTMLNode &element = page_.node(index);
    if (style.display == CSSKeyword::kNone) return;
    for (const HTMLAtom name :
         {"iframe"_atom, "video"_atom, "audio"_atom, "textarea"_atom, "meter"_atom, "progress"_atom}) {
      if (element.isHTML(name)) return;
    }
    isLink |= element.name == "a"_atom && page_.attribute(element, "href"_atom).has_value();
    for (HTMLNodeIndex i = element.firstChild; i != kNoHTMLNode; i = page_.node(i).nextSibling) {
      const HTMLNode &child = page_.node(i);
      if (child.isElement()) writeElement(i, resolver_.styleOf(i, style), isLink);
      const bool isShown = !style.isUnseen && style.inherited.visibility == CSSKeyword::kVisible;
      if (child.kind == HTMLNodeKind::text && isShown) writeRun(page_.text(child), style, isLink);
    }
  }

  void writeRun(std::u16string_view text, const ComputedStyle &style, bool isLink) {
    const InheritedStyle &own = style.inherited;
    const auto word = [](bool flag) { return flag ? "true" : "false"; };
    std::printf("%s[", isFirst_ ? "" : ",");
    isFirst_ = false;
    writeJSON(text);
    std::printf(
        ",{\"weight\":%u,\"italic\":%s,\"size\":%.6g,\"color\":[%u,%u,%u,%.4g],\"underline\":%s,"
        "\"strike\":%s,\"link\":%s}]",
        own.fontWeight, word(own.isItalic), own.fontSize, own.color.red, own.color.green, own.color.blue,
        static_cast<double>(own.color.alpha), word(style.underline.style != CSSKeyword::kNone),
        word(style.lineThrough.style != CSSKeyword::kNone), isLink ? "true" : "null");
  }

  HTMLDocument &page_;
  StyleResolver resolver_;
  bool isFirst_ = true;
};

}  // namespace

int main(int count, char **arguments) {
  for (int i = 1; i < count; ++i) {
    const fs::path path = arguments[i];
    const NSString text = textOfFile(path);
    HTMLDocument page = HTMLDocument::documentWithText(text.view());
    const std::vector<AuthorSheet> sheets = sheetsOf(page, path.parent_path());
    std::printf("{\"runs\":[");
    RunWriter(page, sheets).write();
    std::printf("]}\n");
  }
  return 0;
}
