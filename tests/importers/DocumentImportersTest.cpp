// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "importers/Packages/DocumentBudget.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "tests/importers/ShippedImporters.hpp"
#include "tests/support/EnvironmentSetting.hpp"
#include "tests/support/ZipSamples.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

TEST_F(Importers, Documents) {
  const NSArray author{u"Rowan Fletcher"_ns}, both{u"Rowan Fletcher"_ns, u"Ash Birch"_ns};
  const NSArray keywords{u"leaf"_ns, u"quiver"_ns};
  const NSDate made = NSDate::dateWithUTC(2024, 9, 20, 10, 30, 0);
  const NSDictionary letter = {
      {u"kMDItemTitle"_ns, u"Loose leaves"_ns},
      {u"kMDItemSubject"_ns, u"Leaves"_ns},
      {u"kMDItemDescription"_ns, u"What was found"_ns},
      {u"kMDItemAuthors"_ns, author},
      {u"kMDItemContentCreationDate"_ns, made},
      {u"kMDItemContentModificationDate"_ns, NSDate::dateWithUTC(2024, 9, 21, 8, 0, 0)},
      {u"kMDItemNumberOfPages"_ns, 1}};
  // What is deleted is not there; notes, comments and what stands on every page come last.
  const NSString body =
      u"The quiver and the leaf\nGr\u00fc\u00dfe & \u9280\u674f fall.\tTab   blanks\nnext "
      u"line\noak\nash\na1\na1 "
      u"below\tb1\n\tb2\nThe end\n"_ns;
  const NSString last = u"A footnote\nThat is me\nArchive of Loose Leaves\nBelow every page"_ns;
  const struct {
    const char *name;
    NSDictionary attributes;
    NSString text;
  } cases[] = {
      {"letter.fodt", letter, stringByConcatenating(body, last)},
      {"letter.odt", letter, stringByConcatenating(body, last)},
      {"letter.docx", letter, stringByConcatenating(body, u"\t", last)},
      {"table.xlsx",
       {{u"kMDItemTitle"_ns, u"Quivers"_ns},
        {u"kMDItemAuthors"_ns, both},
        {u"kMDItemKeywords"_ns, keywords},
        {u"kMDItemCreator"_ns, u"Microsoft Excel"_ns},
        {u"kMDItemContentCreationDate"_ns, made}},
       u"Leaves\nName\tCount\tPressed\nGingko \u9280\u674f\t12\tTRUE\nOak & ash\t3.5\tlast\nA rare one\nEmpty\n"
       u"Sums\nName\t15.5"_ns},
      {"table.ods",
       {{u"kMDItemTitle"_ns, u"Quivers"_ns}, {u"kMDItemKeywords"_ns, keywords}},
       u"Leaves\nName\tCount\nGingko \u9280\u674f\t12\nSums\nName\t15.5"_ns},
      {"talk.odp", {{u"kMDItemAuthors"_ns, author}}, u"First slide\nSay hello\nSecond slide"_ns},
      {"talk.pptx",
       {{u"kMDItemTitle"_ns, u"A talk"_ns},
        {u"kMDItemKeywords"_ns, keywords},
        {u"kMDItemOrganizations"_ns, NSArray{u"Archive of Loose Leaves"_ns}},
        {u"kMDItemContentCreationDate"_ns, made},
        {u"kMDItemNumberOfPages"_ns, 2},
        {u"kMDItemWordCount"_ns, 9}},
       u"Shown\nfirst\nSay hello\nShown last\na\tb\nc\td"_ns},
      {"book.epub",
       {{u"kMDItemTitle"_ns, u"Loose Leaves"_ns},
        {u"kMDItemAuthors"_ns, both},
        {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns}},
        {u"kMDItemDescription"_ns, u"What was found"_ns},
        {u"kMDItemOrganizations"_ns, NSArray{u"The Archive"_ns}},
        {u"kMDItemLanguages"_ns, NSArray{u"en"_ns}},
        {u"kMDItemContentCreationDate"_ns, NSDate::dateWithUTC(2024, 9, 20, 0, 0, 0)}},
       u"First\nSecond\n\n\n\ncaf\u00e9 & more"_ns},
  };
  for (const auto &[name, attributes, text] : cases) {
    SCOPED_TRACE(name);
    NSError error;
    const NSDictionary found = metaData(folder.write(name, contentsOfSample("documents/"s + name)), &error);
    EXPECT_FALSE(error) << error.localizedFailureReason.UTF8String();
    expectAttributes(found, attributes);
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns).string().UTF8String(), text.UTF8String());
  }
}

