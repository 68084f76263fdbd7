// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <cstdint>
#include <exiv2/exiv2.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/ImageIO/Engine/Exiv2Image.hpp"

namespace nimbo::detail {
namespace {

/// Longer texts, and more keywords or authors, are damage.
constexpr std::size_t kMaximumTextLengthInBytes = 64 << 10;
constexpr std::uint32_t kMaximumElements = 1000;

/// Programs write text in every encoding, padded with blanks or zeros. Nil when nothing is left.
NSString stringWithMetadataText(std::string_view text) {
  text = text.substr(0, std::min(text.find('\0'), kMaximumTextLengthInBytes));
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == text.npos) return {};
  text = text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
  return stringWithDetectedEncoding(text).string;
}

/// Nothing when the value has no such component, or it is no finite number.
std::optional<double> realOfValue(const Exiv2::Value &value, long index = 0) {
  if (index >= value.count()) return std::nullopt;
  const auto [numerator, denominator] = value.toRational(index);
  if (denominator == 0) return std::nullopt;
  return static_cast<double>(numerator) / denominator;
}

std::optional<double> degreesOfValue(const Exiv2::Value &value) {
  double degrees = 0;
  for (const auto &[index, unit] : {std::pair(0L, 1.0), {1L, 60.0}, {2L, 3600.0}}) {
    const auto part = realOfValue(value, index);
    // Minutes and seconds are often left out.
    if (!part && index == 0) return std::nullopt;
    degrees += part.value_or(0) / unit;
  }
  return degrees;
}

enum class Kind { text, integer, integers, real, degrees };

struct Entry {
  const char *exifKey;
  NSString name;
  Kind kind;
};

/// Of a value that is not empty.
id propertyOfValue(const Exiv2::Value &value, Kind kind) {
  std::optional<double> real;
  switch (kind) {
    case Kind::text:
      return stringWithMetadataText(value.toString());
    case Kind::integer:
      return value.toLong(0);
    case Kind::integers:
      return NSArray{value.toLong(0)};
    case Kind::real:
      real = realOfValue(value);
      break;
    case Kind::degrees:
      real = degreesOfValue(value);
      break;
  }
  return real ? id(*real) : id();
}

template <std::size_t N>
NSDictionary dictionaryOfExif(const Exiv2::ExifData &exif, const Entry (&entries)[N]) {
  NSDictionary dictionary;
  for (const Entry &entry : entries) {
    const auto found = exif.findKey(Exiv2::ExifKey(entry.exifKey));
    if (found != exif.end() && found->count() > 0)
      dictionary.setObject(propertyOfValue(found->value(), entry.kind), entry.name);
  }
  return dictionary;
}

void addExif(const Exiv2::ExifData &exif, NSDictionary &properties) {
  static const Entry kTIFF[] = {
      {"Exif.Image.Make", u"Make"_ns, Kind::text},
      {"Exif.Image.Model", u"Model"_ns, Kind::text},
      {"Exif.Image.Software", u"Software"_ns, Kind::text},
      {"Exif.Image.DateTime", u"DateTime"_ns, Kind::text},
      {"Exif.Image.Artist", u"Artist"_ns, Kind::text},
      {"Exif.Image.Copyright", u"Copyright"_ns, Kind::text},
      {"Exif.Image.ImageDescription", u"ImageDescription"_ns, Kind::text},
      {"Exif.Image.Orientation", u"Orientation"_ns, Kind::integer},
      {"Exif.Image.XResolution", u"XResolution"_ns, Kind::real},
      {"Exif.Image.YResolution", u"YResolution"_ns, Kind::real},
      {"Exif.Image.ResolutionUnit", u"ResolutionUnit"_ns, Kind::integer},
      {"Exif.Image.Compression", u"Compression"_ns, Kind::integer},
      {"Exif.Image.PhotometricInterpretation", u"PhotometricInterpretation"_ns, Kind::integer},
  };
  static const Entry kExif[] = {
      {"Exif.Photo.ExposureTime", u"ExposureTime"_ns, Kind::real},
      {"Exif.Photo.FNumber", u"FNumber"_ns, Kind::real},
      {"Exif.Photo.ISOSpeedRatings", u"ISOSpeedRatings"_ns, Kind::integers},
      {"Exif.Photo.FocalLength", u"FocalLength"_ns, Kind::real},
      {"Exif.Photo.Flash", u"Flash"_ns, Kind::integer},
      {"Exif.Photo.ExposureProgram", u"ExposureProgram"_ns, Kind::integer},
      {"Exif.Photo.ExposureMode", u"ExposureMode"_ns, Kind::integer},
      {"Exif.Photo.ExposureBiasValue", u"ExposureBiasValue"_ns, Kind::real},
      {"Exif.Photo.ShutterSpeedValue", u"ShutterSpeedValue"_ns, Kind::real},
      {"Exif.Photo.ApertureValue", u"ApertureValue"_ns, Kind::real},
      {"Exif.Photo.MaxApertureValue", u"MaxApertureValue"_ns, Kind::real},
      {"Exif.Photo.MeteringMode", u"MeteringMode"_ns, Kind::integer},
      {"Exif.Photo.LightSource", u"LightSource"_ns, Kind::integer},
      {"Exif.Photo.WhiteBalance", u"WhiteBalance"_ns, Kind::integer},
      {"Exif.Photo.SceneCaptureType", u"SceneCaptureType"_ns, Kind::integer},
      {"Exif.Photo.FocalLengthIn35mmFilm", u"FocalLenIn35mmFilm"_ns, Kind::integer},
      {"Exif.Photo.ColorSpace", u"ColorSpace"_ns, Kind::integer},
      {"Exif.Photo.PixelXDimension", u"PixelXDimension"_ns, Kind::integer},
      {"Exif.Photo.PixelYDimension", u"PixelYDimension"_ns, Kind::integer},
      {"Exif.Photo.LensModel", u"LensModel"_ns, Kind::text},
      {"Exif.Photo.DateTimeOriginal", u"DateTimeOriginal"_ns, Kind::text},
      {"Exif.Photo.OffsetTimeOriginal", u"OffsetTimeOriginal"_ns, Kind::text},
      {"Exif.Photo.DateTimeDigitized", u"DateTimeDigitized"_ns, Kind::text},
      {"Exif.Photo.OffsetTimeDigitized", u"OffsetTimeDigitized"_ns, Kind::text},
  };
  static const Entry kGPS[] = {
      {"Exif.GPSInfo.GPSLatitude", u"Latitude"_ns, Kind::degrees},
      {"Exif.GPSInfo.GPSLatitudeRef", u"LatitudeRef"_ns, Kind::text},
      {"Exif.GPSInfo.GPSLongitude", u"Longitude"_ns, Kind::degrees},
      {"Exif.GPSInfo.GPSLongitudeRef", u"LongitudeRef"_ns, Kind::text},
      {"Exif.GPSInfo.GPSAltitude", u"Altitude"_ns, Kind::real},
      {"Exif.GPSInfo.GPSAltitudeRef", u"AltitudeRef"_ns, Kind::integer},
      {"Exif.GPSInfo.GPSImgDirection", u"ImgDirection"_ns, Kind::real},
      {"Exif.GPSInfo.GPSDateStamp", u"DateStamp"_ns, Kind::text},
  };
  properties.setObject(dictionaryOfExif(exif, kTIFF), u"{TIFF}"_ns);
  properties.setObject(dictionaryOfExif(exif, kExif), u"{Exif}"_ns);
  properties.setObject(dictionaryOfExif(exif, kGPS), u"{GPS}"_ns);
}

/// Title, authors, keywords and the like: of IPTC, else of XMP.
class Description {
 public:
  explicit Description(const Exiv2::IptcData &iptc, const Exiv2::XmpData &xmp) : iptc_(iptc), xmp_(xmp) {}

