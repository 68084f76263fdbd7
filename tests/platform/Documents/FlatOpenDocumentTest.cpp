// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatOpenDocument.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "tests/platform/Documents/FlatDocuments.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

TEST(FlatOpenDocument, ShowsTheTextThatAPersonSees) {
  const struct {
    const char *body, *text;
  } cases[] = {
      {"", ""},
      {"<text:p/>", ""},
      {"<text:p/><text:p/>", "\n"},
      {"<text:p>\n  white \t\n space <text:span> all </text:span>\n over </text:p>", "white space all over"},
      {"<text:p>a<text:s text:c=\"3\"/>b<text:s/></text:p>", "a   b "},
      {"<text:p>&lt;&amp;&#x1F600;<![CDATA[<c>]]></text:p>", "<&\U0001F600<c>"},
      {"<text:p>page <text:page-number>7</text:page-number></text:p>", "page 7"},
      {"<text:section><text:p>in</text:p></text:section><text:section "
       "text:display=\"none\"><text:p>out</text:p>"
       "</text:section>",
       "in"},
      {"<text:tracked-changes><text:changed-region><text:deletion><text:p>deleted</text:p></text:deletion>"
       "</text:changed-region></text:tracked-changes><text:p>kept<text:change text:change-id=\"c\"/></text:p>",
       "kept"},
      {"<text:p>a<office:annotation><text:p>comment</text:p></office:annotation>b</text:p>", "ab"},
      {"<text:p><text:ruby><text:ruby-base>base</text:ruby-base><text:ruby-text>ruby</text:ruby-text></"
       "text:ruby>"
       "</text:p>",
       "base"},
      {"<text:p>before<draw:frame><draw:text-box><text:p>boxed</text:p></draw:text-box></draw:frame> "
       "after</text:p>"
       "<text:p>next</text:p>",
       "before after\nboxed\nnext"},
      {"<text:table-of-content><text:table-of-content-source><text:index-title-template>x"
       "</text:index-title-template></text:table-of-content-source><text:index-body><text:p>Contents</text:p>"
       "</text:index-body></text:table-of-content>",
       "Contents"},
      {"<text:p>x<text:note><text:note-citation>a</text:note-citation><text:note-body><text:p>1st</text:p>"
       "<text:p>2nd</text:p></text:note-body></text:note></text:p>",
       "xa\na 1st\n2nd"},
      {"<text:p>a<draw:custom-shape><text:p>shape</text:p></draw:custom-shape>b</text:p>", "ab\nshape"},
      {"<draw:frame><draw:image><office:binary-data>UE5H</office:binary-data></draw:image></draw:frame>"
       "<text:p>x</text:p>",
       "\uFFFC\nx"},
      {"<text:p>x</text:p><draw:frame><draw:image><office:binary-data/></draw:image><draw:image>"
       "<office:binary-data>UE5H</office:binary-data></draw:image></draw:frame>",
       "x\n\uFFFC"},
      {"<text:p>x</text:p><draw:frame><draw:image/></draw:frame><text:p>y</text:p>", "x\ny"},
      {"<text:p>a<draw:frame><table:table><table:table-row><table:table-cell><text:p>1</text:p></"
       "table:table-cell>"
       "</table:table-row></table:table></draw:frame>b</text:p><text:p>c</text:p>",
       "ab\n1\nc"},
      {"<text:p>a<draw:a xlink:href='u'>b<draw:custom-shape><text:p>c</text:p></draw:custom-shape></draw:a>d"
       "</text:p>",
       "abd\nc"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body)), text) << body;
  EXPECT_EQ(plain(flat("<text:p><text:s text:c='10001'/></text:p>")), std::string(10'000, ' '));
  EXPECT_EQ(plain(flat("<draw:page><draw:frame><draw:text-box><text:p>one</text:p></draw:text-box></draw:frame>"
                       "<presentation:notes><text:p>said</text:p></presentation:notes></draw:page>"
                       "<draw:page><draw:custom-shape><text:p>two</text:p></draw:custom-shape></draw:page>",
                       "", "presentation")),
            "one\n\ftwo");
  EXPECT_EQ(plain(flat("<table:table><table:table-row><table:table-cell><text:p>1</text:p></table:table-cell>"
                       "<table:table-cell table:number-columns-repeated=\"16383\"/></table:table-row>"
                       "<table:table-row table:number-rows-repeated=\"1048575\"><table:table-cell "
                       "table:number-columns-repeated=\"16384\"/></table:table-row></table:table>",
                       "", "spreadsheet")),
            "1\n");
}

TEST(FlatOpenDocument, BreaksPagesWhereStylesSaySo) {
  const std::string styles =
      "<style:style style:family='paragraph' style:name='b'><style:paragraph-properties "
      "fo:break-before='page'/>"
      "</style:style><style:style style:family='paragraph' style:name='a'><style:paragraph-properties "
      "fo:break-after='page'/></style:style><style:style style:family='paragraph' style:name='c'>"
      "<style:paragraph-properties fo:break-before='column' fo:break-after='auto'/></style:style>";
  const auto paragraph = [](const char *style) {
    return std::string("<text:p text:style-name='") + style + "'>" + style + "</text:p>";
  };
  EXPECT_EQ(plain(flat(paragraph("b") + paragraph("b") + paragraph("x"), styles)), "b\n\fb\nx");
  EXPECT_EQ(plain(flat(paragraph("a") + paragraph("x") + paragraph("a"), styles)), "a\n\fx\na");
  EXPECT_EQ(plain(flat(paragraph("c") + paragraph("c"), styles)), "c\nc");
  EXPECT_EQ(plain(flat(paragraph("x") + "<table:table><table:table-row><table:table-cell>" + paragraph("b") +
                           "</table:table-cell></table:table-row></table:table>",
                       styles)),
            "x\nb\n");
}

TEST(FlatOpenDocument, LeavesOutWhatIsNoText) {
  for (const std::string name :
       {"office:forms", "office:annotation", "text:tracked-changes", "table:shapes", "table:tracked-changes",
        "table:content-validations", "table:dde-links", "presentation:notes"})
    EXPECT_EQ(plain(flat("<" + name + "><text:p>x</text:p></" + name + "><text:p>y</text:p>")), "y") << name;
  for (const std::string name :
       {"svg:title", "svg:desc", "text:hidden-text", "text:hidden-paragraph", "text:script"})
    EXPECT_EQ(plain(flat("<text:p>a<" + name + ">x</" + name + ">b</text:p>")), "ab") << name;
}

TEST(FlatOpenDocument, HidesWhatStylesHide) {
  const std::string styles =
      "<style:style style:family='paragraph' style:name='p'><style:text-properties text:display='none'/>"
      "</style:style><style:style style:family='text' style:name='t'><style:text-properties "
      "text:display='none'/>"
      "</style:style><style:style style:family='text' style:name='shown'><style:text-properties "
      "text:display='true'/></style:style>";
  const struct {
    const char *body, *text;
  } cases[] = {
      {"<text:p>a</text:p><text:p text:style-name='p'>b<text:tab/></text:p><text:p>c</text:p>", "a\nc"},
      {"<text:p>a<text:span text:style-name='t'>b<text:tab/><text:s/></text:span>c</text:p>", "ac"},
      {"<text:p>a<text:a text:style-name='t'>b<text:line-break/></text:a>c</text:p>", "ac"},
      {"<text:p>a<text:span text:style-name='shown'>b</text:span></text:p>", "ab"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body, styles)), text) << body;
}

