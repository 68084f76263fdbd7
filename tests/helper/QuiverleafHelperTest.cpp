// SPDX-License-Identifier: Apache-2.0
#include "helper/QuiverleafHelper.hpp"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <utility>

#include "helper/NimboImExport.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/ImporterBundle.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/WebArchiveSamples.hpp"

namespace nimbo {
namespace {

/// A helper whose only importer takes PDFs and sets an attribute of every kind, a text among them.
class QuiverleafHelperTest : public testing::Test {
 protected:
  QuiverleafHelperTest() {
    ImporterBundle{{"com.adobe.pdf"}, TEST_PLUGIN, {"makeEveryKindImporter"}}.writeTo(folder,
                                                                                      "shipped/PDF.mdimporter");
    path = folder.write("a.pdf", "%PDF-1.4");
  }

  MetaDataImporterLocations locations() {
    MetaDataImporterLocations result;
    result.importerTool = folder.string("no tool");
    result.shippedImporterFolder = folder.string("shipped");
    return result;
  }
  NSDictionary facts(const char *sample, const NSString &file = NSString(), bool size = false) {
    return helper._attributedStringWithPDF(false, samplePDF(sample), file, size);
  }
  /// Expects the answer to no arguments: nil, but of a web archive a dictionary of nothing, of a movie that it
  /// has no length and no size, and that nothing was written.
  static void expectNothing(const id &answer, const RemoteOperation &operation) {
    id expected;
    if (operation.selector == u"searchableTextOfWebArchive:") expected = NSDictionary::dictionary();
    if (operation.selector == u"posterImageForMovieWithFile:")
      expected = NSDictionary{{u"Duration"_ns, 0.0}, {u"Size"_ns, u"{0, 0}"_ns}};
    if (operation.selector == u"writeRTFDData:toFile:") expected = false;
    EXPECT_EQ(answer, expected);
  }
  /// What an importer stores, cleaned; it is told from the PDF's own text by this.
  static constexpr std::u16string_view kImporterText = u" b\u00e4\ufffd\r\n\u00e4 ";

