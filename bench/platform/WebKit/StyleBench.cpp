// SPDX-License-Identifier: Apache-2.0
//
// How much processor time the styles of a page's elements take, with the tree in hand: of pages that are made
// of rows with the classes of a framework, without a sheet and with sheets of growing size, the framework's
// rules in front. The styles that an element must have are looked at first.
//
//   bench-style [MEGABYTES]

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/ProcessorTime.hpp"
#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/StyleResolver.hpp"

namespace {

using namespace nimbo;
using namespace nimbo::bench;
using namespace nimbo::detail;

constexpr std::size_t kMegabyte = 1 << 20;

std::u16string wide(const std::string &text) {
  return {text.begin(), text.end()};
}

/// A page of so many bytes of which each row has some style of its own.
std::u16string makePage(std::size_t length) {
  std::string page = "<!DOCTYPE html><title>Rows</title><body class='container'>";
  for (std::size_t row = 0; page.size() < length; ++row) {
    const std::string n = std::to_string(row % 400);
    page += "<div class='row g-" + n + "'><div class='col-md-6 text-" + n + "'><h3 class='h5 mb-" + n +
            "'>A heading of the row</h3><p class=lead>Some text with <b>weight</b>, <a href='#" + n +
            "'>links</a> and <code>code</code>.</p><ul class='list-unstyled'><li>One<li class=active>Two</ul>"
            "<span style='color:#" +
            std::to_string(100 + row % 900) +
            "'>coloured</span> text that goes on "
            "for a while, as text does, before the row ends.</div></div>\n";
  }
  return wide(page);
}

/// A sheet of so many bytes, of the kinds of rules that frameworks have.
NSString makeSheet(std::size_t length) {
  std::string sheet =
      ":root{--bs-blue:#0d6efd;--bs-body:#212529}*,::before,::after{box-sizing:border-box}"
      "body{margin:0;font:400 1rem/1.5 system-ui,sans-serif;color:var(--bs-body)}"
      ".lead{font-size:1.25rem;font-weight:300}.active{color:var(--bs-blue)!important}";
  for (std::size_t i = 0; sheet.size() < length; ++i) {
    const std::string n = std::to_string(i);
    sheet += ".g-" + n + "{--gap:" + n + "px;padding:var(--gap)}.text-" + n + "{color:rgb(" +
             std::to_string(i % 256) + ",0,0)!important}.mb-" + n + ">.x~.y:hover{margin:" + n + "px}.btn-" +
             n + ":not(:disabled):focus,.nav-" + n + " .nav-link.active{color:#fff;border:1px solid #" +
             std::to_string(100 + i % 900) + "}@media(min-width:" + n + "px){.col-" + n +
             "{flex:0 0 auto;width:50%}}.list-" + n +
             " li:nth-child(2n+1)>a:first-child{font-weight:" + std::to_string(i % 9 + 1) + "00}";
  }
  return NSString::stringWithLossyUTF8String(sheet);
}

struct Totals {
  std::size_t elements = 0, bold = 0, blue = 0;
};

void walk(const HTMLDocument &page, StyleResolver &resolver, HTMLNodeIndex index, const ComputedStyle &style,
          Totals &totals) {
  ++totals.elements;
  totals.bold += style.inherited.fontWeight == 700;
  totals.blue += style.inherited.color.blue != 0 && style.inherited.color.red == 0x0d;
  for (HTMLNodeIndex i = page.node(index).firstChild; i != kNoHTMLNode; i = page.node(i).nextSibling) {
    if (page.node(i).isElement()) walk(page, resolver, i, resolver.styleOf(i, style), totals);
  }
}

void measure(std::size_t pageLength, std::size_t sheetLength) {
  const std::u16string text = makePage(pageLength);
  HTMLDocument page = HTMLDocument::documentWithText(text);
  std::vector<AuthorSheet> sheets;
  if (sheetLength != 0) sheets.push_back({makeSheet(sheetLength), {}, {}});
  const double start = processorSeconds();
  StyleResolver resolver(page, sheets);
  const double begun = processorSeconds();
  Totals totals;
  walk(page, resolver, page.rootElement(), resolver.rootStyle(), totals);
  const double reading = begun - start, styling = processorSeconds() - begun;
  if (totals.bold == 0 || (totals.blue != 0) != (sheetLength != 0)) {
    std::fprintf(stderr, "The styles are wrong.\n");
    std::exit(1);
  }
  const double megabytes = static_cast<double>(text.size()) / kMegabyte;
  std::printf(
      "%6.2f MB of page, %7zu elements, %5zu KB of sheet: %6.1f ms to read, %7.1f ms for styles, %6.1f MB/s\n",
      megabytes, totals.elements, sheetLength / 1024, reading * 1e3, styling * 1e3,
      megabytes / (reading + styling));
}

}  // namespace

int main(int count, char **arguments) {
  const std::size_t megabytes = count > 1 ? std::strtoul(arguments[1], nullptr, 10) : 20;
  for (const std::size_t sheet : {0, 50, 100, 200, 400}) measure(megabytes * kMegabyte, sheet * 1024);
  for (std::size_t part = 16; part > 0; part /= 2) measure(megabytes * kMegabyte / part, 200 * 1024);
  return 0;
}
