// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/FFmpegReader.hpp"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/Foundation/System/LargeBytes.hpp"
#include "platform/ImageIO/Engine/BMPHeader.hpp"
#include "platform/ImageIO/Engine/ByteOrder.hpp"
#include "platform/ImageIO/Engine/PixelCopying.hpp"

namespace nimbo::detail {
namespace {

using namespace std::literals;

using Size = std::optional<PixelSize>;

Size sizeOf(std::uint32_t width, std::uint32_t height) {
  if (width == 0 || height == 0 || width > INT32_MAX || height > INT32_MAX) return std::nullopt;
  return PixelSize{width, height};
}

/// The size where two numbers of `length` bytes stand.
template <std::size_t widthOffset, std::size_t heightOffset, std::size_t length, ByteOrder order>
Size sizeAt(std::string_view bytes) {
  return sizeOf(numberAt(bytes, widthOffset, length, order), numberAt(bytes, heightOffset, length, order));
}

Size sizeOfPCX(std::string_view bytes) {
  const auto at = [&](std::size_t offset) { return numberAt(bytes, offset, 2, ByteOrder::little); };
  return sizeOf(at(8) + 1 - at(4), at(10) + 1 - at(6));
}

/// A PICT file has 512 bytes of anything in front.
constexpr std::size_t kPICTHeaderLength = 512;

Size sizeOfPICT(std::string_view bytes) {
  const auto at = [&](std::size_t offset) {
    return numberAt(bytes, kPICTHeaderLength + offset, 2, ByteOrder::big);
  };
  return sizeOf(at(8) - at(4), at(6) - at(2));
}

/// The number in decimal digits behind the first of `name`; 0 when there is none.
std::uint32_t numberBehind(std::string_view text, std::string_view name) {
  const std::size_t found = text.find(name);
  if (found == text.npos) return 0;
  text.remove_prefix(found + name.size());
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\""), text.size()));
  std::uint32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Size sizeOfPNM(std::string_view text) {
  std::uint32_t numbers[2] = {};
  text.remove_prefix(2);
  for (std::uint32_t &number : numbers) {
    for (;;) {
      text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
      if (!text.starts_with('#')) break;
      text.remove_prefix(std::min(text.find('\n'), text.size()));
    }
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  }
  return sizeOf(numbers[0], numbers[1]);
}

Size sizeOfPAM(std::string_view text) {
  return sizeOf(numberBehind(text, "WIDTH"), numberBehind(text, "HEIGHT"));
}

Size sizeOfXBM(std::string_view text) {
  return sizeOf(numberBehind(text, "_width"), numberBehind(text, "_height"));
}

/// The first string holds the width, the height and more numbers.
Size sizeOfXPM(std::string_view text) {
  const std::size_t start = text.find('"');
  if (start == text.npos) return std::nullopt;
  const std::string values = "P " + std::string(text.substr(start + 1));
  return sizeOfPNM(values);
}

Size sizeOfBMP(std::string_view bytes) {
  const ImageHeader header = headerOfBMP(bytes);
  return sizeOf(
      static_cast<std::uint32_t>(header.properties.objectForKey(u"PixelWidth"_ns).integer().value_or(0)),
      static_cast<std::uint32_t>(header.properties.objectForKey(u"PixelHeight"_ns).integer().value_or(0)));
}

/// What the header says of alpha; nothing when it leaves that to the pixels.
using Alpha = std::optional<bool>;

/// By the channels of a pixel, which are a byte somewhere.
template <std::size_t offset>
Alpha alphaOfChannelsAt(std::string_view bytes) {
  return numberAt(bytes, offset, 1, ByteOrder::big) == 4;
}

Alpha alphaOfPAM(std::string_view text) {
  return text.substr(0, text.find("ENDHDR")).find("_ALPHA\n") != text.npos;
}

/// Many writers have alpha without saying so.
Alpha alphaOfTGA(std::string_view bytes) {
  constexpr std::uint32_t kAlphaBits = 0xf;
  return (numberAt(bytes, 17, 1, ByteOrder::little) & kAlphaBits) == 8 ? Alpha(true) : std::nullopt;
}

