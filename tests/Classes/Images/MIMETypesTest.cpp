// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/Images/NSURL+MIMETypeExtensions.hpp"
#include "Classes/Images/UnmappedMIMETypes.hpp"

namespace nimbo {
namespace {

TEST(MIMETypes, OfExtensionsThatNoDatabaseKnows) {
  struct Case {
    NSString extension;
    NSString MIMEType;
  };
  for (const auto &[extension, MIMEType] : {
           Case{u"PDF"_ns, u"application/pdf"_ns},
           {u"eps"_ns, u"application/postscript"_ns},
           {u"Ai"_ns, u"application/postscript"_ns},
           {u"JPG"_ns, u"image/jpeg"_ns},
           {u"jpe"_ns, u"image/jpeg"_ns},
           {u"JPeg"_ns, u"image/jpeg"_ns},
           {u"PNG"_ns, u"image/PNG"_ns},
           {u"tiff"_ns, u"image/tiff"_ns},
           {u"mp3"_ns, u"audio/mp3"_ns},
           {u"Mov"_ns, u"video/Mov"_ns},
           {u"swf"_ns, u"application/swf"_ns},
           {u"caf"_ns, NSString()},  // Media that browsers do not play.
           {u"txt"_ns, NSString()},
           {u""_ns, NSString()},
           {NSString(), NSString()},
       })
    EXPECT_EQ(MIMETypeForUnmappedExtension(extension), MIMEType) << extension.UTF8String();
}

TEST(MIMETypes, AskTheDatabaseFirst) {
  EXPECT_EQ(MIMETypeForExtension(u"mp3"_ns), u"audio/mpeg"_ns);
  EXPECT_EQ(MIMETypeForExtension(u"txt"_ns), u"text/plain"_ns);
  EXPECT_EQ(MIMETypeForExtension(u"mpv2"_ns), MIMETypeForUnmappedExtension(u"mpv2"_ns));
  EXPECT_FALSE(MIMETypeForExtension(u"no-such-extension"_ns));
  EXPECT_FALSE(MIMETypeForExtension(NSString()));
  EXPECT_EQ(extensionForMIMEType(MIMETypeForExtension(u"png"_ns)), u"png"_ns);
  EXPECT_FALSE(extensionForMIMEType(u"image/x-no-such-type"_ns));
  EXPECT_FALSE(extensionForMIMEType(NSString()));
}

}  // namespace
}  // namespace nimbo
