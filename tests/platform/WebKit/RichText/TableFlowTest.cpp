// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "platform/WebKit/RichText/PageFlow.hpp"
#include "platform/WebKit/RichText/TableGrid.hpp"
#include "tests/platform/WebKit/RichText/PageDump.hpp"

namespace nimbo::detail {
namespace {

TEST(TableFlow, CellsStandWhereABrowserPutsThem) {
  expectParagraphs({
      {u"<table><tr><td>a<td>b<tr><td><td>d</table>",
       "<cell 1:0,0/2>a|<cell 1:0,1/2>b|<cell 1:1,0/2>|<cell 1:1,1/2>d|"},
      {u"<table><tr><td rowspan=2>a<td colspan=2>b<tr><td>c<td>d</table>",
       "<cell 1:0,0+2x1/3>a|<cell 1:0,1+1x2/3>b|<cell 1:1,1/3>c|<cell 1:1,2/3>d|"},
      {u"<table><tfoot><tr><td>f<tbody><tr><td>b<thead><tr><td>h</table>",
       "<cell 1:0,0/1>h|<cell 1:1,0/1>b|<cell 1:2,0/1>f|"},
      {u"<table><tr><td>a<td rowspan=2>b<tr><td colspan=2>c</table>",
       "<cell 1:0,0/2>a|<cell 1:0,1+2x1/2>b|<cell 1:1,0/2>c|"},
      {u"<table><tbody><tr><td rowspan=0>a<td>b<tr><td>c<tbody><tr><td>d</table>",
       "<cell 1:0,0+2x1/2>a|<cell 1:0,1/2>b|<cell 1:1,1/2>c|<cell 1:2,0/2>d|"},
      {u"<table><tr><td colspan=1000>a<tr><td rowspan=99999 colspan=x>b<td>c</table>",
       "<cell 1:0,0+1x2/2>a|<cell 1:1,0/2>b|<cell 1:1,1/2>c|"},
      {u"<table><tr><td style='display:none'>a<td>b<tr hidden><td>c</table>", "<cell 1:0,0/1>b|"},
      {u"<table><tr hidden><td>a<script></script><tr><td>b</table>", "<cell 1:0,0/1>b|"},
      {u"<table><tr><td rowspan=-1 colspan=-2>a<td colspan=0>b<tr><td>c<td>d</table>",
       "<cell 1:0,0/2>a|<cell 1:0,1/2>b|<cell 1:1,0/2>c|<cell 1:1,1/2>d|"},
      {u"<table></table>a", "a|"},
      {u"<table><tr style='visibility:collapse'><td>a<tr><td>b</table>", "<cell 1:0,0/1>b|"},
      {u"<table><tbody style='visibility:collapse'><tr><td>a<tbody><tr><td>b</table>", "<cell 1:0,0/1>b|"},
  });
}

TEST(TableFlow, MissingPartsAreMadeUp) {
  expectParagraphs({
      {u"<table><tbody><tr><td>a</td><div style='display:contents'></div></tr></table>", "<cell 1:0,0/1>a|"},
      {u"<div style='display:table'><div style='display:table-row-group'><div style='display:contents'>"
       u"<div style='display:table-row'><div style='display:contents'><div style='display:table-cell'>a</div>"
       u"</div><div style='display:table-cell'>b</div></div></div><div style='display:table-cell'>c</div>"
       u"</div></div>",
       "<cell 1:0,0/2>a|<cell 1:0,1/2>b|<cell 1:1,0/2>c|"},
      {u"<div style='display:table-cell'>a</div> <div style='display:table-cell'>b</div>c",
       "<cell 1:0,0/2>a|<cell 1:0,1/2>b|c|"},
      {u"<div style='display:table'>a<div style='display:table-row'><i>b</i><div "
       u"style='display:table-cell'>c</div>"
       u"</div></div>",
       "<cell 1:0,0/2>a|<cell 1:1,0/2>b|<cell 1:1,1/2>c|"},
      {u"<div style='display:table-row-group'><div style='display:table-cell'>a</div></div>",
       "<cell 1:0,0/1>a|"},
      {u"<div style='display:table'><div style='display:contents'><div style='display:table-row'>"
       u"<div style='display:table-cell'>a</div></div></div></div>",
       "<cell 1:0,0/1>a|"},
      {u"<div style='display:table-row'>a</div>b", "<cell 1:0,0/1>a|b|"},
      // What has no group is in none of those around it.
      {u"<div style='display:table'>x<div style='display:table-header-group'>h</div>y<div "
       u"style='display:contents'><div style='display:table-footer-group'>f</div></div>z</div>",
       "<cell 1:0,0/1>h|<cell 1:1,0/1>x|<cell 1:2,0/1>y|<cell 1:3,0/1>z|<cell 1:4,0/1>f|"},
      {u"<div style='display:table-caption'>a</div>b", "a|b|"},
      {u"<div style='display:table-column'>a</div><div style='display:table-column-group'>b</div>c", "c|"},
      {u"a<div style='display:inline-table'>b</div>", "a|<cell 1:0,0/1>b|"},
  });
}

TEST(TableFlow, PartsInheritFromThePartsAroundThem) {
  expectParagraphs({
      {u"<div style='display:table'><div style='display:contents;visibility:collapse'><div "
       u"style='display:table-row'><div style='display:table-cell'>a</div></div></div><div "
       u"style='display:table-row'><div style='display:table-cell'>b</div></div></div>",
       "<cell 1:0,0/1>b|"},
      {u"<style>tbody,tr{counter-increment:n}td::before{content:counter(n)}</style><table><tbody bgcolor=red>"
       u"<tr><td>a<tr><td>b<tbody bgcolor=lime><tr><td>c</table>",
       "<cell 1:0,0/1 #ff0000>2a|<cell 1:1,0/1 #ff0000>3b|<cell 1:2,0/1 #00ff00>5c|"},
      {u"<table style='visibility:collapse'><tbody style='visibility:visible'><tr><td>a</table>",
       "<cell 1:0,0/1>a|"},
      {u"<div style='display:table;visibility:collapse'><div style='display:table-row;visibility:visible'>"
       u"<div style='display:table-cell'>a</div></div></div>",
       "<cell 1:0,0/1>a|"},
  });
}

TEST(TableFlow, CellsHoldBlocksListsAndTables) {
  expectParagraphs({
      {u"<table><tr><td>a<br>b<td><ul style='margin:0'><li>c</ul></table>",
       "<cell 1:0,0/2>a|<cell 1:0,0/2>b|<first=0 head=30 list2={disc}1 cell 1:0,1/2>^•^c|"},
      {u"<ul style='margin:0'><li>a<table><tr><td>b</table><li><table><tr><td>c</table></ul>",
       "<first=0 head=30 list2={disc}1>^•^a|<cell 1:0,0/1>b|<first=0 head=30 list2={disc}1>^•^|<cell "
       "2:0,0/1>c|"},
      {u"<table><tr><td><table><tr><td>a<td>b</table><td>c</table>",
       "<cell 1:0,0/2 cell 2:0,0/2>a|<cell 1:0,0/2 cell 2:0,1/2>b|<cell 1:0,1/2>c|"},
      {u"<!doctype html>x<table><tr><td><p>a</table>y", "x|<before=12 after=12 cell 1:0,0/1>a|y|"},
      {u"<table style='margin:8px 0'><tr><td>a</table>b", "<cell 1:0,0/1>a|<before=6>b|"},
      {u"x<table style='border:8px solid;padding:8px'><tr><td>a</table>y", "x|<cell 1:0,0/1>a|y|"},
      {u"<table><caption>c</caption><caption style='caption-side:bottom'>d</caption><tr><td>a</table>",
       "<center>c|<cell 1:0,0/1>a|<center>d|"},
  });
}

TEST(TableFlow, CellsLookAsStylesSay) {
  expectParagraphs({
      {u"<table bgcolor=yellow><tr bgcolor=lime><td bgcolor=red>a<td>b<tr><td>c</table>",
       "<cell 1:0,0/2 #ff0000>a|<cell 1:0,1/2 #00ff00>b|<cell 1:1,0/2 #ffff00>c|"},
      {u"<table><tr><td style='border:2px solid blue;padding:8px' width='30%'>a<td width=80>b</table>",
       "<cell 1:0,0/2 w30% border=1.5#0000ff padding=6>a|<cell 1:0,1/2 w60>b|"},
      {u"<table><tr align=right><td>a<th>b<tr><th>c</table>",
       "<right cell 1:0,0/2>a|<right cell 1:0,1/2>b|<center cell 1:1,0/2>c|"},
  });
  const auto block = [](std::u16string_view html) {
    return *textOfHTML(html).text.attributesAtIndex(0)->paragraphStyle->textBlocks.at(0);
  };
  EXPECT_EQ(block(u"<table><tr><td>a").verticalAlignment, NSTextBlockVerticalAlignment::middle);
  EXPECT_EQ(block(u"<table><tr><td valign=bottom>a").verticalAlignment, NSTextBlockVerticalAlignment::bottom);
  EXPECT_EQ(block(u"<table><tr><td valign=top>a").verticalAlignment, NSTextBlockVerticalAlignment::top);
  EXPECT_TRUE(block(u"<table style='border-collapse:collapse'><tr><td>a").table->collapsesBorders);
  EXPECT_FALSE(block(u"<table><tr><td>a").table->collapsesBorders);
  const NSTextTableBlock edges = block(
      u"<table><tr><td style='border:solid;border-width:4px 8px 12px 16px;padding:20px 24px 28px 32px'>a");
  EXPECT_EQ(edges.borderWidths, (std::array<double, kRectEdges>{3, 12, 9, 6}));
  EXPECT_EQ(edges.padding, (std::array<double, kRectEdges>{15, 24, 21, 18}));
  EXPECT_EQ(block(u"<table><tr><td style='padding:8px 10% 16px 24px'>a").padding,
            (std::array<double, kRectEdges>{6, 18, 12, 0}));
  const NSTextTableBlock colors =
      block(u"<table><tr><td style='border:1px solid;border-color:#010000 #020000 #030000 #040000'>a");
  EXPECT_EQ(colors.borderColors[NSTopEdge], (NSColor{1, 0, 0}));
  EXPECT_EQ(colors.borderColors[NSRightEdge], (NSColor{2, 0, 0}));
  EXPECT_EQ(colors.borderColors[NSBottomEdge], (NSColor{3, 0, 0}));
  EXPECT_EQ(colors.borderColors[NSLeftEdge], (NSColor{4, 0, 0}));
  EXPECT_EQ(block(u"<table width='50%'><tr><td>a").table->width.value, 50);
}

TEST(TableFlow, LimitsHold) {
  std::u16string wide = u"<table><tr>";
  for (std::uint32_t i = 0; i < TableGrid::kMaximumColumns + 5; ++i) wide += u"<td>a";
  const NSAttributedString row = textOfHTML(wide).text;
  EXPECT_EQ(row.length(), 2 * (TableGrid::kMaximumColumns + 5)) << "nothing is lost";
  const NSTextTableBlock &last = *row.attributesAtIndex(row.length() - 1)->paragraphStyle->textBlocks.at(0);
  EXPECT_EQ(last.startingColumn, TableGrid::kMaximumColumns - 1);

  for (const std::u16string_view unit : {u"<table><tr><td>a", u"<div style='display:table-cell'>a<hr>"}) {
    std::u16string deep;
    for (int i = 0; i < 100; ++i) deep += unit;
    const NSAttributedString nested = textOfHTML(deep).text;
    EXPECT_EQ(std::ranges::count(nested.string().view(), u'a'), 100);
    EXPECT_EQ(nested.attributesAtIndex(nested.length() - 1)->paragraphStyle->textBlocks.size(),
              PageFlow::kMaximumTables);
  }
}

/// Cells as they claim to be, against a table of single slots.
TEST(TableGrid, CellsNeverOverlap) {
  std::uint32_t random = 1;
  const auto next = [&](std::uint32_t bound) {
    random = random * 1664525 + 1013904223;
    return (random >> 16) % bound;
  };
  for (int round = 0; round < 200; ++round) {
    TableGrid grid;
    constexpr std::uint32_t kRows = 12;
    std::vector<std::vector<bool>> isTaken(kRows, std::vector<bool>(64));
    for (std::uint32_t row = 0; row < kRows; ++row) {
      grid.beginRow(kRows - row);
      for (std::uint32_t cells = next(6); cells > 0; --cells) {
        const TableGrid::Place place = grid.place(next(5), next(6));
        ASSERT_EQ(place.row, row);
        ASSERT_LE(row + place.rowSpan, kRows);
        for (std::uint32_t r = row; r < row + place.rowSpan; ++r)
          for (std::uint32_t c = place.column; c < place.column + place.columnSpan; ++c) {
            ASSERT_FALSE(isTaken[r][c]) << "round " << round << " row " << r << " column " << c;
            isTaken[r][c] = true;
          }
      }
    }
  }
}

}  // namespace
}  // namespace nimbo::detail