struct Format {
  std::string_view signature;
  std::size_t offset;
  NSString type;
  FFmpegFormat format;
  Size (*size)(std::string_view);
  Alpha (*alpha)(std::string_view) = nullptr;
};

/// Whether it is one of the formats of "P1" to "P6", which have no alpha.
bool isAnymap(const Format &format) {
  return format.signature.size() == 2 && format.signature[0] == 'P';
}

/// Whether what begins with a short signature of text goes on like a picture.
bool isPlausible(const Format &format, std::string_view bytes) {
  if (isAnymap(format) &&
      (bytes.size() < 3 || std::string_view(" \t\r\n").find(bytes[2]) == std::string_view::npos))
    return false;
  const bool needsSize = isAnymap(format) || format.format == FFmpegFormat::XBM ||
                         format.format == FFmpegFormat::XWD || format.format == FFmpegFormat::SGI;
  return !needsSize || format.size(bytes).has_value();
}

/// TGA files begin with no signature, so all that is said must fit together.
bool isTGA(std::string_view bytes) {
  if (bytes.size() < 18) return false;
  const auto at = [&](std::size_t offset) { return static_cast<unsigned char>(bytes[offset]); };
  const unsigned mapType = at(1);
  const unsigned imageType = at(2) & ~8u;
  const unsigned depth = at(16);
  const bool isMapped = imageType == 1;
  if (imageType < 1 || imageType > 3 || (at(2) & ~11u) != 0 || mapType > 1 || (isMapped && mapType == 0))
    return false;
  if (mapType == 1 ? at(7) != 15 && at(7) != 16 && at(7) != 24 && at(7) != 32
                   : (at(3) | at(4) | at(5) | at(6) | at(7)) != 0)
    return false;
  const bool isDepthRight =
      imageType == 2 ? depth == 15 || depth == 16 || depth == 24 || depth == 32 : depth == 8;
  return isDepthRight && (at(17) & 0xc0) == 0 && sizeAt<12, 14, 2, ByteOrder::little>(bytes).has_value();
}

bool isPCX(std::string_view bytes) {
  const auto at = [&](std::size_t offset) { return static_cast<unsigned char>(bytes[offset]); };
  return bytes.size() >= 128 && at(0) == 10 && at(1) <= 5 && at(2) <= 1 &&
         (at(3) == 1 || at(3) == 2 || at(3) == 4 || at(3) == 8) && at(64) == 0 && sizeOfPCX(bytes).has_value();
}

