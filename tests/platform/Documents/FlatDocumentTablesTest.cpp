// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/platform/Documents/FlatDocuments.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

TEST(FlatDocumentTables, GivesEmptyCellsAParagraph) {
  const NSAttributedString text =
      read(flat("<table:table><table:table-row><table:table-cell/><table:table-cell><text:p>b</text:p>"
                "</table:table-cell></table:table-row></table:table><text:p>c</text:p>"));
  ASSERT_EQ(text.string().UTF8String(), "\nb\nc");
  const auto columnAt = [&](std::uint32_t index) {
    return text.attributesAtIndex(index)->paragraphStyle->textBlocks.at(0)->startingColumn;
  };
  EXPECT_EQ(columnAt(0), 0u);
  EXPECT_EQ(columnAt(1), 1u);
  EXPECT_TRUE(text.attributesAtIndex(3)->paragraphStyle->textBlocks.empty());
}

TEST(FlatDocumentTables, RepeatsRowsAndColumnsThatHoldText) {
  const auto cell = [](const std::string &attributes, const std::string &text) {
    return "<table:table-cell " + attributes + "><text:p>" + text + "</text:p></table:table-cell>";
  };
  const auto row = [](const std::string &attributes, const std::string &cells) {
    return "<table:table-row " + attributes + ">" + cells + "</table:table-row>";
  };
  const auto table = [](const std::string &rows) { return "<table:table>" + rows + "</table:table>"; };
  const std::string none = "<table:table-cell/>";
  const struct {
    std::string body, text;
  } cases[] = {
      {table(row("table:number-rows-repeated='2'", cell("table:number-columns-repeated='3'", "a"))),
       "a\na\na\na\na\na\n"},
      {table(row("table:number-rows-repeated='100'", cell("", "a"))), repeated("a\n", 100)},
      {table(row("table:number-rows-repeated='101'", cell("", "a"))), repeated("a\n", 100)},
      {table(row("table:number-rows-repeated='0'", cell("table:number-columns-repeated='0'", "a"))), "a\n"},
      // What is empty and repeated fills a sheet up; what is not repeated is there.
      {table(row("table:number-rows-repeated='2'", "<table:table-cell table:number-columns-repeated='2'/>") +
             row("", cell("", "a"))),
       "a\n"},
      {table(row("", none) + row("", cell("", "a"))), "\na\n"},
      {table(row("", "<table:table-cell table:number-columns-repeated='2'/>" + cell("", "a"))), "\n\na\n"},
      {table("<table:table-header-rows>" + row("", cell("", "a")) +
             "</table:table-header-rows><table:table-rows>" + row("", cell("", "b")) +
             "</table:table-rows><table:table-row-group>" + row("", cell("", "c")) +
             "</table:table-row-group>"),
       "a\nb\nc\n"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body)), text) << body;
  const auto grouped = [&](std::size_t groups) {
    return plain(flat(table(repeated("<table:table-row-group>", groups) + row("", cell("", "a")) +
                            repeated("</table:table-row-group>", groups))));
  };
  constexpr std::size_t kMostGroups = 16;
  EXPECT_EQ(grouped(kMostGroups), "a\n");
  EXPECT_EQ(grouped(kMostGroups + 1), "");
}

