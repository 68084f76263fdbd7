// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/OfficeConversion.hpp"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/Processes.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

constexpr const char *kFlatHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
  xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0"
  xmlns:xlink="http://www.w3.org/1999/xlink" xmlns:script="urn:oasis:names:tc:opendocument:xmlns:script:1.0"
  xmlns:ooo="http://openoffice.org/2004/office" office:version="1.2"
  office:mimetype="application/vnd.oasis.opendocument.text">)";

std::string flat(const std::string &body, const std::string &scripts = "") {
  return kFlatHead + scripts + "<office:body><office:text>" + body +
         "</office:text></office:body></office:document>";
}

/// The processes of a program that a supervisor of this process has started.
std::vector<pid_t> processesOf(const std::string &program) {
  std::vector<pid_t> found;
  for (const pid_t process : allProcesses()) {
    std::error_code error;
    const std::string link = "/proc/" + std::to_string(process) + "/exe";
    if (std::filesystem::read_symlink(link, error) == program && parentOf(parentOf(process)) == ::getpid())
      found.push_back(process);
  }
  return found;
}

class OfficeConversionTest : public testing::Test {
 protected:
  void SetUp() override {
    NSError error;
    if (!office_.isAvailable(&error)) GTEST_SKIP() << error.localizedFailureReason.UTF8String();
  }
  /// The content of a document, or "nil: " and the reason.
  std::string read(OfficeConversion &office, const NSString &path) {
    error_ = NSError();
    const NSData data = office.flatDocumentWithContentsOfFile(path, Deadline::after(60), &error_);
    return data ? std::string(data.view()) : "nil: " + error_.localizedFailureReason.UTF8String();
  }
  std::string read(const NSString &path) { return read(office_, path); }

  TemporaryFolder folder_;
  OfficeConversion office_;
  NSError error_;
};