/// Null when the bytes begin no such format.
const Format *formatOfBytes(std::string_view bytes) {
  static const Format kFormats[] = {
      {"BM"sv, 0, u"com.microsoft.bmp"_ns, FFmpegFormat::BMP, sizeOfBMP},
      {"DDS \x7c\0\0\0"sv, 0, u"com.microsoft.dds"_ns, FFmpegFormat::DDS, sizeAt<16, 12, 4, ByteOrder::little>},
      {"qoif"sv, 0, u"org.qoiformat.qoi"_ns, FFmpegFormat::QOI, sizeAt<4, 8, 4, ByteOrder::big>,
       alphaOfChannelsAt<12>},
      {"\x01\xda"sv, 0, u"com.sgi.sgi-image"_ns, FFmpegFormat::SGI, sizeAt<6, 8, 2, ByteOrder::big>,
       alphaOfChannelsAt<11>},
      {"\x59\xa6\x6a\x95"sv, 0, u"com.sun.raster-image"_ns, FFmpegFormat::SunRaster,
       sizeAt<4, 8, 4, ByteOrder::big>},
      {"\0\0\0\7"sv, 4, u"public.xwindowdump-image"_ns, FFmpegFormat::XWD, sizeAt<16, 20, 4, ByteOrder::big>},
      {"\0\x11\2\xff\x0c\0"sv, 522, u"com.apple.pict"_ns, FFmpegFormat::QDraw, sizeOfPICT},
      {"/* XPM */"sv, 0, u"public.xpixmap-image"_ns, FFmpegFormat::XPM, sizeOfXPM},
      {"#define "sv, 0, u"public.xbitmap-image"_ns, FFmpegFormat::XBM, sizeOfXBM},
      {"P1"sv, 0, u"public.pbm"_ns, FFmpegFormat::PBM, sizeOfPNM},
      {"P2"sv, 0, u"public.pbm"_ns, FFmpegFormat::PGM, sizeOfPNM},
      {"P3"sv, 0, u"public.pbm"_ns, FFmpegFormat::PPM, sizeOfPNM},
      {"P4"sv, 0, u"public.pbm"_ns, FFmpegFormat::PBM, sizeOfPNM},
      {"P5"sv, 0, u"public.pbm"_ns, FFmpegFormat::PGM, sizeOfPNM},
      {"P6"sv, 0, u"public.pbm"_ns, FFmpegFormat::PPM, sizeOfPNM},
      {"P7\nWIDTH"sv, 0, u"public.pbm"_ns, FFmpegFormat::PAM, sizeOfPAM, alphaOfPAM},
  };
  static const Format kPCX = {{}, 0, u"com.zsoft.pcx-image"_ns, FFmpegFormat::PCX, sizeOfPCX};
  static const Format kTGA = {
      {},        0, u"com.truevision.tga-image"_ns, FFmpegFormat::TGA, sizeAt<12, 14, 2, ByteOrder::little>,
      alphaOfTGA};
  for (const Format &format : kFormats)
    if (bytes.substr(std::min(format.offset, bytes.size())).starts_with(format.signature) &&
        isPlausible(format, bytes))
      return &format;
  if (isPCX(bytes)) return &kPCX;
  return isTGA(bytes) ? &kTGA : nullptr;
}

class FFmpegReader final : public ImageReader {
 public:
  FFmpegReader(const ImageInput &input, const Format &format, std::string_view firstBytes)
      : input_(input), format_(format), firstBytes_(firstBytes) {}

  ImageHeader header(std::uint32_t index) override {
    if (format_.format == FFmpegFormat::BMP) return index == 0 ? headerOfBMP(firstBytes_) : ImageHeader();
    ImageHeader header;
    header.isKnown = true;
    const Size size = format_.size(firstBytes_);
    if (!size || index > 0) return header;
    header.type = format_.type;
    header.properties.setObject(std::int64_t{size->width}, u"PixelWidth"_ns);
    header.properties.setObject(std::int64_t{size->height}, u"PixelHeight"_ns);
    const Alpha alpha = isAnymap(format_) ? false : format_.alpha ? format_.alpha(firstBytes_) : std::nullopt;
    if (alpha) header.properties.setObject(*alpha, u"HasAlpha"_ns);
    return header;
  }

  VipsPointer<VipsImage> open(std::uint32_t index, NSError *error) override {
    const Size size = format_.size(firstBytes_);
    if (!size || index > 0) return nullptr;
    if (std::int64_t{size->width} * size->height > kMaximumFramePixels ||
        input_.size() > static_cast<std::uint64_t>(kMaximumDecodedBytes)) {
      setError(error, ErrorCode::tooLarge, "the image has too many pixels");
      return nullptr;
    }
    const ImageCodec *codec = imageCodec(error);
    if (!codec) return nullptr;
    const bool saysAlpha = header(0).properties.objectForKey(u"HasAlpha"_ns) == id(true);
    samples_ = codec->samples(format_.format, wholeData(input_).span(), saysAlpha);
    return imageOfSamples(samples_);
  }

 private:
  const ImageInput &input_;
  const Format &format_;
  const std::string firstBytes_;
  DecodedSamples samples_;
};

}  // namespace

std::unique_ptr<ImageReader> ffmpegReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                                 const Deadline &) {
  const Format *format = formatOfBytes(firstBytes);
  return format ? std::make_unique<FFmpegReader>(input, *format, firstBytes) : nullptr;
}

}  // namespace nimbo::detail
