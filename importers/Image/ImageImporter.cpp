// SPDX-License-Identifier: Apache-2.0
#include <optional>

#include "importers/ImporterPlugIn.hpp"
#include "platform/Foundation/NSCalendarDate.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/ImageIO/CGImageSource.hpp"

namespace nimbo {
namespace {

/// Exif orientations from here on turn the image by 90 degrees.
constexpr std::int64_t kFirstTurnedOrientation = 5;

/// The moment of "2004:10:31 18:05:00" at an offset as "+02:00". Cameras seldom know their time zone; then it
/// is taken to be this system's.
std::optional<NSDate> dateWithExifDate(const NSString &date, const NSString &offset) {
  const auto inZone = dateWithCalendarFormat(stringByConcatenating(date, offset), u"%Y:%m:%d %H:%M:%S%Z");
  return inZone ? inZone : dateWithCalendarFormat(date, u"%Y:%m:%d %H:%M:%S");
}

/// The value with the sign that its reference gives.
id signedCoordinate(const NSDictionary &gps, const NSString &name, const NSString &reference,
                    const NSString &negative) {
  const auto value = gps.objectForKey(name).real();
  if (!value) return {};
  return gps.objectForKey(reference).string() == negative ? -*value : *value;
}

void setSize(const NSDictionary &properties, Attributes &attributes) {
  const std::int64_t width = properties.objectForKey(u"PixelWidth"_ns).integer().value_or(0);
  const std::int64_t height = properties.objectForKey(u"PixelHeight"_ns).integer().value_or(0);
  attributes.set("kMDItemPixelWidth", width);
  attributes.set("kMDItemPixelHeight", height);
  attributes.set("kMDItemPixelCount", width * height);
  // 0 is landscape, 1 is portrait: as the image is shown.
  const std::int64_t orientation = properties.objectForKey(u"Orientation"_ns).integer().value_or(1);
  const bool isTurned = orientation >= kFirstTurnedOrientation;
  attributes.set("kMDItemOrientation", (isTurned ? width > height : height > width) ? 1 : 0);
}

void setCamera(const NSDictionary &exif, const NSDictionary &tiff, Attributes &attributes) {
  attributes.set("kMDItemAcquisitionMake", tiff.objectForKey(u"Make"_ns));
  attributes.set("kMDItemAcquisitionModel", tiff.objectForKey(u"Model"_ns));
  attributes.set("kMDItemExposureTimeSeconds", exif.objectForKey(u"ExposureTime"_ns));
  attributes.set("kMDItemFNumber", exif.objectForKey(u"FNumber"_ns));
  attributes.set("kMDItemFocalLength", exif.objectForKey(u"FocalLength"_ns));
  if (const NSArray speeds = exif.objectForKey(u"ISOSpeedRatings"_ns).array(); speeds.count() > 0)
    attributes.set("kMDItemISOSpeed", speeds[0]);
  if (const auto flash = exif.objectForKey(u"Flash"_ns).integer())
    attributes.set("kMDItemFlashOnOff", (*flash & 1) != 0);
  auto date = dateWithExifDate(exif.objectForKey(u"DateTimeOriginal"_ns).string(),
                               exif.objectForKey(u"OffsetTimeOriginal"_ns).string());
  if (!date)
    date = dateWithExifDate(exif.objectForKey(u"DateTimeDigitized"_ns).string(),
                            exif.objectForKey(u"OffsetTimeDigitized"_ns).string());
  if (date) attributes.set("kMDItemContentCreationDate", *date);
}

void setPlace(const NSDictionary &gps, Attributes &attributes) {
  attributes.set("kMDItemLatitude", signedCoordinate(gps, u"Latitude"_ns, u"LatitudeRef"_ns, u"S"_ns));
  attributes.set("kMDItemLongitude", signedCoordinate(gps, u"Longitude"_ns, u"LongitudeRef"_ns, u"W"_ns));
  if (const auto altitude = gps.objectForKey(u"Altitude"_ns).real())
    attributes.set("kMDItemAltitude",
                   gps.objectForKey(u"AltitudeRef"_ns).integer() == 1 ? -*altitude : *altitude);
}

/// What somebody wrote about the image; of IPTC and XMP, else of the camera's own fields.
void setDescription(const NSDictionary &iptc, const NSDictionary &tiff, Attributes &attributes) {
  attributes.set("kMDItemTitle", iptc.objectForKey(u"ObjectName"_ns));
  attributes.set("kMDItemKeywords", iptc.objectForKey(u"Keywords"_ns));
  attributes.setArrayOf("kMDItemAuthors", tiff.objectForKey(u"Artist"_ns).string());
  attributes.set("kMDItemAuthors", iptc.objectForKey(u"Byline"_ns));
  attributes.set("kMDItemCopyright", tiff.objectForKey(u"Copyright"_ns));
  attributes.set("kMDItemCopyright", iptc.objectForKey(u"CopyrightNotice"_ns));
  attributes.set("kMDItemDescription", tiff.objectForKey(u"ImageDescription"_ns));
  attributes.set("kMDItemDescription", iptc.objectForKey(u"Caption/Abstract"_ns));
}

void importImage(const NSString &path, Attributes &attributes) {
  NSError error;
  const auto source = CGImageSource::sourceWithContentsOfFile(path, &error);
  attributes.setReason(error);
  if (!source) return;
  const NSDictionary &properties = source->properties();
  setSize(properties, attributes);
  attributes.set("kMDItemBitsPerSample", properties.objectForKey(u"Depth"_ns));
  attributes.set("kMDItemColorSpace", properties.objectForKey(u"ColorModel"_ns));
  attributes.set("kMDItemHasAlphaChannel", properties.objectForKey(u"HasAlpha"_ns));
  attributes.set("kMDItemProfileName", properties.objectForKey(u"ProfileName"_ns));
  attributes.set("kMDItemResolutionWidthDPI", properties.objectForKey(u"DPIWidth"_ns));
  attributes.set("kMDItemResolutionHeightDPI", properties.objectForKey(u"DPIHeight"_ns));
  const NSDictionary tiff = properties.objectForKey(u"{TIFF}"_ns).dictionary();
  setCamera(properties.objectForKey(u"{Exif}"_ns).dictionary(), tiff, attributes);
  setPlace(properties.objectForKey(u"{GPS}"_ns).dictionary(), attributes);
  setDescription(properties.objectForKey(u"{IPTC}"_ns).dictionary(), tiff, attributes);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *ImageImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importImage);
}