bool holds(const std::string &text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

TEST_F(OfficeConversionTest, ReadsDocumentsOneAfterTheOther) {
  for (const char *name :
       {"plain.fodt", "no extension", "strange.\xff\xfe", "a.very-long-extension", "b.txt"}) {
    const std::string content =
        read(folder_.write(name, flat(std::string("<text:p>") + name[0] + " word</text:p>")));
    EXPECT_TRUE(holds(content, std::string(1, name[0]) + " word")) << name << content.substr(0, 300);
  }
  const Protections protections = office_.protections();
  EXPECT_TRUE(protections.writing);
  EXPECT_TRUE(protections.network);
}

TEST_F(OfficeConversionTest, TellsWhyThereIsNoContent) {
  OfficeOptions small;
  small.documentBytes = 1000;
  OfficeOptions narrow;
  narrow.contentBytes = 4000;
  OfficeOptions without;
  without.programFolder = folder_.string("nowhere");
  OfficeOptions childless;
  childless.childProgram = folder_.string("nowhere");
  const NSString good = folder_.write("good.fodt", flat("<text:p>good</text:p>" + std::string(2000, ' ')));
  const struct {
    OfficeOptions options;
    NSString path;
    ErrorCode code;
  } cases[] = {
      {{}, folder_.string("nowhere"), ErrorCode::noSuchFile},
      {{}, folder_.string(""), ErrorCode::unreadable},
      {{}, folder_.write("bad.docx", std::string("PK\3\4") + std::string(300, 'x')), ErrorCode::damaged},
      {small, good, ErrorCode::tooLarge},
      {narrow, good, ErrorCode::damaged},
      {without, good, ErrorCode::unsupportedType},
      {childless, good, ErrorCode::noSuchFile}};
  for (const auto &[options, path, code] : cases) {
    OfficeConversion office(options);
    const std::string content = read(office, path);
    EXPECT_EQ(error_.errorCode(), code) << content;
  }
  EXPECT_FALSE(office_.flatDocumentWithContentsOfFile(good, Deadline::after(0), &error_));
  EXPECT_EQ(error_.errorCode(), ErrorCode::timeLimit);
  EXPECT_TRUE(holds(read(good), ">good<")) << "after a time limit";
}

TEST_F(OfficeConversionTest, TellsWhichPartOfLibreOfficeIsMissing) {
  const bool hasCalc = std::filesystem::exists("/usr/lib/libreoffice/program/libsclo.so");
  const std::string content = read(folder_.write("sheet.fods", R"(<?xml version="1.0"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
  xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" office:version="1.2"
  office:mimetype="application/vnd.oasis.opendocument.spreadsheet"><office:body><office:spreadsheet>
  <table:table table:name="One"/></office:spreadsheet></office:body></office:document>)"));
  EXPECT_EQ(holds(content, "office:spreadsheet"), hasCalc) << content;
  EXPECT_EQ(error_.errorCode(), hasCalc ? ErrorCode::none : ErrorCode::unsupportedType) << content;
  EXPECT_EQ(holds(content, "LibreOffice Calc"), !hasCalc) << content;
}

TEST(OfficeConversion, TellsWhichPartIsNotBesideTheOthers) {
  const TemporaryFolder folder;
  OfficeOptions options;
  options.programFolder = folder.string("");
  options.childProgram = folder.string("nowhere");
  folder.write("libsofficeapp.so", "");
  const struct {
    const char *document, *library, *part;
  } cases[] = {{"a.ods", "libsclo.so", "LibreOffice Calc"},    {"a.xls", "libsclo.so", "LibreOffice Calc"},
               {"a.odp", "libsdlo.so", "LibreOffice Impress"}, {"a.ppt", "libsdlo.so", "LibreOffice Impress"},
               {"a.odg", "libsdlo.so", "LibreOffice Draw"},    {"a.odt", "libsdlo.so", ""}};
  for (const auto &[document, library, part] : cases) {
    const NSString path = folder.write(document, "x");
    // Without a part of the writer's all are in one; then this one alone is missing, and then none.
    for (const char *next : {"", "libswlo.so", library}) {
      if (*next) folder.write(next, "");
      const bool isMissing = next == std::string_view("libswlo.so") && *part;
      NSError error;
      EXPECT_FALSE(OfficeConversion(options).flatDocumentWithContentsOfFile(path, Deadline::after(60), &error));
      EXPECT_EQ(error.errorCode(), isMissing ? ErrorCode::unsupportedType : ErrorCode::noSuchFile)
          << document << next;
      EXPECT_EQ(holds(error.localizedFailureReason.UTF8String(), part), isMissing || !*part)
          << document << next;
    }
    for (const char *gone : {"libswlo.so", library}) std::filesystem::remove(folder.path() / gone);
  }
}

TEST_F(OfficeConversionTest, IsReplacedWhenItDiesOrHasDoneEnough) {
  OfficeOptions options;
  options.documentsPerProcess = 2;
  OfficeConversion office(options);
  const std::string program = std::filesystem::canonical(QUIVERLEAF_LIBEXEC "/quiverleaf-office").native();
  const NSString path = folder_.write("a.fodt", flat("<text:p>word</text:p>"));
  const auto process = [&program] {
    const auto all = processesOf(program);
    return all.size() == 1 ? all.front() : 0;
  };
  EXPECT_TRUE(holds(read(office, path), ">word<"));
  const pid_t first = process();
  ASSERT_GT(first, 1);
  EXPECT_TRUE(holds(read(office, path), ">word<"));
  EXPECT_EQ(process(), first);
  EXPECT_TRUE(holds(read(office, path), ">word<"));
  const pid_t second = process();
  ASSERT_GT(second, 1);
  EXPECT_NE(second, first);
  ASSERT_EQ(::kill(second, SIGKILL), 0);
  // The document at that very moment may be lost with it.
  const std::string content = read(office, path);
  EXPECT_TRUE(holds(content, ">word<") || holds(content, "signal 9"));
  EXPECT_TRUE(holds(read(office, path), ">word<"));
  office.endProcess();
  EXPECT_TRUE(processesOf(program).empty());
  OfficeOptions narrow;
  narrow.keptMemoryBytes = 1;
  OfficeConversion thrifty(narrow);
  EXPECT_TRUE(holds(read(thrifty, path), ">word<"));
  const pid_t large = process();
  EXPECT_TRUE(holds(read(thrifty, path), ">word<"));
  EXPECT_NE(process(), large);
}

TEST_F(OfficeConversionTest, RunsNoMacrosAndShowsNoFilesOfTheUser) {
  const std::string macro = R"(<office:scripts><office:script script:language="ooo:Basic"><ooo:libraries>
<ooo:library-embedded ooo:name="Standard"><ooo:module ooo:name="M"><ooo:source-code>Sub Run
  ThisComponent.DocumentProperties.Title = "macro" + " was run"
End Sub</ooo:source-code></ooo:module></ooo:library-embedded></ooo:libraries></office:script>
<office:event-listeners><script:event-listener script:language="ooo:script" script:event-name="office:load-finished"
  xlink:href="vnd.sun.star.script:Standard.M.Run?language=Basic&amp;location=document" xlink:type="simple"/>
</office:event-listeners></office:scripts>)";
  EXPECT_FALSE(holds(read(folder_.write("m.fodt", flat("<text:p>text</text:p>", macro))), "macro was run"));
  const std::string secret = folder_.write("secret.txt", "the secret words").UTF8String();
  const std::string linked = "<text:section text:name=\"s\"><text:section-source xlink:href=\"file://" +
                             secret + "\" text:filter-name=\"Text\"/><text:p>before</text:p></text:section>";
  const std::string content = read(folder_.write("l.fodt", flat(linked)));
  EXPECT_FALSE(holds(content, "secret words")) << content;
}

}  // namespace
}  // namespace nimbo
