// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <initializer_list>

#include "tests/importers/ShippedImporters.hpp"
#include "tests/support/EnvironmentSetting.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

TEST_F(Importers, Image) {
  const NSDictionary photo = metaDataOfExample("leaf.jpg");
  const NSDictionary wanted = {
      {u"kMDItemPixelWidth"_ns, 480},
      {u"kMDItemPixelHeight"_ns, 320},
      {u"kMDItemPixelCount"_ns, 153600},
      // The camera was held upright.
      {u"kMDItemOrientation"_ns, 1},
      {u"kMDItemBitsPerSample"_ns, 8},
      {u"kMDItemColorSpace"_ns, u"RGB"_ns},
      {u"kMDItemHasAlphaChannel"_ns, false},
      {u"kMDItemResolutionWidthDPI"_ns, 300.0},
      {u"kMDItemResolutionHeightDPI"_ns, 300.0},
      {u"kMDItemProfileName"_ns, u"sRGB"_ns},
      {u"kMDItemAcquisitionMake"_ns, u"Fletcher Optical"_ns},
      {u"kMDItemAcquisitionModel"_ns, u"Quiver 25"_ns},
      {u"kMDItemFNumber"_ns, 5.6},
      {u"kMDItemFocalLength"_ns, 35.0},
      {u"kMDItemCopyright"_ns, u"Archive of Loose Leaves"_ns},
      {u"kMDItemExposureTimeSeconds"_ns, 0.008},
      {u"kMDItemISOSpeed"_ns, 200},
      {u"kMDItemFlashOnOff"_ns, true},
      // 10:30 at two hours east of UTC.
      {u"kMDItemContentCreationDate"_ns, NSDate::dateWithUTC(2024, 9, 20, 8, 30, 0)},
      {u"kMDItemAltitude"_ns, 58.5},
      {u"kMDItemTitle"_ns, u"A leaf"_ns},
      {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"archive"_ns}},
      // The camera's own fields say something else.
      {u"kMDItemAuthors"_ns, NSArray{u"Rowan Fletcher"_ns}},
      {u"kMDItemDescription"_ns, u"A leaf on paper"_ns},
  };
  expectAttributes(photo, wanted);
  EXPECT_NEAR(photo.objectForKey(u"kMDItemLatitude"_ns).real().value_or(0), -33.86, 1e-9);
  EXPECT_NEAR(photo.objectForKey(u"kMDItemLongitude"_ns).real().value_or(0), 151.21, 1e-9);

  const NSDictionary drawing = metaDataOfExample("leaf.png");
  expectAttributes(drawing, {{u"kMDItemHasAlphaChannel"_ns, true}, {u"kMDItemOrientation"_ns, 0}});
  for (const NSString &name : {u"kMDItemContentCreationDate"_ns, u"kMDItemLatitude"_ns, u"kMDItemLongitude"_ns,
                               u"kMDItemAltitude"_ns, u"kMDItemISOSpeed"_ns, u"kMDItemFlashOnOff"_ns})
    EXPECT_FALSE(drawing.objectForKey(name)) << name.UTF8String();
}