using OpenXMLParts = std::vector<std::tuple<std::string, std::string, std::string>>;

/// A document of `parts`, each with the end of its content type; the first is the main one.
std::string openXMLDocument(const OpenXMLParts &parts, const std::string &references = "") {
  std::string types = "<Types>";
  ZipParts all;
  for (const auto &[name, type, content] : parts) {
    types += "<Override PartName='/" + name + "' ContentType='application/vnd.openxmlformats-officedocument." +
             type + "+xml'/>";
    all.emplace_back(name, content);
  }
  const std::string main = all[0].first;
  all.emplace_back("[Content_Types].xml", types + "</Types>");
  all.emplace_back("_rels/.rels",
                   "<Relationships><Relationship Id='r1' Target='" + main + "'/></Relationships>");
  all.emplace_back("_rels/" + main + ".rels", "<Relationships>" + references + "</Relationships>");
  return storedZip(all);
}

std::string book(const std::string &chapter, const std::string &encrypted) {
  // Some programs write the slashes of their system.
  return storedZip(
      {{"META-INF\\container.xml", "<container><rootfile full-path='O/P/b.opf'/></container>"},
       {"META-INF/encryption.xml",
        "<e><EncryptedData><CipherReference URI='" + encrypted + "'/></EncryptedData></e>"},
       {"O/P/b.opf",
        "<package><manifest><item id='a' href='../../a.xhtml'/><item id='b' href='./../../b.xhtml'/>"
        "<item id='c' href='../c.xhtml'/></manifest>"
        "<spine><itemref idref='c'/><itemref idref='a'/><itemref idref='b'/></spine></package>"},
       {"O/c.xhtml", "<html><body><img src='cover.png'/></body></html>"},
       {"a.xhtml", "<html><body><p>First</p></body></html>"},
       {"b.xhtml", chapter}});
}