  TemporaryFolder folder;
  NSString path;
  QuiverleafHelper helper{locations()};
};

TEST_F(QuiverleafHelperTest, DropsNullsFromMetaData) {
  const NSDictionary metaData = helper.metaDataForFile(path);
  EXPECT_EQ(metaData.objectForKey(u"real"_ns).real(), 2.5);
  EXPECT_FALSE(metaData.objectForKey(u"null"_ns));
  EXPECT_FALSE(helper.metaDataForFile(folder.write("a.txt", "text"))) << "no importer for the type";
  EXPECT_FALSE(helper.metaDataForFile(NSString()));
}

TEST_F(QuiverleafHelperTest, EndsTheProcessesThatImportersLeave) {
  const struct {
    const char *file, *contentType, *factory;
  } cases[] = {{"x.jpg", "public.jpeg", "makeCopy"},
               {"x.txt", "public.plain-text", "makeChild"},
               {"x.html", "public.html", "makeCommand"},
               {"x.rtf", "public.rtf", "makeDaemon"},
               {"x.png", "public.png", "makeHoarder"}};
  for (const auto &[file, contentType, factory] : cases)
    ImporterBundle{{contentType}, ODD_TEST_PLUGIN, {factory}}.writeTo(
        folder, "shipped/" + std::string(factory) + ".mdimporter");
  const pid_t own = ::getpid();
  rlimit before = {};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit few = {200, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  for (const auto &[file, contentType, factory] : cases) {
    // All processes that come of the importer have an end of the pipe.
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    FileDescriptor reading(ends[0]), writing(ends[1]);
    EXPECT_EQ(helper.metaDataForFile(folder.write(file, "")), (NSDictionary{{u"left"_ns, 1}})) << factory;
    ASSERT_EQ(::getpid(), own) << factory;
    writing.close();
    pollfd end = {reading.get(), 0, 0};
    EXPECT_EQ(::poll(&end, 1, 5000), 1) << factory;
  }
  ::setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(QuiverleafHelperTest, ReadsThePagesWithoutAFile) {
  const NSDictionary answer = helper.attributedStringWithPDF(false, samplePDF("columns.pdf"));
  EXPECT_EQ(answer.objectForKey(u"PageCount"_ns).integer(), 2);
  EXPECT_TRUE(answer.objectForKey(u"String"_ns).string().view().starts_with(u"A catalogue of documents"));
  EXPECT_FALSE(answer.objectForKey(u"Size"_ns));
  EXPECT_FALSE(helper.attributedStringWithPDF(false, dataOfString("no PDF")));
}

TEST_F(QuiverleafHelperTest, AttributedTextIsRTFD) {
  NSError error;
  const NSDictionary answer = helper.attributedStringWithPDF(true, samplePDF("rich.pdf"), &error);
  EXPECT_FALSE(error);
  const NSAttributedString text = initWithRTFD(answer.objectForKey(u"String"_ns).data());
  ASSERT_TRUE(text);
  EXPECT_EQ(
      text,
      PDFDocument::documentWithData(samplePDF("rich.pdf"))->selectionForEntireDocument().attributedString());
  EXPECT_EQ(answer.objectForKey(u"PageCount"_ns).integer(), 2);
  const NSDictionary empty = helper.attributedStringWithPDF(true, samplePDF("boxes.pdf"));
  EXPECT_EQ(initWithRTFD(empty.objectForKey(u"String"_ns).data()).string(), NSString::string());
  EXPECT_EQ(helper._attributedStringWithPDF(true, samplePDF("columns.pdf"), path, false)
                .objectForKey(u"String"_ns)
                .data(),
            helper.attributedStringWithPDF(true, samplePDF("columns.pdf")).objectForKey(u"String"_ns).data())
      << "no importer makes attributed text";
}

TEST_F(QuiverleafHelperTest, LocksAndEmptyDocumentsHaveNoText) {
  for (const bool attributed : {false, true}) {
    for (const auto &[name, pages] : {std::pair("locked.pdf", 1), {"locked-pages.pdf", 0}}) {
      const NSDictionary locked = helper.attributedStringWithPDF(attributed, samplePDF(name));
      EXPECT_EQ(locked, (NSDictionary{{u"Locked"_ns, true}, {u"PageCount"_ns, pages}})) << name;
    }
  }
  EXPECT_EQ(facts("no-pages.pdf", NSString(), true), (NSDictionary{{u"PageCount"_ns, 0}}));
  EXPECT_EQ(helper.attributedStringWithPDF(true, samplePDF("no-pages.pdf")),
            (NSDictionary{{u"PageCount"_ns, 0}}));
}

TEST_F(QuiverleafHelperTest, ReadsSomePagesAndWithAPassword) {
  const auto answer = [&](const char *sample, const NSDictionary &options, NSError *error = nullptr) {
    return helper.stringWithPDF(samplePDF(sample), options, error);
  };
  EXPECT_EQ(answer("columns.pdf", {}), facts("columns.pdf"));
  EXPECT_EQ(answer("columns.pdf", {{u"Attributed"_ns, true}}),
            helper.attributedStringWithPDF(true, samplePDF("columns.pdf")));
  const NSString second = answer("columns.pdf", {{u"FirstPage"_ns, 2}}).objectForKey(u"String"_ns).string();
  EXPECT_TRUE(second.view().starts_with(u"Page two"));
  const NSArray pages = answer("columns.pdf", {{u"ByPage"_ns, true}}).objectForKey(u"Pages"_ns).array();
  ASSERT_EQ(pages.count(), 2u);
  EXPECT_EQ(stringByConcatenating(pages[1].string(), u"\n"), second);

  const NSDictionary password{{u"Password"_ns, u"user"_ns}};
  EXPECT_EQ(answer("locked.pdf", password), facts("metadata.pdf"));
  EXPECT_EQ(answer("columns.pdf", password), facts("columns.pdf"));
  const struct {
    const char *sample;
    NSDictionary options;
    std::string_view reason;
  } reasons[] = {
      {"locked.pdf", {{u"Password"_ns, u"x"_ns}}, "the PDF is locked by another password"},
      {"locked.pdf", {{u"FirstPage"_ns, 2}}, "the PDF is locked; its text needs a password"},
      {"locked.pdf", {{u"Password"_ns, u"user"_ns}, {u"FirstPage"_ns, 2}}, "there is no page 2: the PDF has 1"},
      {"columns.pdf", {{u"FirstPage"_ns, 2}, {u"LastPage"_ns, 2}}, ""},
      {"columns.pdf", {{u"FirstPage"_ns, 3}}, "there is no page 3: the PDF has 2"},
      {"columns.pdf", {{u"LastPage"_ns, 3}}, "the PDF has no more than 2 pages"},
      {"columns.pdf", {{u"LastPage"_ns, INT32_MAX}}, "the PDF has no more than 2 pages"},
      {"no-pages.pdf", {{u"LastPage"_ns, 3}}, "the PDF has no pages"},
  };
  for (const auto &[sample, options, reason] : reasons) {
    NSError error;
    answer(sample, options, &error);
    EXPECT_EQ(error.localizedFailureReason.UTF8String(), reason);
  }
  const NSDictionary wrong[] = {
      {{u"FirstPage"_ns, 0}},        {{u"FirstPage"_ns, 3}, {u"LastPage"_ns, 2}},   {{u"LastPage"_ns, u"1"_ns}},
      {{u"Password"_ns, 1}},         {{u"Attributed"_ns, true}, {u"ByPage"_ns, 1}}, {{u"Other"_ns, true}},
      {{u"LastPage"_ns, 1LL << 31}},
  };
  for (const NSDictionary &options : wrong) EXPECT_THROW(answer("columns.pdf", options), NSException);
}

TEST_F(QuiverleafHelperTest, KeepsCharactersAboveFFFFWhenTheUserWantsThem) {
  NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  for (const bool keeps : {false, true}) {
    defaults.setObject(keeps, u"KeepsSupplementaryCharacters"_ns);
    const NSString text = facts("columns.pdf").objectForKey(u"String"_ns).string();
    EXPECT_NE(text.view().find(keeps ? u"Zo\u00eb \U0001d538\n" : u"Zo\u00eb   \n"), text.view().npos);
  }
  defaults.removeObjectForKey(u"KeepsSupplementaryCharacters"_ns);
}

TEST_F(QuiverleafHelperTest, AsksTheImporterFirstUnlessGhostscriptMadeThePDF) {
  const auto text = [&](const char *sample, const NSString &file) {
    return facts(sample, file).objectForKey(u"String"_ns).string();
  };
  EXPECT_EQ(text("columns.pdf", path).view(), kImporterText);
  EXPECT_TRUE(text("columns.pdf", folder.write("no.importer", "x")).view().starts_with(u"A catalogue"));
  EXPECT_EQ(facts("metadata.pdf").objectForKey(u"Producer"_ns).string(), u"Ghostscript 9.99"_ns);
  EXPECT_EQ(text("metadata.pdf", path), NSString::string());
  NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  defaults.setObject(true, u"IgnoresPDFProducer"_ns);
  EXPECT_EQ(text("metadata.pdf", path).view(), kImporterText);
  defaults.removeObjectForKey(u"IgnoresPDFProducer"_ns);
}

TEST_F(QuiverleafHelperTest, WebArchivesAnswerWhatIsKnown) {
  const auto answer = [&](const id &list, NSError *error = nullptr) {
    return helper.searchableTextOfWebArchive(folder.write("a.webarchive", bytesOfList(list).view()), error);
  };
  const NSString markup = u"<body>caf&eacute;"_ns, URL = u"http://example.org/"_ns;
  EXPECT_EQ(answer(listOfArchive(listOfResource(markup.UTF8String(), URL))),
            (NSDictionary{{u"String"_ns, u"\n\ncaf\u00e9"_ns}, {u"Source"_ns, markup}, {u"URL"_ns, URL}}));
  EXPECT_EQ(answer(listOfArchive(listOfResource("image", URL, u"image/png"_ns))),
            (NSDictionary{{u"String"_ns, NSString::string()}, {u"URL"_ns, URL}}));
  const id frame = listOfArchive(listOfResource("<body>frame", URL));
  EXPECT_EQ(answer(listOfArchive({}, {}, NSArray{frame})), (NSDictionary{{u"String"_ns, u"\n\nframe"_ns}}));
  NSError error;
  EXPECT_EQ(answer(NSArray::array(), &error), NSDictionary::dictionary());
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
}

TEST_F(QuiverleafHelperTest, SaysWhyAnAnswerIsNilOrNotWhole) {
  const auto errorOf = [](const auto &operation) {
    NSError error;
    operation(&error);
    return error.errorCode();
  };
  const auto metaData = [&](const NSString &file) {
    return errorOf([&](NSError *error) { helper.metaDataForFile(file, error); });
  };
  EXPECT_EQ(metaData(path), ErrorCode::incomplete) << "as the importer says";
  EXPECT_EQ(metaData(folder.string("missing")), ErrorCode::noSuchFile);
  EXPECT_EQ(metaData(folder.write("a.txt", "text")), ErrorCode::unsupportedType);
  EXPECT_EQ(metaData(NSString()), ErrorCode::noSuchFile);

  const auto pdf = [&](const NSData &data, bool attributed = false, const NSString &file = NSString()) {
    return errorOf(
        [&](NSError *error) { helper._attributedStringWithPDF(attributed, data, file, false, {}, error); });
  };
  EXPECT_EQ(pdf(samplePDF("columns.pdf")), ErrorCode::none);
  EXPECT_EQ(pdf(samplePDF("columns.pdf"), false, path), ErrorCode::incomplete) << "as the importer says";
  EXPECT_EQ(pdf(samplePDF("columns.pdf"), false, folder.string("missing")), ErrorCode::none);
  EXPECT_EQ(pdf(samplePDF("huge-count.pdf"), true), ErrorCode::damaged);
  EXPECT_EQ(pdf(samplePDF("no-pages.pdf")), ErrorCode::incomplete);
  EXPECT_EQ(pdf(samplePDF("locked.pdf"), true), ErrorCode::locked);
  EXPECT_EQ(pdf(samplePDF("locked-pages.pdf")), ErrorCode::locked);
  EXPECT_EQ(pdf(dataOfString("no PDF")), ErrorCode::unsupportedType);
  EXPECT_EQ(pdf(NSData()), ErrorCode::incomplete);

  for (const RemoteOperation &operation : NimboImExport) {
    NSError error;
    expectNothing(helper.perform(NSString::stringWithCharacters(operation.selector), NSDictionary(), &error),
                  operation);
    EXPECT_GT(error.localizedFailureReason.length(), 0u);
  }
}

TEST_F(QuiverleafHelperTest, AddsTheSizeOfTheFirstPage) {
  const NSDictionary answer = facts("columns.pdf", NSString(), true);
  EXPECT_EQ(answer.objectForKey(u"Size"_ns).string(), u"{420, 300}"_ns);
  EXPECT_EQ(answer.objectForKey(u"PixelSize"_ns), answer.objectForKey(u"Size"_ns));
  EXPECT_EQ(answer.objectForKey(u"Alpha"_ns).boolean(), false);
}

TEST_F(QuiverleafHelperTest, AnswersTheContractAndNothingElse) {
  for (const RemoteOperation &operation : NimboImExport) {
    const NSString selector = NSString::stringWithCharacters(operation.selector);
    expectNothing(helper.perform(selector, NSDictionary()), operation);
    EXPECT_THROW(helper.perform(selector, {{u"other"_ns, 1}}), NSException);
    for (const RemoteArgument &argument : operation.arguments) {
      if (argument.keyword.empty()) continue;
      const id wrong = argument.kind == RemoteKind::data ? id(u"text"_ns) : id(NSData::data());
      EXPECT_THROW(helper.perform(selector, {{NSString::stringWithCharacters(argument.keyword), wrong}}),
                   NSException);
    }
  }
  EXPECT_THROW(helper.perform(u"metaDataForFile:"_ns, {{NSString::string(), path}}), NSException);
  EXPECT_EQ(helper.perform(u"metaDataForFile:"_ns, {{u"metaDataForFile"_ns, path}}),
            helper.metaDataForFile(path));
  EXPECT_EQ(helper.perform(u"attributed:stringWithPDF:"_ns,
                           {{u"attributed"_ns, 0}, {u"stringWithPDF"_ns, samplePDF("columns.pdf")}}),
            facts("columns.pdf"));
  for (const id &yes : {id(true), id(1)})
    EXPECT_EQ(helper.perform(u"attributed:stringWithPDF:"_ns,
                             {{u"attributed"_ns, yes}, {u"stringWithPDF"_ns, samplePDF("columns.pdf")}}),
              helper.attributedStringWithPDF(true, samplePDF("columns.pdf")));
  const NSDictionary second = {{u"FirstPage"_ns, 2}};
  EXPECT_EQ(helper.perform(u"stringWithPDF:options:"_ns,
                           {{u"stringWithPDF"_ns, samplePDF("columns.pdf")}, {u"options"_ns, second}}),
            helper.stringWithPDF(samplePDF("columns.pdf"), second));
  const NSString archive = folder.write(
      "a.webarchive", bytesOfList(listOfArchive(listOfResource("<body>words", u"http://a/"_ns))).view());
  EXPECT_EQ(helper.perform(u"searchableTextOfWebArchive:"_ns, {{u"searchableTextOfWebArchive"_ns, archive}}),
            helper.searchableTextOfWebArchive(archive));
  EXPECT_THROW(helper.perform(u"metaDataForFile"_ns, NSDictionary()), NSException);
}

}  // namespace
}  // namespace nimbo