TEST(FlatDocumentTables, SetsCells) {
  const NSAttributedString text = read(
      flat("<table:table table:style-name='t'><table:table-row><table:table-cell table:style-name='c'>"
           "<text:p>a</text:p></table:table-cell><table:table-cell table:style-name='m'><text:p>b</text:p>"
           "</table:table-cell><table:table-cell><text:p>c</text:p></table:table-cell></table:table-row>"
           "</table:table>",
           "<style:style style:family='table' style:name='t'><style:table-properties style:width='5in' "
           "table:border-model='collapsing'/></style:style><style:style style:family='table-cell' "
           "style:name='c'><style:table-cell-properties fo:border='1pt solid #010203' fo:border-left='none' "
           "fo:border-right='2pt solid' fo:padding='3pt' fo:padding-bottom='4pt' fo:padding-left='5pt' "
           "style:vertical-align='bottom' fo:background-color='#040506'/></style:style><style:style "
           "style:family='table-cell' style:name='m'><style:table-cell-properties fo:border-top='1pt solid "
           "#010203' fo:border-bottom='6pt solid #010203' fo:padding-top='7pt' fo:padding-right='8pt' "
           "style:vertical-align='middle'/></style:style>"));
  ASSERT_EQ(text.string().UTF8String(), "a\nb\nc\n");
  const auto cell = [&](std::uint32_t index) {
    return *text.attributesAtIndex(index)->paragraphStyle->textBlocks.at(0);
  };
  using Edges = std::array<double, kRectEdges>;
  const NSTextTableBlock first = cell(0), second = cell(2), third = cell(4);
  EXPECT_EQ(first.borderWidths, (Edges{1, 0, 1, 2}));
  EXPECT_EQ(first.borderColors[NSTopEdge], (NSColor{1, 2, 3}));
  EXPECT_FALSE(first.borderColors[NSLeftEdge]);
  EXPECT_FALSE(first.borderColors[NSRightEdge]);
  EXPECT_EQ(first.padding, (Edges{3, 5, 4, 3}));
  EXPECT_EQ(first.backgroundColor, (NSColor{4, 5, 6}));
  EXPECT_EQ(first.verticalAlignment, NSTextBlockVerticalAlignment::bottom);
  EXPECT_EQ(second.borderWidths, (Edges{1, 0, 6, 0}));
  EXPECT_EQ(second.padding, (Edges{7, 0, 0, 8}));
  EXPECT_EQ(second.verticalAlignment, NSTextBlockVerticalAlignment::middle);
  EXPECT_EQ(third.verticalAlignment, NSTextBlockVerticalAlignment::top);
  EXPECT_TRUE(first.table->collapsesBorders);
  EXPECT_EQ(first.table->width.value, 360);
}

TEST(FlatDocumentTables, MeasuresColumnsInGroups) {
  const NSAttributedString text = read(flat(
      "<table:table><table:table-header-columns><table:table-column "
      "table:style-name='narrow'/></table:table-header-columns><table:table-columns><table:table-column-group>"
      "<table:table-column table:style-name='wide' table:number-columns-repeated='2'/>"
      "</table:table-column-group></table:table-columns><table:table-row><table:table-cell><text:p>a</text:p>"
      "</table:table-cell><table:table-cell table:number-columns-spanned='2'><text:p>b</text:p>"
      "</table:table-cell><table:covered-table-cell/></table:table-row></table:table>",
      "<style:style style:family='table-column' style:name='narrow'><style:table-column-properties "
      "style:column-width='1in'/></style:style><style:style style:family='table-column' style:name='wide'>"
      "<style:table-column-properties style:column-width='2in'/></style:style>"));
  ASSERT_EQ(text.string().UTF8String(), "a\nb\n");
  const auto widthAt = [&](std::uint32_t index) {
    return text.attributesAtIndex(index)->paragraphStyle->textBlocks.at(0)->width.value;
  };
  EXPECT_EQ(widthAt(0), 72);
  EXPECT_EQ(widthAt(2), 288);
}

TEST(FlatDocumentTables, MeasuresSoManyColumns) {
  const auto widthIn = [](const std::string &columns) {
    const NSAttributedString cell = read(
        flat("<table:table>" + columns +
                 "<table:table-row><table:table-cell><text:p>a</text:p></table:table-cell></table:table-row>"
                 "</table:table>",
             "<style:style style:family='table-column' style:name='inch'><style:table-column-properties "
             "style:column-width='1in'/></style:style>"));
    return cell.attributesAtIndex(0)->paragraphStyle->textBlocks.at(0)->width.value;
  };
  const auto column = [](const std::string &count) {
    return "<table:table-column table:style-name='inch' table:number-columns-repeated='" + count + "'/>";
  };
  constexpr std::size_t kMostGroups = 16;
  const std::string begin = "<table:table-column-group>", end = "</table:table-column-group>";
  EXPECT_EQ(widthIn(column("16384")), 72);
  EXPECT_EQ(widthIn(column("99999")), 72);
  EXPECT_EQ(widthIn(repeated(begin, kMostGroups) + column("1") + repeated(end, kMostGroups)), 72);
  EXPECT_EQ(widthIn(repeated(begin, kMostGroups + 1) + column("1") + repeated(end, kMostGroups + 1)), 0);
}

}  // namespace
}  // namespace nimbo