TEST(FlatOpenDocument, RaisesTheSignsOfNotes) {
  const NSAttributedString text =
      read(flat("<text:p>x<text:note><text:note-citation>1</text:note-citation><text:note-body><text:p>note"
                "</text:p></text:note-body></text:note>y</text:p>"));
  ASSERT_EQ(text.string().UTF8String(), "x1y\n1 note");
  const int superscripts[] = {0, 1, 0, 0, 1, 0, 0};
  for (std::uint32_t i = 0; i < std::size(superscripts); ++i)
    EXPECT_EQ(text.attributesAtIndex(i)->superscript, superscripts[i]) << i;
}

TEST(FlatOpenDocument, KnowsHeadings) {
  const std::string styles =
      "<style:style style:family='paragraph' style:name='Heading_20_3'/><style:style style:family='paragraph' "
      "style:name='Heading_20_7'/><style:style style:family='paragraph' style:name='Heading_20_x'/>"
      "<style:style style:family='paragraph' style:name='four' style:default-outline-level='4'/>"
      "<style:style style:family='paragraph' style:name='plain' style:parent-style-name='four' "
      "style:default-outline-level=''/><style:style style:family='paragraph' style:name='child' "
      "style:parent-style-name='Heading_20_3'/>";
  const struct {
    const char *attributes;
    int level;
  } cases[] = {{"text:style-name='Heading_20_3'", 3},
               {"text:style-name='Heading_20_7'", 6},
               {"text:style-name='Heading_20_x'", 0},
               {"text:style-name='child'", 3},
               {"text:style-name='four'", 4},
               {"text:style-name='plain'", 0},
               {"text:style-name='four' text:outline-level='2'", 2},
               {"text:outline-level='6'", 6},
               {"text:outline-level='x'", 0},
               {"", 0}};
  for (const auto &[attributes, level] : cases) {
    const NSAttributedString text = read(flat("<text:h " + std::string(attributes) + ">x</text:h>", styles));
    ASSERT_EQ(text.length(), 1u) << attributes;
    EXPECT_EQ(text.attributesAtIndex(0)->paragraphStyle->headerLevel, level) << attributes;
  }
}