TEST_F(Importers, PartsOfDocuments) {
  constexpr const char *kDocument = "wordprocessingml.document.main";
  const std::string chapter = "<html><body><p>Second</p></body></html>";
  std::string gone, headers;
  for (const std::string name :
       {"tracked-changes", "forms", "scripts", "script", "binary-data", "note-citation", "ruby-text", "title",
        "desc", "event-listeners", "page-number"})
    gone += "<" + name + "><p>gone</p></" + name + ">";
  int number = 0;
  for (const std::string name :
       {"header", "footer", "header-left", "footer-left", "header-first", "footer-first"})
    headers += "<" + name + "><p>" + std::to_string(++number) + "</p></" + name + ">";
  ZipParts many = {{"content.xml", "<o><p>Blatt</p></o>"}};
  for (int i = 0; i < 0xffff; ++i) many.emplace_back(std::to_string(i), "");
  const std::string enough = storedZip(many);
  // As many empty cells as are told from each other, and one more.
  std::string cells = "<table-cell><p>a</p></table-cell>";
  for (int i = 0; i < 63; ++i) cells += "<table-cell/>";
  cells += "<table-cell><p>b</p></table-cell>";
  for (int i = 0; i < 64; ++i) cells += "<table-cell/>";
  cells += "<table-cell><p>c</p></table-cell>";
  many.emplace_back("more", "");
  std::string damaged = storedZip(
      {{"meta.xml", "<o><meta><title>Blatt</title></meta></o>"}, {"content.xml", "<o><p>ganz</p></o>"}});
  damaged[damaged.find("Blatt")] = 'G';
  // Parts that refer to the next one, and others that are no lists of references.
  OpenXMLParts chain = {{"1.xml", "presentationml.presentation.main", "<p><sldId r:id='r'/></p>"},
                        {"a.rels", "", "noise"},
                        {"_rels/a.png", "", "noise"}};
  for (int i = 2; i <= 6; ++i) {
    const std::string part = std::to_string(i), next = std::to_string(i + 1);
    chain.emplace_back(part + ".xml", "drawingml.chart", "<d><p><t>" + part + "</t></p></d>");
    chain.emplace_back("_rels/" + part + ".xml.rels", "",
                       "<r><Relationship Id='r' Target='" + next + ".xml'/></r>");
  }
  const struct {
    const char *name;
    std::string bytes;
    NSString text;
    ErrorCode code = ErrorCode::none;
  } cases[] = {
      // Runs of a text are one text, without its pronunciation; there is no fifth text.
      {"shared.xlsx",
       openXMLDocument(
           {{"book.xml", "spreadsheetml.sheet.main", "<w><sheet name='Leaves' r:id='r2'/></w>"},
            {"sheet.xml", "spreadsheetml.worksheet",
             "<s><row><c t='s'><v>1</v></c><c t='s'><v>0</v></c></row>"
             "<row><c t='s'><v>3</v></c><c t='s'><v>2</v></c><c t='s'><v>4</v></c><c t='s'><v>x</v></c>"
             "<c t='s'><v>4294967296</v></c>"
             "<c t='inlineStr'><is><t>beech</t><rPh><t>bu</t></rPh><r><t>es</t></r></is></c></row></s>"},
            {"texts.xml", "spreadsheetml.sharedStrings",
             "<s> <si> <t>oak</t> </si><si><r><t>as</t></r><rPh><t>esche</t></rPh><r><t>h</t></r></si>"
             "<si><t/></si><si><t>elm</t></si></s>"}},
           "<Relationship Id='r1' Target='texts.xml'/><Relationship Id='r2' Target='sheet.xml'/>"),
       u"Leaves\nash\toak\nelm\t\t\t\t\tbeeches"_ns},
      // Empty cells are told from each other in front of others alone.
      {"empty-cells.xlsx",
       openXMLDocument({{"book.xml", "spreadsheetml.sheet.main", "<w><sheet name='' r:id='r2'/></w>"},
                        {"sheet.xml", "spreadsheetml.worksheet",
                         "<s><row><c/><c t='b'><v>0</v></c><c><v/></c><c t='inlineStr'><is><t/></is></c></row>"
                         "<row><c><v>oak</v></c><c/></row></s>"}},
                       "<Relationship Id='r1' TargetMode='External' Target='book.xml'/>"
                       "<Relationship Id='r2' Target='./sheet.xml'/>"),
       u"\tFALSE\noak"_ns},
      {"wide.fodt", "<o><table-row>" + cells + "</table-row></o>",
       NSString::stringWithUTF8String("a" + std::string(64, '\t') + "b" + std::string(64, '\t') + "c")},
      {"blanks.fodt",
       "<o><s/><tab/><p>a<s/>b<s c='3'/>c<s c='65'/>d<s c='0'/>e</p> between <p> \n f \t g<line-break/> "
       "h</p></o>",
       NSString::stringWithUTF8String("a b   c" + std::string(64, ' ') + "d e\nf g\nh")},
      {"elements.docx",
       openXMLDocument(
           {{"a.xml", kDocument,
             "<d><p><pPr><tab/><t>gone</t></pPr>out<r><t>a</t><tab/><t>b<t/></t><ptab/><t>c</t><br/"
             "><t>d</t><cr/>"
             "<t>e</t></r><Fallback><p><t>gone</t></p><tr/></Fallback><moveFrom><t>gone</t></"
             "moveFrom><del><t>gone</t><tab/></del><ruby><rt><t>gone</t></rt>"
             "<t>f</t></ruby><fld><t>gone</t></fld></p><tr><tc><p><t>g</t></p></tc><tc><p><t>h</"
             "t></p></tc></tr>"
             "<tr><tc><p/></tc><tc><p><t>i</t></p></tc></tr><v>gone</v><text>j</text><text>k</text></d>"}}),
       u"a\tb\tc\nd\nef\ng\th\n\ti\nj\nk"_ns},
      {"elements.fodt",
       "<o>gone<p>a" + gone +
           "b</p><table name='gone'><table-row><table-cell><p>c</p></table-cell>"
           "<covered-table-cell/><table-cell><h>d</h></table-cell></table-row></"
           "table><annotation><p>note<creator>gone"
           "</creator><date>gone</date><date-string>gone</date-string><sender-initials>gone</sender-initials></"
           "p>"
           "</annotation>" +
           headers + "<p>e<date>now</date><note><note-body><p>foot</p></note-body></note>f</p></o>",
       u"ab\nc\t\td\nenowf\nfoot\nnote\n1\n2\n3\n4\n5\n6"_ns},
      {"sheets.fodt", "<o><spreadsheet><table name='A'/><table name='B'/></spreadsheet></o>", u"A\nB"_ns},
      // Slides have their order, whatever names them first and whichever slide is linked to another.
      {"order.pptx",
       openXMLDocument(
           {{"a.xml", "presentationml.presentation.main",
             "<p><sld name='gone' r:id='r3'/><sldId r:id='r2'/><sldId r:id='none'/><sldId r:id='r4'/>"
             "<sldId r:id='r3'/></p>"},
            {"b.xml", "presentationml.slide", "<d><p><t>1</t></p></d>"},
            {"c.xml", "presentationml.slide", "<d><p><t>3</t></p></d>"},
            {"d.xml", "presentationml.slide", "<d><p><t>2</t></p></d>"},
            {"_rels/b.xml.rels", "", "<r><Relationship Id='r1' Target='c.xml'/></r>"}},
           "<Relationship Id='r2' Target='b.xml'/><Relationship Id='r3' Target='c.xml'/>"
           "<Relationship Id='r4' Target='d.xml'/>"),
       u"1\n2\n3"_ns},
      {"chain.pptx", openXMLDocument(chain, "<Relationship Id='r' Target='2.xml'/>"), u"2\n3\n4\n5"_ns},
      // A chart's texts are text, and its numbers are not.
      {"chart.docx",
       openXMLDocument(
           {{"a.xml", kDocument, "<d><p><r><t>re</t><noBreakHyphen/><t>bound</t></r></p></d>"},
            {"chart.xml", "drawingml.chart",
             "<c><cat><strCache><ptCount val='2'/><pt><v>oak</v></pt><pt><v>ash</v></pt></strCache></cat>"
             "<val><numCache><pt><v>12</v></pt></numCache></val></c>"}},
           "<Relationship Id='r1' Target='chart.xml'/>"),
       u"re\u2011bound\noak\nash"_ns},
      {"entity.docx",
       openXMLDocument({{"a.xml", kDocument, "<!DOCTYPE d [<!ENTITY e 'x'>]><d><p><t>&e;</t></p></d>"}}),
       NSString(), ErrorCode::damaged},
      {"empty.docx", openXMLDocument({{"a.xml", kDocument, "<d/>"}}), NSString(), ErrorCode::incomplete},
      {"locked.docx",
       "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"s + std::string(4096, '\0') +
           "E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0"s,
       NSString(), ErrorCode::locked},
      {"damaged.docx", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"s + std::string(4096, '\0'), NSString(),
       ErrorCode::damaged},
      {"noise.docx", "E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0"s, NSString(), ErrorCode::damaged},
      {"locked.odt", storedZip({{"content.xml", "noise"}}, 1), NSString(), ErrorCode::locked},
      {"manifest.odt",
       storedZip({{"META-INF/manifest.xml", "<m><file-entry><encryption-data/></file-entry></m>"},
                  {"content.xml", "noise"}}),
       NSString(), ErrorCode::locked},
      // Behind a damaged part the others are read; a name that is no UTF-8 is no damage.
      {"damaged.odt", damaged, u"ganz"_ns, ErrorCode::damaged},
      {"odd-name.odt", storedZip({{"\xff.png", "x"}, {"content.xml", "<o><p>Blatt</p></o>"}}, 0x800),
       u"Blatt"_ns},
      {"enough.odt", enough, u"Blatt"_ns},
      {"many.odt", storedZip(many), u"Blatt"_ns, ErrorCode::incomplete},
      {"open.epub", book(chapter, "font.otf"), u"First\nSecond"_ns},
      {"locked.epub", book(chapter, "B.xhtml"), u"First"_ns, ErrorCode::locked},
      {"exact.epub", book("<p>Second</p>" + std::string((16 << 20) - 13, '\n'), ""), u"First\nSecond"_ns},
      {"long.epub", book("<p>Second</p>" + std::string(17 << 20, '\n') + "<p>Third</p>", ""),
       u"First\nSecond"_ns, ErrorCode::incomplete},
  };
  for (const auto &[name, bytes, text, code] : cases) {
    SCOPED_TRACE(name);
    NSError error;
    const NSDictionary found = metaData(folder.write(name, bytes), &error);
    EXPECT_EQ(error.errorCode(), code) << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns).string().UTF8String(), text.UTF8String());
  }
}

