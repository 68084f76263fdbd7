// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <stdexcept>

#include "Classes/Pasteboard/NSAttributedString+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSPasteboard+NimboPasteboardSupport.hpp"
#include "Classes/Pasteboard/NSString+NimboPasteboardSupport.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/Foundation/NSException.hpp"
#include "tests/platform/AppKit/Pasteboard/RaisingPasteboard.hpp"

namespace nimbo {
namespace {

/// A pasteboard that holds, in this order, each type's name as its string.
NSPasteboard pasteboardWithTypes(const std::vector<NSString> &types) {
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  pasteboard.declareTypes(types);
  for (const NSString &type : types) pasteboard.setString(type, type);
  return pasteboard;
}

TEST(PasteboardReaders, TakeTheFirstTypeOfTheirOrderOrThePasteboards) {
  const NSString flavor = u"CorePasteboardFlavorType 0x75726C20"_ns, apple = u"Apple URL pasteboard type"_ns,
                 publicURL = u"public.url"_ns, nameFlavor = u"CorePasteboardFlavorType 0x75726C6E"_ns,
                 publicName = u"public.url-name"_ns, none;
  const struct {
    std::vector<NSString> types;
    NSString string, url, urlName;
  } cases[] = {
      {{}, none, none, none},
      {{NSHTMLPboardType}, NSHTMLPboardType, none, none},
      {{NSHTMLPboardType, NSTabularTextPboardType}, NSTabularTextPboardType, none, none},
      {{NSHTMLPboardType, NSTabularTextPboardType, NSStringPboardType}, NSStringPboardType, none, none},
      {{NSRTFPboardType, NSTIFFPboardType, u"nsstringpboardtype"_ns}, none, none, none},
      {{NSTIFFPboardType, publicURL, apple, flavor, NSURLPboardType}, none, publicURL, none},
      {{apple, NSURLPboardType, publicURL}, none, apple, none},
      {{flavor, NSURLPboardType, NSStringPboardType}, NSStringPboardType, flavor, none},
      {{NSURLPboardType, flavor, publicName, nameFlavor}, none, NSURLPboardType, nameFlavor},
      {{publicName}, none, none, publicName},
  };
  for (const auto &[types, string, url, urlName] : cases) {
    const NSPasteboard pasteboard = pasteboardWithTypes(types);
    NSError error;
    EXPECT_EQ(stringFromPasteboard(pasteboard, &error), string);
    EXPECT_EQ(static_cast<bool>(error), !string);
    EXPECT_EQ(URL(pasteboard, &(error = {})), url);
    EXPECT_EQ(static_cast<bool>(error), !url);
    EXPECT_EQ(containsURL(pasteboard), static_cast<bool>(url));
    EXPECT_EQ(URLName(pasteboard, &(error = {})), urlName);
    EXPECT_EQ(static_cast<bool>(error), !urlName);
    EXPECT_EQ(containsURLName(pasteboard), static_cast<bool>(urlName));
  }
}

TEST(PasteboardReaders, AnswerNilForNil) {
  NSError errors[4];
  EXPECT_FALSE(stringFromPasteboard(NSPasteboard(), &errors[0]));
  EXPECT_FALSE(attributedStringFromPasteboard(NSPasteboard(), &errors[1]));
  EXPECT_FALSE(URL(NSPasteboard(), &errors[2]));
  EXPECT_FALSE(URLName(NSPasteboard(), &errors[3]));
  for (const NSError &error : errors) EXPECT_EQ(error.localizedFailureReason, u"there is no pasteboard"_ns);
}

TEST(PasteboardReaders, PreferRichTextWithAttachments) {
  const NSAttributedString rtfd(u"rtfd"_ns), rtf(u"rtf"_ns);
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  const auto write = [&pasteboard](const std::vector<NSString> &types, const NSData &rtfdData,
                                   const NSData &rtfData) {
    pasteboard.declareTypes(types);
    pasteboard.setData(rtfdData, NSRTFDPboardType);
    pasteboard.setData(rtfData, NSRTFPboardType);
  };
  const NSData rtfdData = RTFDFromRange(rtfd, {0, 4}), rtfData = RTFFromRange(rtf, {0, 3});
  write({NSRTFPboardType, NSRTFDPboardType}, rtfdData, rtfData);
  EXPECT_EQ(attributedStringFromPasteboard(pasteboard), rtfd);
  write({NSRTFPboardType, NSStringPboardType}, {}, rtfData);
  EXPECT_EQ(attributedStringFromPasteboard(pasteboard), rtf);
  const std::pair<NSString, NSData> unreadable[] = {{NSRTFPboardType, rtfdData},
                                                    {NSRTFDPboardType, rtfData},
                                                    {NSRTFDPboardType, NSData()},
                                                    {NSStringPboardType, NSData()}};
  for (const auto &[type, data] : unreadable) {
    write({type}, data, data);
    NSError error;
    EXPECT_FALSE(attributedStringFromPasteboard(pasteboard, &error));
    EXPECT_TRUE(error);
  }
}

TEST(PasteboardReaders, LogWhatThePlatformRaisesAndNothingElse) {
  const NSString none;
  for (const NSString &type : {none, NSStringPboardType, NSRTFPboardType}) {
    const NSPasteboard raising =
        raisingPasteboard(type, [] { throw NSException(u"Gone"_ns, u"the owner left"_ns); });
    const NSPasteboard throwing = raisingPasteboard(type, [] { throw std::runtime_error("other"); });
    const bool isRich = type == NSRTFPboardType;
    testing::internal::CaptureStderr();
    NSError error;
    if (isRich)
      EXPECT_FALSE(attributedStringFromPasteboard(raising, &error));
    else
      EXPECT_FALSE(stringFromPasteboard(raising, &error));
    EXPECT_TRUE(error);
    const std::string expected =
        isRich ? "attributedStringFromPasteboard: (NSAttributedString):\nGone\nthe owner left\n"
               : "stringFromPasteboard: (NSString):\nGone\nthe owner left\n";
    EXPECT_NE(testing::internal::GetCapturedStderr().find(expected), std::string::npos);
    if (isRich)
      EXPECT_THROW(attributedStringFromPasteboard(throwing), std::runtime_error);
    else
      EXPECT_THROW(stringFromPasteboard(throwing), std::runtime_error);
  }
}

TEST(PasteboardReaders, KnowTheExtensionsOfTypesExactly) {
  const struct {
    NSString type;
    const char16_t *extension;
  } cases[] = {
      {NSTIFFPboardType, u"tiff"},
      {u"Apple PNG pasteboard type"_ns, u"png"},
      {NSPICTPboardType, u"pict"},
      {NSPDFPboardType, u"pdf"},
      {NSPostScriptPboardType, u"ps"},
      {NSHTMLPboardType, u"html"},
      {NSRTFPboardType, u"rtf"},
      {NSRTFDPboardType, u"rtfd"},
      {NSStringPboardType, u"txt"},
      {NSTabularTextPboardType, u"csv"},
      {NSVCardPboardType, u"vcf"},
      {NSURLPboardType, u"url"},
      {u"CorePasteboardFlavorType 0x75726C20"_ns, u"url"},
      {u"Apple URL pasteboard type"_ns, u"url"},
      {u"public.url"_ns, u"url"},
      {u"Apple Web Archive pasteboard type"_ns, u"webarchive"},
      {u"CorePasteboardFlavorType 0x75726C6E"_ns, u""},
      {u"public.url-name"_ns, u""},
      {u"WebURLsWithTitlesPboardType"_ns, u""},
      {u"Public.url"_ns, u""},
      {u"public.url "_ns, u""},
      {u""_ns, u""},
      {{}, u""},
  };
  for (const auto &[type, extension] : cases) {
    const NSString expected = *extension ? NSString::stringWithCharacters(extension) : NSString();
    EXPECT_EQ(fileTypeForPboardType(type), expected) << type.UTF8String();
  }
}

}  // namespace
}  // namespace nimbo