TEST(FlatOpenDocument, KnowsPictures) {
  const auto picture = [](const std::string &type, const std::string &frame = "",
                          const std::string &inside = "", const std::string &bytes = "UE5H") {
    const NSAttributedString text = read(flat(
        "<text:p>x<draw:frame " + frame + "><draw:image draw:mime-type='" + type + "'><office:binary-data>" +
        bytes + "</office:binary-data></draw:image>" + inside + "</draw:frame></text:p>"));
    return text.length() == 2 ? text.attributesAtIndex(1)->attachment : NSTextAttachment();
  };
  const struct {
    const char *type;
    NSString name;
  } kinds[] = {{"image/png", u"picture1.png"_ns},     {"image/jpeg", u"picture1.jpeg"_ns},
               {"image/gif", u"picture1.gif"_ns},     {"image/tiff", u"picture1.tiff"_ns},
               {"image/bmp", u"picture1.bmp"_ns},     {"image/webp", u"picture1.webp"_ns},
               {"image/svg+xml", u"picture1.svg"_ns}, {"image/x-emf", u"picture1.emf"_ns},
               {"image/x-wmf", u"picture1.wmf"_ns},   {"application/pdf", u"picture1.pdf"_ns},
               {"image/x-other", u"picture1"_ns}};
  for (const auto &[type, name] : kinds) {
    const NSTextAttachment attachment = picture(type);
    ASSERT_TRUE(attachment) << type;
    EXPECT_EQ(attachment.fileWrapper().preferredFilename(), name) << type;
  }
  const std::string both = "<svg:title>T</svg:title><svg:desc>D</svg:desc>";
  EXPECT_EQ(picture("", "", both).alternativeText(), u"T"_ns);
  EXPECT_EQ(picture("", "", "<svg:desc>D</svg:desc>").alternativeText(), u"D"_ns);
  EXPECT_EQ(picture("", "svg:width='2pt' svg:height='1pt'").sizeInPoints(), (NSSize{2, 1}));
  for (const char *none : {"svg:width='2pt'", "svg:height='2pt'", "svg:width='0pt' svg:height='1pt'",
                           "svg:width='1pt' svg:height='0pt'"})
    EXPECT_FALSE(picture("", none).sizeInPoints()) << none;
  EXPECT_FALSE(picture("", "", "", "VkNMTVRG")) << "\"VCLMTF\" begins what only its writer reads";
}

