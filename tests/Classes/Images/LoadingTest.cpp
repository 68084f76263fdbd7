// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Loading.hpp"

#include <gtest/gtest.h>

#include "Classes/Images/NSImage+NSImageNimboExtensions/Icons.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Thumbnails.hpp"
#include "platform/ImageIO/CGImageDestination.hpp"
#include "tests/Classes/Images/ImageSamples.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

std::string imageFile(std::uint32_t side, const NSString &type) {
  return std::string(dataWithImage(halves(side, side, kRed, kBlue), type, {}).view());
}

TEST(NamedImages, StandInBundles) {
  const TemporaryFolder folder;
  const NSBundle bundle(folder.string("A.bundle"));
  folder.write("A.bundle/Contents/Resources/one.tiff", imageFile(4, u"public.tiff"_ns));
  folder.write("A.bundle/Contents/Resources/one.two.TIFF", imageFile(8, u"public.tiff"_ns));
  folder.write("A.bundle/Contents/Resources/text.png", "text");
  folder.write("A.bundle/secret.png", imageFile(16, u"public.png"_ns));
  struct Case {
    NSString name;
    NSString type;
    double side;
  };
  for (const auto &[name, type, side] : {
           Case{u"one"_ns, u"tiff"_ns, 4},
           {u"one.tiff"_ns, u"TIFF"_ns, 4},
           {u"one"_ns, NSString(), 4},
           {u"one.tiff"_ns, u""_ns, 4},
           {u"one.two"_ns, NSString(), 8},
           {u"one"_ns, u"gif"_ns, 0},
           {u"text"_ns, u"png"_ns, 0},
           {u"../../secret"_ns, u"png"_ns, 0},
           {u""_ns, u"png"_ns, 0},
           {NSString(), NSString(), 0},
       }) {
    NSError error;
    EXPECT_EQ(imageNamed(name, type, bundle, Deadline::after(20), &error).size(), (NSSize{side, side}))
        << name.UTF8String();
    EXPECT_EQ(static_cast<bool>(error), side == 0) << name.UTF8String();
  }
  EXPECT_FALSE(imageNamed(u"one"_ns, u"tiff"_ns, NSBundle()));
}

TEST(NamedImages, AreReadOnceWhenTheyAreKept) {
  const TemporaryFolder folder;
  const NSBundle bundle(folder.string("A.bundle"));
  EXPECT_FALSE(cachedImageNamed(u"one"_ns, u"tiff"_ns, bundle));
  folder.write("A.bundle/Contents/Resources/one.tiff", imageFile(4, u"public.tiff"_ns));
  // Nothing that is kept stands on the deadline, or on the handle that was answered.
  NSImage first = cachedImageNamed(u"one"_ns, u"tiff"_ns, bundle, Deadline::after(20));
  first.setSize({1, 1});
  folder.write("A.bundle/Contents/Resources/one.tiff", "no longer an image");
  const NSImage kept = cachedImageNamed(u"one"_ns, u"tiff"_ns, bundle, Deadline::after(0));
  EXPECT_EQ(kept.size(), (NSSize{4, 4}));
  EXPECT_EQ(pixelAt(drawnPixels(kept), 0, 3), kBlue);
}

TEST(DownloadedImages, AreThoseOfTheirData) {
  const std::string tiff = imageFile(4, u"public.tiff"_ns);
  NSError error;
  EXPECT_TRUE(imageWithDownloadedData(NSData::dataWithBytes(tiff.data(), tiff.size()), Deadline::after(20)));
  EXPECT_FALSE(imageWithDownloadedData(NSData::dataWithBytes("<html>", 6), Deadline::after(20), &error));
  EXPECT_TRUE(error);
}

TEST(ImageIcons, AreSmallAndSeenThrough) {
  const NSImage large = imageWithCGImageRef(halves(400, 200, kRed, kBlue));
  const NSImage dragged = draggingIcon(large);
  EXPECT_EQ(dragged.size(), (NSSize{kDraggingIconSide, kDraggingIconSide / 2}));
  EXPECT_EQ(pixelAt(drawnPixels(dragged), 3, 3), (Pixel{170, 0, 0, 170}));
  EXPECT_EQ(pasteboardIcon(large).size(), (NSSize{kPasteboardIconSide, kPasteboardIconSide / 2}));
  EXPECT_EQ(pasteboardIcon(imageWithCGImageRef(halves(4, 4, kRed, kBlue))).size(), (NSSize{4, 4}));
  EXPECT_LT(pasteboardData(large).length(), large.TIFFRepresentation().length() / 10);
  EXPECT_FALSE(draggingIcon(NSImage()) || pasteboardIcon(NSImage()) || pasteboardData(NSImage()));
}

}  // namespace
}  // namespace nimbo
