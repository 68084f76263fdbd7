// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/NSURLFileTypeMappings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace nimbo {
namespace {

const NSURLFileTypeMappings &mappings = NSURLFileTypeMappings::sharedMappings();

TEST(URLFileTypeMappings, AnswersTypesOfExtensions) {
  struct Case {
    NSString extension;
    NSString MIMEType;
  };
  for (const auto &[extension, MIMEType] : {
           Case{u"JPG"_ns, u"image/jpeg"_ns},
           {u"html"_ns, u"text/html"_ns},
           {u"gz"_ns, u"application/gzip"_ns},
           {u"no-such-extension"_ns, NSString()},
           {u"a/b.png"_ns, NSString()},  // A path is no extension.
           {u"\0png"_ns, NSString()},
           {u""_ns, NSString()},
           {NSString(), NSString()},
       })
    EXPECT_EQ(mappings.MIMETypeForExtension(extension), MIMEType) << extension.UTF8String();
}

TEST(URLFileTypeMappings, AnswersExtensionsOfTypes) {
  struct Case {
    NSString MIMEType;
    NSString extension;
  };
  for (const auto &[MIMEType, extension] : {
           Case{u"image/jpeg"_ns, u"jpg"_ns},
           {u"Image/JPEG; q=1"_ns, u"jpg"_ns},
           {u"image/pjpeg"_ns, u"jpg"_ns},                   // Another name of it.
           {u"application/x-compressed-tar"_ns, u"tgz"_ns},  // Not "tar.gz".
           {u"text/x-makefile"_ns, u"mk"_ns},                // Not "makefile".
           {u"text/x-no-such-type"_ns, NSString()},
           {u"inode/directory"_ns, NSString()},  // A type without any.
           {u"packages/freedesktop.org"_ns, NSString()},
           {u"image/../image/jpeg"_ns, NSString()},
           {u"../mime/image/jpeg"_ns, NSString()},
           {u"./jpeg"_ns, NSString()},
           {u"image/."_ns, NSString()},
           {u"/jpeg"_ns, NSString()},
           {u"image/"_ns, NSString()},
           {u"jpeg"_ns, NSString()},
           {u""_ns, NSString()},
           {NSString(), NSString()},
       })
    EXPECT_EQ(mappings.preferredExtensionForMIMEType(MIMEType), extension) << MIMEType.UTF8String();
  const auto extensions = mappings.extensionsForMIMEType(u"image/jpeg"_ns);
  EXPECT_NE(std::ranges::find(extensions, u"jpeg"_ns), extensions.end());
}

}  // namespace
}  // namespace nimbo
