// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Types.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/AttributeChanges.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"
#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

bool isOneOf(const NSString &wanted, const std::vector<NSString> &list) {
  return std::ranges::find(list, wanted) != list.end();
}

/// Whether the strings are equal by the table of capitals.
bool isEqualNoCase(const NSString &a, const NSString &b) {
  const unichar *capitals = initUpperCharsTable();
  return a && b &&
         std::ranges::equal(
             a.view(), b.view(), {}, [=](unichar c) { return capitals[c]; },
             [=](unichar c) { return capitals[c]; });
}

bool isOneOfNoCase(const NSString &wanted, const std::vector<NSString> &list) {
  return std::ranges::any_of(list, [&](const NSString &entry) { return isEqualNoCase(wanted, entry); });
}

TEST(ImageTypes, AreTestedByExtensionAndTypeCode) {
  const NSString PDF = u"'PDF '"_ns;
  std::vector<NSString> extensions = {NSString(),   u""_ns,     u"pDf"_ns,
                                      u"PDFD"_ns,   u"pdfD"_ns, u"p\u017f"_ns,
                                      u"Ps"_ns,     u"ePS"_ns,  u"postscript"_ns,
                                      u"aI"_ns,     u"jPE"_ns,  u"Jp2"_ns,
                                      u"gif"_ns,    u"JPEG"_ns, u"Tiff"_ns,
                                      u"'pngf'"_ns, u"doc"_ns,  u"pdf "_ns,
                                      u"pd"_ns,     u"psx"_ns,  u"longer-than-all-of-them"_ns};
  const std::vector<NSString> types = {NSString(),   u""_ns,       PDF,          u"'pdf '"_ns, u"PDF "_ns,
                                       u"'PNGf'"_ns, u"'pngf'"_ns, u"'TIFF'"_ns, u"''"_ns,     u"png"_ns};
  for (const auto &list : {PDFFileTypes(), PDFBundleTypes(), ImageFileTypes()})
    extensions.insert(extensions.end(), list.begin(), list.end());

  for (const NSString &extension : extensions) {
    const std::string shown = extension.UTF8String();
    EXPECT_EQ(isPDFBundleExtension(extension), isEqualNoCase(extension, u"pdfd"_ns)) << shown;
    EXPECT_EQ(isWebImageExtension(extension),
              isOneOfNoCase(extension, {u"jpg"_ns, u"jpe"_ns, u"jp2"_ns, u"gif"_ns, u"png"_ns, u"jpeg"_ns}))
        << shown;
    for (const NSString &type : types) {
      const std::string both = shown + ", " + type.UTF8String();
      EXPECT_EQ(isRealPDFExtension(extension, type), isEqualNoCase(extension, u"PDF"_ns) || type == PDF)
          << both;
      EXPECT_EQ(isPDFExtension(extension, type),
                type == PDF || isOneOfNoCase(extension, {u"PDF"_ns, u"PS"_ns, u"EPS"_ns, u"AI"_ns}))
          << both;
      EXPECT_EQ(isImageExtension(extension, type), isOneOfNoCase(extension, ImageFileTypes()) ||
                                                       (type.length() > 0 && isOneOf(type, ImageFileTypes())))
          << both;
    }
  }
}

TEST(ImageTypes, AreListed) {
  EXPECT_EQ(PDFBundleTypes(), (std::vector{u"pdfd"_ns, u"PDFD"_ns}));
  EXPECT_EQ(PDFFileTypes(), (std::vector{u"'PDF '"_ns, u"pdf"_ns, u"PDF"_ns, u"ps"_ns, u"PS"_ns, u"eps"_ns,
                                         u"EPS"_ns, u"ai"_ns, u"AI"_ns}));
  std::vector<NSString> images = NSImage::imageFileTypes();
  for (const NSString &type :
       {u"jpe"_ns, u"JPE"_ns, u"ps"_ns, u"PS"_ns, u"eps"_ns, u"EPS"_ns, u"ai"_ns, u"AI"_ns})
    images.push_back(type);
  EXPECT_EQ(ImageFileTypes(), images);
  for (const NSString &type : {u"jpg"_ns, u"PNG"_ns, u"tiff"_ns, u"'JPEG'"_ns})
    EXPECT_TRUE(isOneOf(type, images));
}