TEST(FlatOpenDocument, KnowsFactsOfTheDocument) {
  const auto factsOf = [](const std::string &meta) {
    const std::string xml = "<office:document><office:meta>" + meta +
                            "</office:meta><office:body><office:text/></office:body></office:document>";
    DocumentAttributes facts;
    attributedStringWithFlatOpenDocument(NSData::dataWithBytes(xml.data(), xml.size()), &facts);
    return facts;
  };
  const DocumentAttributes facts = factsOf(
      "<dc:creator>Last</dc:creator><meta:initial-creator>First</meta:initial-creator>"
      "<meta:user-defined meta:name='Owner'>Nobody</meta:user-defined>"
      "<meta:user-defined meta:name='Company'>Works &amp; Co</meta:user-defined>"
      "<meta:keyword>a</meta:keyword><meta:keyword/><meta:keyword>b</meta:keyword>"
      "<dc:date>2002-03-04T05:06:07.891</dc:date>");
  EXPECT_EQ(facts.author, u"First"_ns);
  EXPECT_EQ(facts.company, u"Works & Co"_ns);
  EXPECT_EQ(facts.keywords, (std::vector{u"a"_ns, u"b"_ns}));
  EXPECT_EQ(facts.modificationTime, NSDate::dateWithUTC(2002, 3, 4, 5, 6, 7));
  EXPECT_EQ(facts.creationTime, std::nullopt);
  constexpr std::size_t kMostKeywords = 1000;
  EXPECT_EQ(factsOf(repeated("<meta:keyword>a</meta:keyword>", kMostKeywords + 1)).keywords.size(),
            kMostKeywords);
  const struct {
    const char *text;
    std::optional<NSDate> date;
  } cases[] = {
      {"2001-12-31", NSDate::dateWithUTC(2001, 12, 31, 0, 0, 0)},
      {"2001-02-03T23:59:60", NSDate::dateWithUTC(2001, 2, 3, 23, 59, 60)},
      {"2001-02-03T04:05", std::nullopt},
      {"2001-02-03 04:05:06", std::nullopt},
      {"2001-02-03T24:05:06", std::nullopt},
      {"2001-02-03T04:60:06", std::nullopt},
      {"2001-02-03T04:05:61", std::nullopt},
      {"2001-02-03T04:05:-1", std::nullopt},
      {"2001-02-03T-4:05:06", std::nullopt},
      {"2001-02-03T0x:05:06", std::nullopt},
      {"2001-2x-03", std::nullopt},
      {"2001x02-03", std::nullopt},
      {"2001-02x03", std::nullopt},
      {"2001-02-03T04x05:06", std::nullopt},
      {"2001-02-03T04:05x06", std::nullopt},
      {"2001-00-03", std::nullopt},
      {"2001-13-03", std::nullopt},
      {"2001-12-00", std::nullopt},
      {"2001-12-32", std::nullopt},
      {"yesterday", std::nullopt},
  };
  for (const auto &[text, date] : cases)
    EXPECT_EQ(factsOf("<meta:creation-date>" + std::string(text) + "</meta:creation-date>").creationTime, date)
        << text;
}

