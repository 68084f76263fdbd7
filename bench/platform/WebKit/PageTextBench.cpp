// SPDX-License-Identifier: Apache-2.0
//
// How long pages take to become attributed text: the tree, then styles and text, in MB of code units a second.
// Pages of several shapes are made in growing sizes, those among them that would be slow if work grew with the
// square of them. That each ends with its last word is looked at first.
//
//   bench-page-text [MEGABYTES [SHAPE]]

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/WebKit/RichText/PageText.hpp"

namespace {

using namespace nimbo;
using namespace nimbo::detail;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kMegabyte = 1 << 20;

struct Shape {
  const char *name;
  std::string_view start;
  std::string_view part;
};

constexpr Shape kShapes[] = {
    {"article", "<body>",
     "<h3 class=h>A heading</h3><p>Some text with <b>weight</b>, <a href='#n'>links</a> and <code>code</code> "
     "that "
     "goes on for a while, as text does, before its paragraph ends.</p><ul><li>One<li>Two</ul>\n"},
    {"table", "<table>", "<tr><td>cell<td>another cell<td align=right>3<td><b>bold</b>"},
    {"narrow tables", "<body>", "<table><tr><td>x</table>"},
    {"empty rows below a wide one", "<table><tr><td colspan=1000 rowspan=65534>x", "<tr><td>"},
    {"wide row", "<table><tr>", "<td>x"},
    {"long list", "<ol>", "<li>x"},
    {"deep lists", "<body>", "<ul><li>x"},
    {"deep tables", "<body>", "<table><tr><td>x"},
    {"cells without tables", "<body>", "<div style='display:table-cell'>x</div>"},
    {"nested counters", "<style>i{counter-reset:n}i::before{content:counters(n,'.')}</style>", "<i>x"},
    {"short runs", "<body>", "<b>x</b>y"},
    {"blanks", "<body>", "<i> </i> <b> </b>"},
    {"line breaks", "<p>", "x<br>"},
    {"preformatted", "<pre>", "a line of code();\n"},
    {"pictures of one element", "<picture><source srcset=x>", "<img src=a>"},
};

void measure(const Shape &shape, std::size_t length) {
  std::u16string text(shape.start.begin(), shape.start.end());
  while (text.size() < length) text.append(shape.part.begin(), shape.part.end());
  text += u"</table>THE END";
  const auto start = Clock::now();
  HTMLDocument document = HTMLDocument::documentWithText(text);
  const auto parsed = Clock::now();
  StyleResolver styles(document, {});
  const PageText page = textOfPage(document, styles);
  const std::chrono::duration<double> parsing = parsed - start, flowing = Clock::now() - parsed;
  if (!document.isCut() && page.text.string().view().find(u"THE END") == std::u16string_view::npos) {
    std::fprintf(stderr, "The text of \"%s\" is not whole.\n", shape.name);
    std::exit(1);
  }
  const double megabytes = static_cast<double>(text.size()) / kMegabyte;
  std::printf("%-28s %6.2f MB: %6.1f MB/s the tree, %6.1f MB/s styles and text, %6.1f MB/s in all, %8zu runs\n",
              shape.name, megabytes, megabytes / parsing.count(), megabytes / flowing.count(),
              megabytes / (parsing + flowing).count(), page.text.runs().size());
}

}  // namespace

int main(int count, char **arguments) {
  const std::size_t megabytes = count > 1 ? std::strtoul(arguments[1], nullptr, 10) : 4;
  for (const Shape &shape : kShapes) {
    if (count > 2 && std::string_view(arguments[2]) != shape.name) continue;
    for (const std::size_t part : {4, 1}) measure(shape, megabytes * kMegabyte / part);
  }
  return 0;
}