  NSDictionary dictionary() const {
    NSDictionary result;
    const auto setString = [&](const NSString &name, const char *iptcKey, const char *xmpKey) {
      if (const NSArray found = texts(iptcKey, xmpKey)) result.setObject(found[0], name);
    };
    setString(u"ObjectName"_ns, "Iptc.Application2.ObjectName", "Xmp.dc.title");
    setString(u"Caption/Abstract"_ns, "Iptc.Application2.Caption", "Xmp.dc.description");
    setString(u"CopyrightNotice"_ns, "Iptc.Application2.Copyright", "Xmp.dc.rights");
    result.setObject(texts("Iptc.Application2.Byline", "Xmp.dc.creator"), u"Byline"_ns);
    result.setObject(texts("Iptc.Application2.Keywords", "Xmp.dc.subject"), u"Keywords"_ns);
    return result;
  }

 private:
  /// Nil when neither has any.
  NSArray texts(const char *iptcKey, const char *xmpKey) const {
    NSArray found;
    const std::string wanted = iptcKey;
    for (const Exiv2::Iptcdatum &datum : iptc_)
      if (datum.key() == wanted && datum.count() > 0) add(datum.value().toString(), found);
    if (found) return found;
    const auto datum = xmp_.findKey(Exiv2::XmpKey(xmpKey));
    if (datum == xmp_.end()) return found;
    const Exiv2::Value &value = datum->value();
    // A text in several languages has one string for all of them, the default's.
    if (value.typeId() == Exiv2::langAlt)
      add(value.toString(0), found);
    else
      for (long i = 0; i < value.count(); ++i) add(value.toString(i), found);
    return found;
  }

  static void add(std::string_view text, NSArray &found) {
    const NSString string = stringWithMetadataText(text);
    if (string && found.count() < kMaximumElements) found.addObject(string);
  }

  const Exiv2::IptcData &iptc_;
  const Exiv2::XmpData &xmp_;
};

NSString typeForMIMEType(std::string_view type) {
  if (type == "image/x-photoshop") return u"com.adobe.photoshop-image"_ns;
  if (type == "image/jp2") return u"public.jpeg-2000"_ns;
  if (type == "image/heic") return u"public.heic"_ns;
  if (type == "image/heif") return u"public.heif"_ns;
  if (type == "image/avif") return u"public.avif"_ns;
  return {};
}

void addMetadataOfImage(Exiv2::Image &image, ImageHeader &header) {
  const NSString type = typeForMIMEType(image.mimeType());
  if (type) header.isKnown = true;
  image.readMetadata();
  NSDictionary &properties = header.properties;
  if (!header.type && image.pixelWidth() > 0 && image.pixelHeight() > 0) {
    header.type = type;
    properties.setObject(image.pixelWidth(), u"PixelWidth"_ns);
    properties.setObject(image.pixelHeight(), u"PixelHeight"_ns);
  }
  addExif(image.exifData(), properties);
  properties.setObject(Description(image.iptcData(), image.xmpData()).dictionary(), u"{IPTC}"_ns);
}

}  // namespace

NSError addMetadataWithExiv2(const ImageInput &input, ImageHeader &header) {
  NSError error;
  Exiv2::Image::AutoPtr image;
  try {
    image = openWithExiv2(input);
    if (image.get()) addMetadataOfImage(*image, header);
  } catch (const TooLargeToRead &) {
    setError(&error, ErrorCode::tooLarge, "the image is too large for its metadata to be read");
  } catch (const std::exception &) {
    if (image.get()) setError(&error, ErrorCode::damaged, "the metadata of the image is damaged");
  }
  return error;
}

}  // namespace nimbo::detail