TEST(FlatOpenDocument, KnowsThePaperOfItsPages) {
  const auto factsOf = [](const std::string &masters) {
    const std::string xml =
        "<office:document><office:meta><dc:creator>Last</dc:creator><dc:title>T</dc:title><dc:subject>S"
        "</dc:subject><dc:description>D</dc:description></office:meta><office:automatic-styles>"
        "<style:page-layout style:name='A'><style:page-layout-properties fo:page-width='10pt' "
        "fo:page-height='20pt' fo:margin-left='1pt' fo:margin-right='2pt' fo:margin-top='3pt' "
        "fo:margin-bottom='4pt'/></style:page-layout><style:page-layout style:name='B'>"
        "<style:page-layout-properties fo:page-width='30pt'/></style:page-layout></office:automatic-styles>"
        "<office:master-styles><style:master-page style:name='First' style:page-layout-name='B'/>" +
        masters + "</office:master-styles><office:body><office:text/></office:body></office:document>";
    DocumentAttributes facts;
    attributedStringWithFlatOpenDocument(NSData::dataWithBytes(xml.data(), xml.size()), &facts);
    return facts;
  };
  const DocumentAttributes facts =
      factsOf("<style:master-page style:name='Standard' style:page-layout-name='A'/>");
  EXPECT_EQ(facts.paperSize, (NSSize{10, 20}));
  EXPECT_EQ(facts.leftMargin, 1);
  EXPECT_EQ(facts.rightMargin, 2);
  EXPECT_EQ(facts.topMargin, 3);
  EXPECT_EQ(facts.bottomMargin, 4);
  EXPECT_EQ(facts.author, u"Last"_ns);
  EXPECT_EQ(facts.title, u"T"_ns);
  EXPECT_EQ(facts.subject, u"S"_ns);
  EXPECT_EQ(facts.comment, u"D"_ns);
  const DocumentAttributes first = factsOf("");
  EXPECT_FALSE(first.paperSize) << "a width alone is no size";
  EXPECT_FALSE(first.topMargin);
}

TEST(FlatOpenDocument, RefusesWhatItIsNot) {
  const struct {
    std::string xml;
    ErrorCode code;
  } cases[] = {{"", ErrorCode::damaged},
               {"text", ErrorCode::damaged},
               {"<office:document>", ErrorCode::damaged},
               {"<office:document/>", ErrorCode::damaged},
               {"<html><body/></html>", ErrorCode::damaged},
               {repeated("<", 10'000'001), ErrorCode::tooLarge}};
  for (const auto &[xml, code] : cases) {
    NSError error;
    EXPECT_FALSE(read(xml, &error));
    EXPECT_EQ(error.errorCode(), code) << xml.substr(0, 30);
  }
}

TEST(FlatOpenDocument, ReadsAsDeepAsItMay) {
  // The content, the sections and what stands in the paragraph.
  constexpr std::size_t kMostSections = 198;
  const auto nested = [](std::size_t sections, NSError *error) {
    return read(flat(repeated("<text:section>", sections) + "<text:p>x</text:p>" +
                     repeated("</text:section>", sections)),
                error);
  };
  NSError error;
  EXPECT_EQ(nested(kMostSections, &error).string().UTF8String(), "x");
  EXPECT_FALSE(error);
  EXPECT_EQ(nested(kMostSections + 1, &error).string().UTF8String(), "");
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
}

TEST(FlatOpenDocument, StaysWithinItsLimits) {
  constexpr std::size_t kDeep = 100'000;
  const std::string cell = "<table:table-cell table:number-columns-repeated=\"16384\"><text:p>" +
                           std::string(20'000, 'x') + "</text:p></table:table-cell>";
  const struct {
    const char *what;
    std::string body;
  } cases[] = {
      {"spans",
       "<text:p>" + repeated("<text:span>", kDeep) + "x" + repeated("</text:span>", kDeep) + "</text:p>"},
      {"sections",
       repeated("<text:section>", kDeep) + "<text:p>x</text:p>" + repeated("</text:section>", kDeep)},
      {"lists", repeated("<text:list><text:list-item>", kDeep) + "<text:p>x</text:p>" +
                    repeated("</text:list-item></text:list>", kDeep)},
      {"tables", repeated("<table:table><table:table-row><table:table-cell>", kDeep) +
                     repeated("</table:table-cell></table:table-row></table:table>", kDeep)},
      {"cells",
       "<table:table>" +
           repeated("<table:table-row table:number-rows-repeated=\"4000000000\">" + cell + "</table:table-row>",
                    100) +
           "</table:table>"},
      {"frames", repeated("<text:p>", kDeep) + repeated("</text:p>", kDeep)},
  };
  for (const auto &[what, body] : cases) {
    NSError error;
    const NSAttributedString text = read(flat(body), &error);
    EXPECT_TRUE(text) << what;
    EXPECT_LT(text.length(), 100'000'000u) << what;
    EXPECT_EQ(error.errorCode(), ErrorCode::incomplete) << what;
  }
}

}  // namespace
}  // namespace nimbo
