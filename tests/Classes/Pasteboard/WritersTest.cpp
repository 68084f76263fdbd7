// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/Pasteboard/NSAttributedString+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSImage+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSPasteboard+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSString+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSURL+NimboPasteboardSupport.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "tests/Classes/Images/ImageSamples.hpp"

namespace nimbo {
namespace {

using Types = std::vector<NSString>;

/// What a pasteboard holds, in its order.
std::vector<std::pair<NSString, NSString>> contents(const NSPasteboard &pasteboard) {
  std::vector<std::pair<NSString, NSString>> all;
  for (const NSString &type : pasteboard.types()) all.emplace_back(type, pasteboard.stringForType(type));
  return all;
}

NSAttributedString textWithAttachment() {
  NSMutableAttributedString builder;
  builder.append(u"before ", TextAttributes());
  TextAttributes attributes;
  attributes.attachment =
      NSTextAttachment(NSFileWrapper::regularFileWithContents(NSData::dataWithBytes("x", 1), u"x.bin"_ns));
  builder.append({&NSAttachmentCharacter, 1}, attributes);
  return std::move(builder).attributedString();
}

TEST(PasteboardWriters, StringsAndURLsAreStrings) {
  const NSString address = u"http://example.org/a%20b?c#d"_ns;
  const NSString flavor = u"CorePasteboardFlavorType 0x75726C20"_ns,
                 nameFlavor = u"CorePasteboardFlavorType 0x75726C6E"_ns;
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  using Contents = decltype(contents(pasteboard));
  ASSERT_TRUE(copyToPasteboard(u"caf\u00e9"_ns, pasteboard));
  EXPECT_EQ(contents(pasteboard), (Contents{{NSStringPboardType, u"caf\u00e9"_ns}}));
  ASSERT_TRUE(copyToPasteboard(u""_ns, pasteboard));
  EXPECT_EQ(contents(pasteboard), (Contents{{NSStringPboardType, u""_ns}}));
  ASSERT_TRUE(copyToPasteboard(NSURL::URLWithString(address), pasteboard));
  EXPECT_EQ(contents(pasteboard), (Contents{{NSURLPboardType, address}, {NSStringPboardType, address}}));
  const NSURL base = NSURL::URLWithString(u"http://example.org/x/y"_ns);
  ASSERT_TRUE(copyToPasteboard(NSURL::URLWithString(u"../a%20b?c#d"_ns, base), pasteboard));
  EXPECT_EQ(contents(pasteboard), (Contents{{NSURLPboardType, address}, {NSStringPboardType, address}}));
  ASSERT_TRUE(copyToPasteboard(NSURL::fileURLWithPath(u"/a b"_ns, false), pasteboard));
  EXPECT_EQ(contents(pasteboard),
            (Contents{{NSURLPboardType, u"file:///a%20b"_ns}, {NSStringPboardType, u"/a b"_ns}}));

  struct Case {
    NSString title, name, shownTitle;
  };
  for (const auto &[title, name, shownTitle] :
       {Case{u"A title"_ns, u"A title"_ns, u"A title"_ns}, Case{u"../a/b."_ns, u"a/b"_ns, u"../a/b."_ns},
        Case{u""_ns, address, address}, Case{NSString(), address, address}}) {
    ASSERT_TRUE(copyToPasteboardWithTitle(NSURL::URLWithString(address), pasteboard, title));
    const NSString webURLs = u"WebURLsWithTitlesPboardType"_ns;
    EXPECT_EQ(pasteboard.types(), (Types{NSStringPboardType, NSURLPboardType, flavor, nameFlavor, webURLs}));
    for (const NSString &type : {NSStringPboardType, NSURLPboardType, flavor})
      EXPECT_EQ(pasteboard.stringForType(type), address) << type.UTF8String();
    EXPECT_EQ(pasteboard.stringForType(nameFlavor), name) << title.UTF8String();
    EXPECT_EQ(pasteboard.propertyListForType(webURLs), id(NSArray{NSArray{address}, NSArray{shownTitle}}));
    EXPECT_EQ(URL(pasteboard), address);
    EXPECT_EQ(URLName(pasteboard), name);
  }
  ASSERT_TRUE(copyToPasteboardWithTitle(NSURL::fileURLWithPath(u"/a b"_ns, false), pasteboard, u"file"_ns));
  EXPECT_EQ(pasteboard.stringForType(NSStringPboardType), u"file:///a%20b"_ns);
}

TEST(PasteboardWriters, ImagesAreCompressedTIFFs) {
  NSImage image = NSImage::imageWithSize({200, 100});
  image.addRepresentation(NSBitmapImageRep::imageRepWithCGImage(halves(200, 100, kRed, kBlue)));
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  ASSERT_TRUE(copyToPasteboard(image, pasteboard));
  EXPECT_EQ(pasteboard.types(), Types{NSTIFFPboardType});
  const NSData tiff = pasteboard.dataForType(NSTIFFPboardType);
  EXPECT_LT(tiff.length(), image.TIFFRepresentation().length() / 10);
  const NSImage read = NSImage::imageWithData(tiff, Deadline::after(20));
  EXPECT_EQ(pixelAt(drawnPixels(read), 0, 0), kRed);
  EXPECT_EQ(pixelAt(drawnPixels(read), 199, 99), kBlue);
}

TEST(PasteboardWriters, RichTextIsRTFDOnlyWithAttachments) {
  TextAttributes bold;
  bold.font.weight = 700;
  const NSAttributedString plain(u"bold words"_ns, Interned(bold)), attached = textWithAttachment();
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  for (const auto &[text, type] : {std::pair(plain, NSRTFPboardType), std::pair(attached, NSRTFDPboardType)}) {
    ASSERT_TRUE(copyToPasteboard(text, pasteboard));
    EXPECT_EQ(pasteboard.types(), Types{type});
    EXPECT_EQ(attributedStringFromPasteboard(pasteboard), text);
  }
  EXPECT_TRUE(copyToPasteboard(NSAttributedString(u""_ns), pasteboard));
  EXPECT_TRUE(isRTF(pasteboard.dataForType(NSRTFPboardType)));
}

TEST(PasteboardWriters, NothingIsDeclaredWhenThereIsNothing) {
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  ASSERT_TRUE(copyToPasteboard(u"kept"_ns, pasteboard));
  const auto changes = pasteboard.changeCount();
  NSError errors[5];
  EXPECT_FALSE(copyToPasteboard(NSString(), pasteboard, &errors[0]));
  EXPECT_FALSE(copyToPasteboard(NSURL(), pasteboard, &errors[1]));
  EXPECT_FALSE(copyToPasteboardWithTitle(NSURL(), pasteboard, u"title"_ns, &errors[2]));
  EXPECT_FALSE(copyToPasteboard(NSImage::imageWithSize({8, 8}), pasteboard, &errors[3]));
  EXPECT_FALSE(copyToPasteboard(NSAttributedString(), pasteboard, &errors[4]));
  for (const NSError &error : errors) EXPECT_TRUE(error);
  EXPECT_EQ(pasteboard.changeCount(), changes);
  EXPECT_EQ(stringFromPasteboard(pasteboard), u"kept"_ns);
  for (const bool isCopied : {copyToPasteboard(u"a"_ns, NSPasteboard(), &errors[0]),
                              copyToPasteboard(NSURL::URLWithString(u"a:b"_ns), NSPasteboard(), &errors[0]),
                              copyToPasteboard(textWithAttachment(), NSPasteboard(), &errors[0])})
    EXPECT_FALSE(isCopied);
}

}  // namespace
}  // namespace nimbo
