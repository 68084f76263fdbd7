// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ContentTypes.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/CoreServices/ContainerMIMEType.hpp"
#include "platform/CoreServices/RandomAccessFile.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/ZipSamples.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kPDF = "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n1 0 obj\n<<>>\nendobj\n";
constexpr std::string_view kMail = "X-Spam: no\nFrom: a@example.com\n folded\nDate: today\n\nText\n";

struct Case {
  std::string name;
  std::string content;
  std::string_view contentType;
};

void check(const std::vector<Case> &cases) {
  const TemporaryFolder folder;
  for (const auto &[name, content, contentType] : cases)
    EXPECT_EQ(LSCopyItemContentType(folder.write(name, content)).UTF8String(), contentType) << name;
}

TEST(ContentTypes, GoesByTheName) {
  check({
      {"A.PDF", "plain text", "com.adobe.pdf"},
      {"b\xe4"
       "d.docx",
       "", "org.openxmlformats.wordprocessingml.document"},
      {"a.tar.gz", "", "org.gnu.gnu-zip-tar-archive"},
      {"a.cpp", "", "public.c-plus-plus-source"},
      {"a.html", "<?xml version=\"1.0\"?><html xmlns=\"http://www.w3.org/1999/xhtml\"/>", "public.html"},
      {"a.erl", "", "public.source-code"},  // A type of its own that derives from plain text.
      {"a.wsdl.fo", "", "public.xml"},
      {"Makefile", "", "public.make-source"},
  });
}

TEST(ContentTypes, TakesNoTextForWhatIsNone) {
  check({
      {"pdf.txt", std::string(kPDF), "com.adobe.pdf"},
      {"pdf.htm", std::string(kPDF), "com.adobe.pdf"},
      {"gzip.log", "\x1f\x8b\b", "org.gnu.gnu-zip-archive"},
      {"drawing.ai", std::string(kPDF), "com.adobe.illustrator.ai-image"},
      {"about.txt", "A file begins with %PDF-1.4.", "public.plain-text"},
      {"empty.txt", "", "public.plain-text"},
  });
}

TEST(ContentTypes, AsksTheContentWhenTheNameSaysNothing) {
  check({
      {"pdf", std::string(kPDF), "com.adobe.pdf"},
      {"a.pdf.part", std::string(kPDF), "com.adobe.pdf"},
      {"archived.1", std::string(kPDF), "com.adobe.pdf"},
      {"junk before", "\n\n\n\x01\x02junk\n" + std::string(kPDF), "com.adobe.pdf"},
      {"manual.1", ".\\\" comment\n.TH TEST 1\n.SH NAME\n", "public.plain-text"},
      {"empty", "", "public.data"},
      {"bytes", std::string("\0\1\2\3\xfe\xff", 6), "public.data"},
      {"text", "Plain text, nothing else.\n", "public.plain-text"},
      {"README", "git-jump\n\ndiff --git a/b a/b\n--- a/b\n+++ a/b\n@@ -1 +1 @@\n-b\n+c\n",
       "public.plain-text"},
      {"json", "{\"a\": [1, 2]}\n", "public.json"},
      {"1700000000.1.host:2,S", std::string(kMail), "com.apple.mail.email"},
      {"no mail", "Note: here\nFrom: there\nto: where we went\nand on\n", "public.plain-text"},
      {"script", "#!/usr/bin/python3\nimport sys\nprint(sys.argv)\n", "public.python-script"},
      {"chm", std::string("ITSF\3\0\0\0\x60\0\0\0\1\0\0\0", 16), "com.microsoft.chm-archive"},
      {"heic",
       std::string("\0\0\0\x18"
                   "ftypheic\0\0\0\0mif1heic",
                   24),
       "public.heic"},
      {"sound.ogg", std::string("OggS\0\2\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\1\x1e\1vorbis", 35),
       "org.xiph.ogg-audio"},
  });
  EXPECT_TRUE(beginsLikePDF(std::string(1019, '\n') + "%PDF-"));
  EXPECT_FALSE(beginsLikePDF(std::string(1020, '\n') + "%PDF-"));
}