TEST_F(Importers, LongDocumentsAreCut) {
  constexpr std::uint32_t kMaximumLength = 16 << 20;
  for (const std::uint32_t length : {kMaximumLength, kMaximumLength + 1}) {
    NSError error;
    const NSDictionary found = metaData(
        folder.write("long.fodt", "<o><p>" + std::string(length - 2, 'x') + "</p><p>\xc3\xb6</p></o>"), &error);
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns).string().length(), kMaximumLength);
    EXPECT_EQ(error.errorCode(), length == kMaximumLength ? ErrorCode::none : ErrorCode::incomplete);
  }
}

TEST(DocumentBudget, IsSpentOnce) {
  DocumentBudget budget;
  EXPECT_TRUE(budget.spendBytes((std::uint64_t{512} << 20) - 1));
  EXPECT_TRUE(budget.spendBytes(1));
  EXPECT_FALSE(budget.spendBytes(1));
  EXPECT_FALSE(budget.spendBytes(0));
  budget.fail(ErrorCode::damaged, "later");
  EXPECT_EQ(budget.error().errorCode(), ErrorCode::incomplete);
}

TEST_F(Importers, DocumentsHaveALimitOfMemory) {
  // A value is held as a whole, more than once; the next document has all the memory again.
  for (const std::size_t megabytes : {33, 4}) {
    NSError error;
    const NSDictionary found = metaData(
        folder.write("long.fodt", "<o><p>leaf</p><p a='" + std::string(megabytes << 20, 'x') + "'/></o>"),
        &error);
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns), id(u"leaf"_ns));
    EXPECT_EQ(error.errorCode(), megabytes == 4 ? ErrorCode::none : ErrorCode::memoryLimit)
        << error.localizedFailureReason.UTF8String();
  }
}