TEST_F(Importers, OtherPhotos) {
  const std::string photo = contentsOfExample("leaf.jpg");
  const auto changed = [&](std::initializer_list<std::pair<std::string_view, std::string_view>> parts) {
    std::string bytes = photo;
    for (const auto &[from, to] : parts) {
      EXPECT_NE(bytes.find(from), bytes.npos);
      if (const std::size_t place = bytes.find(from); place != bytes.npos) bytes.replace(place, to.size(), to);
    }
    return metaDataOf("other.jpg", bytes);
  };
  // The camera was held upright, or not: 480 columns of 320 pixels are stored.
  for (const char orientation : {'\1', '\2', '\3', '\4', '\5', '\6', '\7', '\x08', '\x09'}) {
    const std::string entry = "\x12\x01\x03\0\x01\0\0\0"s + orientation;
    const bool isUpright = orientation >= 5 && orientation <= 8;
    EXPECT_EQ(changed({{entry.substr(0, 8), entry}}).objectForKey(u"kMDItemOrientation"_ns),
              id(isUpright ? 1 : 0))
        << int{orientation};
  }
  // North, west and below the sea.
  const NSDictionary elsewhere = changed({{"\1\0\2\0\2\0\0\0S"sv, "\1\0\2\0\2\0\0\0N"sv},
                                          {"\3\0\2\0\2\0\0\0E"sv, "\3\0\2\0\2\0\0\0W"sv},
                                          {"\5\0\1\0\1\0\0\0\0"sv, "\5\0\1\0\1\0\0\0\1"sv}});
  EXPECT_NEAR(elsewhere.objectForKey(u"kMDItemLatitude"_ns).real().value_or(0), 33.86, 1e-9);
  EXPECT_NEAR(elsewhere.objectForKey(u"kMDItemLongitude"_ns).real().value_or(0), -151.21, 1e-9);
  EXPECT_EQ(elsewhere.objectForKey(u"kMDItemAltitude"_ns), id(-58.5));
  // The time at which it was digitised, a flash that was not fired, and nothing but the camera's own fields.
  expectAttributes(changed({{"\x03\x90\2\0"sv, "\x04\x90\2\0"sv},
                            {"\x11\x90\2\0"sv, "\x12\x90\2\0"sv},
                            {"\x09\x92\3\0\1\0\0\0\1"sv, "\x09\x92\3\0\1\0\0\0\x10"sv},
                            {"8BIM\x04\x04"sv, "8BIM\x04\x05"sv},
                            {"http://ns.adobe.com/xap"sv, "http://ns.adobe.com/xyz"sv}}),
                   {{u"kMDItemContentCreationDate"_ns, NSDate::dateWithUTC(2024, 9, 20, 8, 30, 0)},
                    {u"kMDItemFlashOnOff"_ns, false},
                    {u"kMDItemTitle"_ns, id()},
                    {u"kMDItemKeywords"_ns, id()},
                    {u"kMDItemAuthors"_ns, NSArray{u"Quiver 25"_ns}},
                    {u"kMDItemCopyright"_ns, u"Archive of Loose Leaves"_ns},
                    {u"kMDItemDescription"_ns, u"Leaf 1024"_ns}});
}

TEST_F(Importers, CameraDates) {
  // The date stands in the file as text, in place.
  const std::string photo = contentsOfExample("leaf.jpg");
  const std::string date = "2024:09:20 10:30:00";
  const std::size_t place = photo.find(date);
  const std::size_t offset = photo.find("+02:00");
  ASSERT_TRUE(place != photo.npos && offset != photo.npos);
  const EnvironmentSetting zone("TZ", "America/Fortaleza");
  const auto dateOf = [&](std::string_view newDate, std::string_view newOffset) {
    std::string changed = photo;
    changed.replace(place, date.size(), newDate).replace(offset, newOffset.size(), newOffset);
    return metaDataOf("dated.jpg", changed).objectForKey(u"kMDItemContentCreationDate"_ns);
  };
  EXPECT_EQ(dateOf("2024:02:29 23:59:59", "-01:30"), id(NSDate::dateWithUTC(2024, 3, 1, 1, 29, 59)));
  // Without an offset the time is this system's: three hours west of UTC.
  for (const char *unknown : {"      ", "   :  ", "+25:00"})
    EXPECT_EQ(dateOf("2024:02:29 23:59:59", unknown), id(NSDate::dateWithUTC(2024, 3, 1, 2, 59, 59)));
  for (const char *wrong : {"0000:00:00 00:00:00", "2023:02:29 10:00:00", "2024:09:20 24:00:01",
                            "    :  :     :  :  ", "20th of September  "})
    EXPECT_FALSE(dateOf(wrong, "+02:00")) << wrong;
}

}  // namespace
}  // namespace nimbo
