// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ContentTypes.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/CoreServices/ContainerMIMEType.hpp"
#include "platform/CoreServices/RandomAccessFile.hpp"
#include "platform/Foundation/FileDescriptor.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/platform/CoreServices/ContainerFiles.hpp"

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
      {"a.pdf", "", "com.adobe.pdf"},
      {"A.PDF", "plain text", "com.adobe.pdf"},
      {"b\xe4"
       "d.docx",
       "", "org.openxmlformats.wordprocessingml.document"},
      {"a.chm", "", "com.microsoft.chm-archive"},
      {"a.eml", "", "com.apple.mail.email"},
      {"a.msg", "", "com.microsoft.outlook.msg"},
      {"a.tar.gz", "", "org.gnu.gnu-zip-tar-archive"},
      {"a.cpp", "", "public.c-plus-plus-source"},
      {"a.xlsm", "", "org.openxmlformats.spreadsheetml.sheet.macroenabled"},
      {"a.html", "<?xml version=\"1.0\"?><html xmlns=\"http://www.w3.org/1999/xhtml\"/>", "public.html"},
      {"a.webarchive", "bplist00", "com.apple.webarchive"},
      {"a.erl", "", "public.source-code"},  // A type of its own that derives from plain text.
      {"a.owl", "<rdf/>", "org.w3.rdf+xml"},
      {"a.wsdl.fo", "", "public.xml"},
      {"a.skencil.sk", "", "public.image"},
  });
}