TEST_F(Importers, EveryKindOfPart) {
  const std::string text = "<d><p><t>Blatt</t></p></d>", gone = "<d><p><t>gone</t></p></d>";
  const std::string reference = "<Relationship Id='r2' Target='b.xml'/>";
  for (const char *kind : {"wordprocessingml.document.main", "wordprocessingml.template.main",
                           "ms-word.document.macroEnabled.main", "ms-word.template.macroEnabledTemplate.main"})
    EXPECT_EQ(textOf("a.docx", openXMLDocument({{"a.xml", kind, text}})), u"Blatt"_ns) << kind;
  const std::string slides = "<p><sldId id='256' r:id='r2'/></p>";
  for (const char *kind : {"presentationml.presentation.main", "ms-powerpoint.presentation.macroEnabled.main",
                           "presentationml.slideshow.main", "ms-powerpoint.slideshow.macroEnabled.main",
                           "presentationml.template.main", "ms-powerpoint.template.macroEnabled.main",
                           "ms-powerpoint.addin.macroEnabled.main"})
    EXPECT_EQ(
        textOf("a.pptx",
               openXMLDocument({{"a.xml", kind, slides}, {"b.xml", "presentationml.slide", text}}, reference)),
        u"Blatt"_ns)
        << kind;
  const std::string sheets = "<w><sheet name='' r:id='r2'/></w>";
  const std::string sheet = "<s><row><c><v>Blatt</v></c></row></s>";
  for (const char *kind :
       {"spreadsheetml.sheet.main", "ms-excel.sheet.macroEnabled.main", "spreadsheetml.template.main",
        "ms-excel.template.macroEnabled.main", "ms-excel.addin.macroEnabled.main"})
    EXPECT_EQ(
        textOf("a.xlsx", openXMLDocument({{"a.xml", kind, sheets}, {"b.xml", "spreadsheetml.worksheet", sheet}},
                                         reference)),
        u"Blatt"_ns)
        << kind;
  // What a part refers to follows it, once; what stands on every page is last, and other parts are no text.
  OpenXMLParts parts = {{"a.xml", "wordprocessingml.document.main", text},
                        {"b.xml", "wordprocessingml.styles", gone},
                        {"_rels/b.xml.rels", "", "<r><Relationship Id='1' Target='c.xml'/></r>"},
                        {"c.xml", "wordprocessingml.header", gone}};
  std::string references =
      "<Relationship Id='1' Target='header.xml'/><Relationship Id='2' Target='a.xml'/>"
      "<Relationship Id='3' Target='b.xml'/><Relationship Id='4' TargetMode='External' Target='c.xml'/>";
  for (const std::string kind :
       {"wordprocessingml.footer", "wordprocessingml.header", "wordprocessingml.comments",
        "wordprocessingml.endnotes", "wordprocessingml.footnotes", "drawingml.chart", "drawingml.diagramData",
        "drawing"}) {
    const std::string name = kind.substr(kind.find('.') + 1);
    parts.emplace_back(name + ".xml", kind, "<d><p><t>" + name + "</t></p></d>");
    references += "<Relationship Id='" + name + "' Target='" + name + ".xml'/>";
  }
  EXPECT_EQ(textOf("parts.docx", openXMLDocument(parts, references)),
            u"Blatt\ndrawing\ndiagramData\nchart\nfootnotes\nendnotes\ncomments\nheader\nfooter"_ns);
}