TEST(ImageTypes, OfFilesAreThoseOfNameAndTypeCode) {
  const TemporaryFolder folder;
  const NSString plain = folder.write("plain.txt", ""), coded = folder.write("coded", "");
  ASSERT_TRUE(setFileHFSTypeCode(0x50444620, coded));  // 'PDF '
  struct Case {
    NSString path;
    bool isPDF;
    bool isRealPDF;
    bool isImage;
  };
  for (const auto &[path, isPDF, isRealPDF, isImage] : {
           Case{plain, false, false, false},
           {coded, true, true, isOneOf(u"'PDF '"_ns, ImageFileTypes())},
           {u"/nowhere/a.EPS"_ns, true, false, true},
           {u"/nowhere/a.Pdf"_ns, true, true, isOneOf(u"pdf"_ns, ImageFileTypes())},
           {u"/nowhere/a.jpe"_ns, false, false, true},
           {u"/nowhere/pdf"_ns, false, false, false},
           {NSString(), false, false, false},
       }) {
    EXPECT_EQ(isPDFFile(path), isPDF) << path.UTF8String();
    EXPECT_EQ(isRealPDFFile(path), isRealPDF) << path.UTF8String();
    EXPECT_EQ(isImageFile(path), isImage) << path.UTF8String();
    EXPECT_FALSE(isUTIImageFile(path));
  }
}

TEST(ImageTypes, GiveExtensions) {
  struct Case {
    NSString type;
    NSString extension;
  };
  for (const auto &[type, extension] : {
           Case{u"'JPEG'"_ns, u"jpeg"_ns},
           {u"'BMP '"_ns, u"bmp"_ns},
           {u"'.SGI'"_ns, u"sgi"_ns},
           {u"'jpeg'"_ns, NSString()},
           {u"'a/bc'"_ns, NSString()},
           {u"'BMP'"_ns, u"'BMP'"_ns},  // No type code.
           {u"image/x-portable-pixmap"_ns, u"ppm"_ns},
           {u"image/x-PORTABLE-pixmap-2"_ns, u"ppm"_ns},
           {u"application/PostScript"_ns, u"ps"_ns},
           {u"image/vnd.adobe.photoshop"_ns, u"psd"_ns},
           {u"image/svg+xml"_ns, u"svg+xml"_ns},
           {u"image/svg-xml"_ns, u"svg"_ns},
           {u"image/x-svg-xm"_ns, u"svg-xm"_ns},
           {u"text/plain"_ns, u"plain"_ns},
           {u"image/X-bmp"_ns, u"X-bmp"_ns},
           {u"image/x-x-bmp"_ns, u"x-bmp"_ns},
           {u"image/x-'TIFF'"_ns, u"'TIFF'"_ns},  // Type codes are no subtypes.
           {u"application/x-vnd.ms-excel"_ns, u"ms-excel"_ns},
           {u"image/.svg"_ns, u"svg"_ns},
           {u"image/vnd."_ns, u""_ns},
           {u"image/"_ns, NSString()},
           {u"image/a"_ns, NSString()},
           {u"image/x-"_ns, NSString()},
           {u"image/x-a"_ns, NSString()},
           {u"image/ab"_ns, u"ab"_ns},
           {u"/ab"_ns, u"ab"_ns},
           {u"tiff"_ns, u"tiff"_ns},
           {u"a/b/c"_ns, u"a/b/c"_ns},
           {u""_ns, NSString()},
           {NSString(), NSString()},
       })
    EXPECT_EQ(pathExtensionForType(type), extension) << type.UTF8String();
}

TEST(PDFBundles, HoldTheirPDFFile) {
  const TemporaryFolder folder;
  const auto expect = [&](std::string_view bundle, std::string_view file) {
    EXPECT_EQ(pathToPDF(folder.string(bundle)), folder.string(file)) << bundle;
  };
  folder.write("a.pdfd/other.pdf", "");
  folder.write("a.pdfd/a.pdf", "");
  folder.write("b.PdfD/B.PDF", "");
  folder.write("b.PdfD/notes.txt", "");
  folder.write("empty.pdfd/notes.txt", "");
  folder.write("folder/folder.pdf", "");
  expect("a.pdfd", "a.pdfd/a.pdf");
  expect("b.PdfD", "b.PdfD/B.PDF");
  expect("empty.pdfd", "empty.pdfd");
  expect("folder", "folder");
  expect("missing.pdfd", "missing.pdfd");
  EXPECT_FALSE(pathToPDF(NSString()));
  EXPECT_FALSE(isPDFBundle(NSString()));

  folder.write("many.pdfd/1.pdf", "");
  folder.write("many.pdfd/2.pdf", "");
  const NSString many = folder.string("many.pdfd");
  EXPECT_EQ(pathToPDF(many), stringByAppendingPathComponent(many, directoryContentsAtPath(many, u"pdf"_ns)[0]));
}

}  // namespace
}  // namespace nimbo