std::string inUTF16(std::string_view text, bool isBigEndian) {
  std::string bytes;
  for (const char c : text) bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

TEST(ContentTypes, SeesMarkupBehindCommentsAndInUTF16) {
  const std::string declaration = "<?xml version=\"1.0\"?>\n",
                    comment = "<!-- <html> " + std::string(300, '-') + ">\n";
  const std::string feed = "<rss version=\"2.0\"><channel/></rss>",
                    atom = "<feed xmlns=\"http://www.w3.org/2005/Atom\"/>";
  check({
      {"rss", comment + feed, "public.rss"},
      {"rss, declared", declaration + comment + comment + feed, "public.rss"},
      {"rss, marked", "\xef\xbb\xbf" + comment + feed, "public.rss"},
      {"atom", declaration + comment + "<?style x?>" + atom, "public.atom"},
      {"page", comment + "<!DOCTYPE html><html></html>", "public.html"},
      {"piece of a page", comment + "<p>Text</p>", "public.html"},
      {"comment", comment, "public.html"},
      {"comment without end", "<!-- <rss>", "public.html"},
      {"xml", inUTF16(declaration + "<a/>", false), "public.xml"},
      {"xml, big endian", inUTF16(declaration + "<a/>", true), "public.xml"},
      {"xml, marked", "\xff\xfe" + inUTF16(declaration + "<a/>", false), "public.xml"},
      {"rss in UTF-16", inUTF16(comment + feed, true), "public.rss"},
      {"list", "bplist00\xd0", "com.apple.binary-property-list"},
      {"list with a page", "bplist00\xd1\1\2Sa_<html><p>text", "com.apple.binary-property-list"},
      {"web archive", "bplist00\xd1\1\2_\x10\x0fWebMainResource<html><p>text", "com.apple.webarchive"},
      {"drawing", declaration + "<!DOCTYPE svg [<!ENTITY a \"b\">]><s:svg xmlns:s=\"\"/>", "public.svg-image"},
      {"comment about a drawing", "<!-- <svg>", "public.svg-image"},
      {"drawing behind a comment", comment + "<svg\n/>", "public.svg-image"},
      {"drawing in a page", "<!doctype p><p>A <svg></svg>", "public.html"},
      {"drawing in a page behind a comment", comment + "<title>A</title><svg></svg>", "public.html"},
      {"drawing in XML", declaration + "<a><svg></svg></a>", "public.xml"},
      {"drawing in text", "A <svg></svg>", "public.plain-text"},
      {"list.bplist", "", "com.apple.binary-property-list"},
  });
}

/// A small container made by zipfile of Python or by libgsf.
std::string container(const std::string &name) {
  std::ifstream file(TEST_FILES + ("/container/" + name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string typeOfContainer(std::string_view content) {
  const FileDescriptor file(::memfd_create("container", MFD_CLOEXEC));
  EXPECT_EQ(::write(file.get(), content.data(), content.size()), static_cast<ssize_t>(content.size()));
  return containerMIMEType({file.get(), content.size()});
}

TEST(ContentTypes, TakesTheDeclaredTypeOfAPackageUpToALength) {
  const std::string type = "application/" + std::string(244, 'x'), image = "image/x-own";
  EXPECT_EQ(typeOfContainer(storedZip({{"mimetype", type}})), type);
  EXPECT_EQ(typeOfContainer(storedZip({{"mimetype", type + 'x'}})), "application/zip");
  EXPECT_EQ(typeOfContainer(storedZip({{"mimetype", image + " \r\n"}})), image);
  for (const char *const none : {"", "text/plain", "application/a b", "application/a\x7f"})
    EXPECT_EQ(typeOfContainer(storedZip({{"mimetype", none}})), "application/zip") << none;
  // Of a list of what is in a package the beginning is read.
  const std::string entry = "<e media-type=\"image/x-own\" full-path=\"/\"";
  for (const std::size_t beyond : {0, 1}) {
    const std::string blanks((64 << 10) - entry.size() + beyond, ' ');
    EXPECT_EQ(typeOfContainer(storedZip({{"META-INF/manifest.xml", blanks + entry}})),
              beyond == 0 ? image : "application/zip");
  }
}

TEST(ContentTypes, FindsTheEntriesOfAnArchiveByItsDirectory) {
  // The size of the first entry is not in front of it, and there are extra fields and comments.
  std::string archive = storedZip({{"x", ""}, {"mimetype", "image/x-own"}});
  archive[6] = 8;
  archive[31 + 28] = 3;
  archive.insert(31 + 30 + 8, "123");
  const std::size_t directory = archive.find("PK\1\2");
  archive[directory + 30] = 2;
  archive[directory + 32] = 3;
  archive.insert(directory + 46 + 1, "12345");
  const std::size_t end = archive.find("PK\5\6");
  archive[end + 12] = static_cast<char>(archive[end + 12] + 5);
  archive[end + 20] = 7;
  EXPECT_EQ(typeOfContainer(archive + "comment"), "image/x-own");
}

TEST(ContentTypes, StopsAfterSoManyEntriesOfAnArchive) {
  // The first entry of the directory is repeated before the telling one.
  std::string many = container("docx.zip");
  const std::size_t first = many.find("PK\1\2");
  const std::string entry = many.substr(first, many.find("PK\1\2", first + 1) - first);
  for (std::size_t i = 0; i < 5000; ++i) many.insert(first, entry);
  const std::size_t size = many.find("PK\5\6") - first;
  for (std::size_t i = 0; i < 4; ++i) many[first + size + 12 + i] = static_cast<char>(size >> 8 * i);
  EXPECT_EQ(typeOfContainer(many), "application/zip");
}

TEST(ContentTypes, LooksIntoContainers) {
  const std::string sheet = container("xlsx.zip");
  check({
      {"odt", container("odt.zip"), "org.oasis-open.opendocument.text"},
      {"epub", container("epub.zip"), "org.idpf.epub-container"},
      {"epub without type", container("epub-without-mimetype.zip"), "org.idpf.epub-container"},
      {"docx", container("docx.zip"), "org.openxmlformats.wordprocessingml.document"},
      {"docm", container("docm.zip"), "org.openxmlformats.wordprocessingml.document.macroenabled"},
      {"xlsx", sheet, "org.openxmlformats.spreadsheetml.sheet"},
      {"xlsx, cut", sheet.substr(0, sheet.find("PK\1\2")), "org.openxmlformats.spreadsheetml.sheet"},
      {"pptx", container("pptx.zip"), "org.openxmlformats.presentationml.presentation"},
      {"jar", container("jar.zip"), "com.sun.java-archive"},
      {"zip", container("plain.zip"), "public.zip-archive"},
      {"sxw", container("writer-without-mimetype.zip"), "org.openoffice.text"},
      {"sxc", container("calc-late-mimetype.zip"), "org.openoffice.spreadsheet"},
      {"pages", container("pages.zip"), "com.apple.iwork.pages.sffpages"},
      {"numbers", container("numbers.zip"), "com.apple.iwork.numbers.sffnumbers"},
      {"key", container("keynote.zip"), "com.apple.iwork.keynote.sffkey"},
      {"pages of 2009", container("pages-2009.zip"), "com.apple.iwork.pages.sffpages"},
      {"numbers of 2009", container("numbers-2009.zip"), "com.apple.iwork.numbers.sffnumbers"},
      {"key of 2009", container("keynote-2009.zip"), "com.apple.iwork.keynote.sffkey"},
      {"zip, odd mimetype", container("odd-mimetype.zip"), "public.zip-archive"},
      {"doc", container("word-with-sheet.ole"), "com.microsoft.word.doc"},
      {"ole", container("sheet-inside.ole"), "public.data"},
      {"xls", container("excel.ole"), "com.microsoft.excel.xls"},
      {"ppt", container("powerpoint.ole"), "com.microsoft.powerpoint.ppt"},
      {"msg", container("message.ole"), "com.microsoft.outlook.msg"},
  });
}

TEST(ContentTypes, TellsIWorkDocumentsByTheirParts) {
  // A piece with the length of what it unpacks to, a run of bytes as they are, and the first object's number
  // and message.
  const std::string header("\0\1\2\3\x80\1", 6), object = "\x09\x08\x81\x01\x12\x07\x08";
  const std::string text = "\x90\x4e", table = "\1";
  const auto document = [](const std::string &stream) {
    return storedZip({{"Index/Document.iwa", stream}, {"Index/Other.iwa", ""}});
  };
  const std::string zip = "public.zip-archive", pages = "com.apple.iwork.pages.sffpages",
                    numbers = "com.apple.iwork.numbers.sffnumbers", key = "com.apple.iwork.keynote.sffkey";
  check({
      {"text", document(header + "\x20" + object + text), pages},
      {"table", document(header + "\x20" + object + table), numbers},
      {"run of one byte's length", document(header + "\xf0\x63" + object + text), pages},
      {"run of four bytes' length", document(header + "\xfc\x63\x62\x61\x60" + object + text), pages},
      {"another object", document(header + "\x20" + object + "\2"), zip},
      {"another form", document("\1" + header.substr(1) + "\x20" + object + text), zip},
      {"a repetition", document(header + "\x21" + object + text), zip},
      {"no number", document(header + "\x20\x09\x10\x01\x12\x07\x08\x01"), zip},
      {"no message", document(header + "\x20\x09\x08\x01\x1a\x07\x08\x01"), zip},
      {"no type", document(header + "\x20\x09\x08\x01\x12\x07\x10\x01"), zip},
      {"only a header", document(header), zip},
      {"nothing", document(""), zip},
      {"slide", storedZip({{"Index/Document.iwa", ""}, {"Index/Slide-1.iwa", ""}}), key},
      {"master", storedZip({{"Index/Document.iwa", ""}, {"Index/MasterSlide.iwa", ""}}), key},
      {"template", storedZip({{"Index/Document.iwa", ""}, {"Index/TemplateSlide.iwa", ""}}), key},
      {"slide alone", storedZip({{"Index/Slide-1.iwa", ""}}), zip},
      {"older key", storedZip({{"presentation.apxl", ""}}), key},
      {"late text", storedZip({{"index.xml", std::string(4084, ' ') + "<sl:document"}}), pages},
      {"too late text", storedZip({{"index.xml", std::string(4085, ' ') + "<sl:document"}}), zip},
      {"other xml", storedZip({{"index.xml", "<document/>"}}), zip},
  });
}

/// A compound file whose folder begins in a sector whose successor stands in the part `index` of the allocation
/// table; the second sector of the folder tells what the file is.
std::string compoundFileWithTablePart(std::uint32_t index) {
  constexpr std::uint32_t kHeader = 512 / 4, kPerTable = 128, kInHeader = 109, kPerList = 127;
  const std::uint32_t folder = index * kPerTable;
  // Lists of the parts stand in the first sectors, behind them the part itself.
  const std::uint32_t lists = (index - kInHeader) / kPerList + 1;
  std::vector<std::uint32_t> numbers(kHeader * (folder + 3));
  const auto sector = [&](std::uint32_t number) { return numbers.data() + kHeader * (number + 1); };
  numbers[0] = 0xe011cfd0;
  numbers[1] = 0xe11ab1a1;
  numbers[7] = 9u << 16;
  numbers[12] = folder;
  numbers[17] = 0;
  for (std::uint32_t i = 0; i < lists; ++i) sector(i)[kPerList] = i + 1;
  sector(lists - 1)[(index - kInHeader) % kPerList] = lists;
  sector(lists)[0] = folder + 1;
  sector(lists)[1] = 0xfffffffe;
  sector(folder)[19] = 4;
  const std::u16string_view name = u"WordDocument";
  std::memcpy(sector(folder + 1), name.data(), name.size() * sizeof name[0]);
  sector(folder + 1)[16] = static_cast<std::uint32_t>((name.size() + 1) * sizeof name[0]);
  sector(folder + 1)[17] = sector(folder + 1)[18] = 0xffffffff;
  return {reinterpret_cast<const char *>(numbers.data()), numbers.size() * sizeof numbers[0]};
}

TEST(ContentTypes, LooksIntoLargeContainers) {
  for (const std::uint32_t index : {109u, 110u, 109u + 126, 109u + 127, 109u + 2 * 127}) {
    std::string content = compoundFileWithTablePart(index);
    EXPECT_EQ(typeOfContainer(content), "application/msword") << index;
    // A list that leads nowhere ends the folder behind its first sector.
    content.replace(68, 4, "\xfe\xff\xff\xff");
    EXPECT_NE(typeOfContainer(content), "application/msword") << index;
  }
}

/// A compound file whose folder is its first sector, of 2^`shift` bytes: the root, a first entry, and on each
/// side of that one more.
std::string compoundFileWithNames(unsigned shift, std::string_view left, std::string_view right) {
  const std::size_t sector = std::size_t{1} << shift;
  std::string content(2 * sector, '\0');
  const auto put = [&](std::size_t at, std::uint32_t number, std::size_t bytes = 4) {
    for (std::size_t i = 0; i < bytes; ++i) content[at + i] = static_cast<char>(number >> 8 * i);
  };
  content.replace(0, 8, "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1");
  put(30, shift, 2);
  put(76, 0xffffffff);
  put(sector + 76, 1);
  const std::string_view names[] = {"first", left, right};
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t entry = sector + (i + 1) * 128;
    for (std::size_t j = 0; j < names[i].size(); ++j)
      put(entry + 2 * j, static_cast<unsigned char>(names[i][j]), 2);
    put(entry + 64, static_cast<std::uint32_t>(2 * names[i].size() + 2), 2);
    put(entry + 68, i == 0 ? 2 : 0xffffffff);
    put(entry + 72, i == 0 ? 3 : 0xffffffff);
  }
  return content;
}

TEST(ContentTypes, KnowsCompoundFilesByTheNamesInThem) {
  const std::string word = "application/msword", other = "application/x-ole-storage";
  const struct {
    unsigned shift;
    std::string_view left, right;
    std::string type;
  } cases[] = {
      {9, "WordDocument", "x", word},
      {9, "x", "WORDDOCUMENT", word},
      {12, "x", "WordDocument", word},
      {9, "x", "WordDocument2", other},
      {10, "x", "WordDocument", other},
      {9, "Quill", "Book", "application/vnd.ms-excel"},
      {9, "x", "\5HwpSummaryInformation", "application/x-hwp"},
      {9, "x", "MatOST", "application/vnd.ms-works"},
      {9, "VisioDocument", "x", "application/vnd.visio"},
  };
  for (const auto &[shift, left, right, type] : cases)
    EXPECT_EQ(typeOfContainer(compoundFileWithNames(shift, left, right)), type) << shift << left << right;
}

/// Cut, with each byte changed, and with each four bytes leading back: it ends, and nothing is read outside.
TEST(ContentTypes, SurvivesDamagedContainers) {
  for (const char *name : {"word-with-sheet.ole", "epub.zip", "writer-without-mimetype.zip", "pages.zip"}) {
    const std::string original = container(name);
    ASSERT_FALSE(original.empty());
    for (std::size_t i = 0; i < original.size(); ++i) {
      std::string changed = original;
      changed[i] = static_cast<char>(changed[i] ^ 0xff);
      std::string cyclic = original;
      cyclic.replace(i, 4, std::string("\1\0\0\0", 4), 0, original.size() - i);
      for (const std::string &content : {original.substr(0, i), changed, cyclic}) {
        const std::string type = typeOfContainer(content);
        EXPECT_TRUE(type.empty() || type.starts_with("application/")) << type;
      }
    }
  }
}

TEST(ContentTypes, KnowsFoldersAndLeavesDevicesAlone) {
  const TemporaryFolder folder;
  const auto type = [&](std::string_view name) {
    return LSCopyItemContentType(folder.string(name)).UTF8String();
  };
  for (const char *name : {"a.txt", "a.rtfd", ".rtfd"}) std::filesystem::create_directory(folder.path() / name);
  EXPECT_EQ(type("a.txt/"), "public.folder");
  EXPECT_EQ(type("a.rtfd/"), "com.apple.rtfd");
  EXPECT_EQ(type(".rtfd"), "public.folder");

  ASSERT_EQ(::mkfifo((folder.path() / "fifo.pdf").c_str(), 0600), 0);
  EXPECT_EQ(type("fifo.pdf"), "public.item");
  EXPECT_EQ(LSCopyItemContentType(u"/dev/zero"_ns), u"public.item"_ns);

  folder.write("target.pdf", "");
  std::filesystem::create_symlink("target.pdf", folder.path() / "a.png");
  std::filesystem::create_symlink("nowhere", folder.path() / "dangling.pdf");
  EXPECT_EQ(type("a.png"), "public.png");
  for (const NSString &nothing :
       {folder.string("dangling.pdf"), folder.string("missing.pdf"), u""_ns, NSString()})
    EXPECT_FALSE(LSCopyItemContentType(nothing));
}

}  // namespace
}  // namespace nimbo