TEST_F(Importers, PropertiesOfDocuments) {
  // Dates without a zone are of UTC all the same.
  const EnvironmentSetting zone("TZ", "America/Fortaleza");
  const auto authors = [](const NSString &author) {
    return std::pair(u"kMDItemAuthors"_ns, id(NSArray{author}));
  };
  const struct {
    const char *name;
    std::string bytes;
    NSDictionary attributes;
  } cases[] = {
      {"all.fodt",
       "<o><meta>noise<initial-creator>A</initial-creator><creator>B</creator><title> A\n title "
       "</title><title/>"
       "<language>de</language><generator>Quill</generator><keyword>leaf</keyword><document-statistic "
       "page-count='3' word-count='21'/></meta><p>Blatt</p></o>",
       {authors(u"A"_ns),
        {u"kMDItemTitle"_ns, u"A title"_ns},
        {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}},
        {u"kMDItemCreator"_ns, u"Quill"_ns},
        {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns}},
        {u"kMDItemNumberOfPages"_ns, 3},
        {u"kMDItemWordCount"_ns, 21}}},
      {"later.fodt",
       "<o><meta><creator>B</creator><initial-creator>A</initial-creator><document-statistic page-count='' "
       "word-count='many'/></meta><p>Blatt</p></o>",
       {authors(u"A"_ns), {u"kMDItemNumberOfPages"_ns, id()}, {u"kMDItemWordCount"_ns, id()}}},
      {"other.fodt", "<o><meta><creator>B</creator></meta><p>Blatt</p></o>", {authors(u"B"_ns)}},
      {"all.docx",
       openXMLDocument(
           {{"a.xml", "wordprocessingml.document.main", "<d><p><t>Blatt</t></p></d>"},
            {"b.xml", "core-properties",
             "<p>noise<creator> A;; B </creator><keywords>a,b ;c</keywords><subject>S</subject><subject/>"
             "<language>de</language><modified>2001-01-02T00:00:00Z</modified></p>"},
            {"c.xml", "extended-properties",
             "<p><Application>Quill</Application><Company>C</Company><Pages>3</Pages>"
             "<Words>4 or 5</Words></p>"}}),
       {{u"kMDItemAuthors"_ns, NSArray{u"A"_ns, u"B"_ns}},
        {u"kMDItemKeywords"_ns, NSArray{u"a"_ns, u"b"_ns, u"c"_ns}},
        {u"kMDItemSubject"_ns, u"S"_ns},
        {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}},
        {u"kMDItemContentModificationDate"_ns, NSDate{86400}},
        {u"kMDItemCreator"_ns, u"Quill"_ns},
        {u"kMDItemOrganizations"_ns, NSArray{u"C"_ns}},
        {u"kMDItemNumberOfPages"_ns, 3},
        {u"kMDItemWordCount"_ns, id()}}},
      // The first title, language and date are those of the book itself.
      {"all.epub",
       storedZip(
           {{"META-INF/container.xml", "<c><rootfile full-path='b.opf'/><rootfile full-path='other.opf'/></c>"},
            {"b.opf",
             "<package>noise<title/><title>One</title><title>Two</title><language>de</language><language>en</"
             "language>"
             "<date>2001-01-02</date><date>2002</date><subject>a</subject><subject>b</subject>"
             "<manifest><item id='a' href='a.xhtml'/></manifest><spine><itemref idref='none'/>"
             "<itemref idref='a'/></spine></package>"},
            {"a.xhtml", "<html><body><p>Blatt</p></body></html>"}}),
       {{u"kMDItemTitle"_ns, u"One"_ns},
        {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}},
        {u"kMDItemContentCreationDate"_ns, NSDate{86400}},
        {u"kMDItemKeywords"_ns, NSArray{u"a"_ns, u"b"_ns}},
        {u"kMDItemAuthors"_ns, id()}}},
  };
  for (const auto &[name, bytes, attributes] : cases) {
    SCOPED_TRACE(name);
    const NSDictionary found = metaDataOf(name, bytes);
    expectAttributes(found, attributes);
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns), id(u"Blatt"_ns));
    EXPECT_EQ(found.allKeys().back(), u"kMDItemTextContent"_ns) << "the longest last";
  }
}