TEST(ContentTypes, AsksTheContentWhenTheNameSaysNothing) {
  check({
      {"pdf", std::string(kPDF), "com.adobe.pdf"},
      {"a.unknown", std::string(kPDF), "com.adobe.pdf"},
      {"a.pdf.part", std::string(kPDF), "com.adobe.pdf"},
      {"archived.0", std::string(kPDF), "com.adobe.pdf"},
      {"archived.1", std::string(kPDF), "com.adobe.pdf"},
      {"junk before", "\n\n\n\x01\x02junk\n" + std::string(kPDF), "com.adobe.pdf"},
      {"manual.1", ".\\\" comment\n.TH TEST 1\n.SH NAME\n", "public.plain-text"},
      {"empty", "", "public.data"},
      {"bytes", std::string("\0\1\2\3\xfe\xff", 6), "public.data"},
      {"text", "Plain text, nothing else.\n", "public.plain-text"},
      {"mail", std::string(kMail), "com.apple.mail.email"},
      {"1700000000.1.host:2,S", std::string(kMail), "com.apple.mail.email"},
      {"no mail", "Note: here\nFrom: there\nto: where we went\nand on\n", "public.plain-text"},
      {"page", "<!DOCTYPE html>\n<html><head><title>t</title></head></html>\n", "public.html"},
      {"script", "#!/usr/bin/python3\nimport sys\nprint(sys.argv)\n", "public.python-script"},
      {"chm", std::string("ITSF\3\0\0\0\x60\0\0\0\1\0\0\0", 16), "com.microsoft.chm-archive"},
      {"png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), "public.png"},
      {"heic",
       std::string("\0\0\0\x18"
                   "ftypheic\0\0\0\0mif1heic",
                   24),
       "public.heic"},
      {"sound.ogg", std::string("OggS\0\2\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\1\x1e\1vorbis", 35),
       "org.xiph.ogg-audio"},
  });
}

TEST(ContentTypes, LooksIntoContainers) {
  const std::string_view package = "[Content_Types].xml";
  const std::string text =
      zipArchive({{"mimetype", "application/vnd.oasis.opendocument.text"}, {"content.xml", ""}});
  const std::string book = zipArchive({{"mimetype", "application/epub+zip\n"}, {"META-INF/container.xml", ""}});
  const std::string sheet = zipArchive({{package, "<Types/>"}, {"_rels/.rels", ""}, {"xl/workbook.xml", ""}});
  check({
      {"odt", text, "org.oasis-open.opendocument.text"},
      {"epub", book, "org.idpf.epub-container"},
      {"epub without type", zipArchive({{"META-INF/container.xml", ""}}), "org.idpf.epub-container"},
      {"docx", zipArchive({{package, ""}, {"word/document.xml", ""}}),
       "org.openxmlformats.wordprocessingml.document"},
      {"docm", zipArchive({{package, ""}, {"word/document.xml", ""}, {"word/vbaProject.bin", ""}}),
       "org.openxmlformats.wordprocessingml.document.macroenabled"},
      {"xlsx", sheet, "org.openxmlformats.spreadsheetml.sheet"},
      {"xlsx cut", sheet.substr(0, sheet.find("PK\1\2")), "org.openxmlformats.spreadsheetml.sheet"},
      {"pptx", zipArchive({{"ppt/presentation.xml", ""}}), "org.openxmlformats.presentationml.presentation"},
      {"jar", zipArchive({{"META-INF/MANIFEST.MF", ""}}), "com.sun.java-archive"},
      {"zip", zipArchive({{"notes/word/document.xml", ""}}), "public.zip-archive"},
      {"zip of another type", zipArchive({{"mimetype", "text/html; really"}}), "public.zip-archive"},
      {"doc", compoundFile({u"\5SummaryInformation", u"1Table", u"Data", u"CompObj", u"WordDocument"}),
       "com.microsoft.word.doc"},
      {"doc with a sheet inside", compoundFile({u"WordDocument", u"ObjectPool"}, u"Workbook"),
       "com.microsoft.word.doc"},
      {"sheet inside something", compoundFile({u"Other", u"ObjectPool"}, u"Workbook"), "public.data"},
      {"xls", compoundFile({u"Workbook"}), "com.microsoft.excel.xls"},
      {"ppt", compoundFile({u"Pictures", u"PowerPoint Document"}), "com.microsoft.powerpoint.ppt"},
      {"msg", compoundFile({u"__properties_version1.0"}), "com.microsoft.outlook.msg"},
      {"ole", compoundFile({}), "public.data"},
  });
}

/// Containers cut and with each of their bytes changed: what matters is that nothing is read outside and it
/// ends.
TEST(ContentTypes, SurvivesDamagedContainers) {
  const TemporaryFolder folder;
  const std::string whole[] = {compoundFile({u"A", u"B", u"WordDocument"}),
                               zipArchive({{"mimetype", "application/epub+zip"}, {"a", "content"}})};
  for (const std::string &original : whole) {
    for (std::size_t i = 0; i<original.size(); i += original.size()> 600 ? 7 : 1) {
      std::string changed = original;
      changed[i] = static_cast<char>(changed[i] ^ 0xff);
      for (const std::string &content : {original.substr(0, i), changed}) {
        const FileDescriptor file(
            ::open(folder.write("f", content).fileSystemRepresentation()->c_str(), O_RDONLY | O_CLOEXEC));
        const std::string type = containerMIMEType({file.get(), content.size()});
        EXPECT_TRUE(type.empty() || type.starts_with("application/")) << type;
      }
    }
  }
}

TEST(ContentTypes, BoundsWhatItReadsOfContainers) {
  // A chain of directory sectors without end, and a tree that leads back to itself.
  std::string endless = compoundFile({u"WordDocument"});
  endless.replace(512 + 4, 4, std::string("\1\0\0\0", 4));
  endless.replace(1024 + 128 + 72, 4, std::string("\1\0\0\0", 4));
  // More entries than are looked at, the telling one last.
  std::vector<std::pair<std::string_view, std::string_view>> many(5000, {"x", ""});
  many.emplace_back("word/document.xml", "");
  check({{"endless", endless, "com.microsoft.word.doc"}, {"many", zipArchive(many), "public.zip-archive"}});
}

TEST(ContentTypes, KnowsFoldersAndLeavesDevicesAlone) {
  const TemporaryFolder folder;
  const auto type = [&](std::string_view name) {
    return LSCopyItemContentType(folder.string(name)).UTF8String();
  };
  for (const char *name : {"plain", "a.txt", "a.rtfd", ".rtfd"})
    std::filesystem::create_directory(folder.path() / name);
  EXPECT_EQ(type("plain"), "public.folder");
  EXPECT_EQ(type("a.txt/"), "public.folder");
  EXPECT_EQ(type("a.rtfd"), "com.apple.rtfd");
  EXPECT_EQ(type("a.rtfd/"), "com.apple.rtfd");
  EXPECT_EQ(type(".rtfd"), "public.folder");

  ASSERT_EQ(::mkfifo((folder.path() / "fifo").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo((folder.path() / "fifo.pdf").c_str(), 0600), 0);
  EXPECT_EQ(type("fifo"), "public.item");
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