TEST_F(Importers, PropertiesHaveTheirLimits) {
  constexpr std::size_t kLongestText = 64 << 10, kLongestList = 1000;
  const std::string title = "<title>" + std::string(kLongestText + 1, 'x') + "</title>";
  std::string keywords, subjects;
  for (std::size_t i = 0; i <= kLongestList; ++i) {
    keywords += "<keyword>a</keyword>";
    subjects += "<creator>a</creator><subject>a</subject>";
  }
  const NSDictionary flat = metaDataOf("a.fodt", "<o><meta>" + title + keywords + "</meta></o>");
  // The name of a sheet is cut, too, and so are cells.
  const std::string name(1024 + 1, 'x'), cell((1 << 20) + 1, 'x');
  const NSDictionary table = metaDataOf(
      "a.xlsx",
      openXMLDocument({{"a.xml", "spreadsheetml.sheet.main", "<w><sheet name='" + name + "' r:id='r2'/></w>"},
                       {"b.xml", "spreadsheetml.worksheet", "<s><row><c><v>" + cell + "</v></c></row></s>"},
                       {"c.xml", "core-properties", title}},
                      "<Relationship Id='r2' Target='b.xml'/>"));
  EXPECT_EQ(table.objectForKey(u"kMDItemTextContent"_ns).string().length(), 1024 + 1 + (1u << 20));
  const NSDictionary book =
      metaDataOf("a.epub", storedZip({{"META-INF/container.xml", "<c><rootfile full-path='b.opf'/></c>"},
                                      {"b.opf", "<package>" + title + subjects + "</package>"}}));
  const NSDictionary page = metaDataOf("a.html", title + "<p>text");
  for (const NSDictionary &found : {flat, table, book, page})
    EXPECT_EQ(found.objectForKey(u"kMDItemTitle"_ns).string().length(), kLongestText);
  for (const id &list : {flat.objectForKey(u"kMDItemKeywords"_ns), book.objectForKey(u"kMDItemKeywords"_ns),
                         book.objectForKey(u"kMDItemAuthors"_ns)})
    EXPECT_EQ(list.array().count(), kLongestList);
}

TEST_F(Importers, RichText) {
  folder.write("leaf.rtfd/TXT.rtf",
               "{\\rtf1{\\info{\\title A title}{\\author A; B}{\\subject S}{\\doccomm D}{\\*\\company C}"
               "{\\keywords leaf, quiver}{\\creatim\\yr2001\\mo1\\dy1}{\\revtim\\yr2001\\mo1\\dy2}}"
               "caf\\'e9{\\pict\\pngblip 89504e470d0a1a0a}\\line next\\par}");
  for (const NSString &path :
       {folder.string("leaf.rtfd"),
        folder.write("leaf.rtf", contentsOfFile((folder.path() / "leaf.rtfd/TXT.rtf").native()))}) {
    NSError error;
    expectAttributes(metaData(path, &error), {{u"kMDItemTitle"_ns, u"A title"_ns},
                                              {u"kMDItemAuthors"_ns, NSArray{u"A"_ns, u"B"_ns}},
                                              {u"kMDItemSubject"_ns, u"S"_ns},
                                              {u"kMDItemDescription"_ns, u"D"_ns},
                                              {u"kMDItemOrganizations"_ns, NSArray{u"C"_ns}},
                                              {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"quiver"_ns}},
                                              {u"kMDItemContentCreationDate"_ns, NSDate{0}},
                                              {u"kMDItemContentModificationDate"_ns, NSDate{86400}},
                                              {u"kMDItemTextContent"_ns, u"caf\u00e9\nnext\n"_ns}});
    EXPECT_FALSE(error);
  }
  const NSString letter = textOf("letter.rtf", contentsOfSample("documents/letter.rtf"));
  for (const std::u16string_view part :
       {u"The quiver and the leaf\n", u"Gr\u00fc\u00dfe & \u9280\u674f fall.\tTab   blanks\nnext line\n",
        u"A footnote"})
    EXPECT_TRUE(contains(letter, part)) << letter.UTF8String();
}

}  // namespace
}  // namespace nimbo
