// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/PhotoshopReader.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "platform/ImageIO/Engine/ByteOrder.hpp"
#include "platform/ImageIO/Engine/ImageColors.hpp"

namespace nimbo::detail {
namespace {

using namespace std::literals;

constexpr std::uint32_t kMaximumSide = 300'000;
constexpr std::uint32_t kMaximumChannels = 56;
/// Resolution and colour profile stand near the beginning.
constexpr std::uint64_t kMaximumResourcesBytes = 16u << 20;
constexpr std::uint32_t kResolutionResource = 1005;
constexpr std::uint32_t kProfileResource = 1039;

enum Mode : std::uint32_t { Bitmap = 0, Grayscale = 1, Indexed = 2, RGB = 3, CMYK = 4, Duotone = 8, Lab = 9 };

std::uint64_t bigEndianAt(std::string_view bytes, std::size_t offset, std::size_t length) {
  if (length <= 4) return numberAt(bytes, offset, length, ByteOrder::big);
  return std::uint64_t{numberAt(bytes, offset, 4, ByteOrder::big)} << 32 |
         numberAt(bytes, offset + 4, 4, ByteOrder::big);
}

/// Where things stand in a document.
struct Layout {
  bool isLarge = false;
  std::uint32_t channels = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t depth = 0;
  std::uint32_t mode = 0;
  std::string palette;
  std::string resources;
  bool hasTransparency = false;
  bool isCompressed = false;
  /// Of the rows, channel by channel, and of their end.
  std::vector<std::uint64_t> rows;

  std::uint32_t colorChannels() const { return mode == RGB || mode == Lab ? 3 : mode == CMYK ? 4 : 1; }
  std::uint32_t usedChannels() const { return colorChannels() + (hasTransparency ? 1 : 0); }
  std::size_t rowLength() const { return (std::size_t{width} * depth + 7) / 8; }
};

/// Reads one number after the other.
class Cursor {
 public:
  explicit Cursor(const ImageInput &input) : input_(input) {}

  std::string bytes(std::uint64_t length) {
    std::string result(length, '\0');
    const auto got = readBytes(input_, result.data(), static_cast<std::int64_t>(length),
                               static_cast<std::int64_t>(std::min<std::uint64_t>(place, INT64_MAX)));
    isAtEnd = isAtEnd || got < static_cast<std::int64_t>(length);
    place += length;
    return result;
  }
  std::uint64_t number(std::size_t length) { return bigEndianAt(bytes(length), 0, length); }

  std::uint64_t place = 0;
  /// Whether more was asked for than there is.
  bool isAtEnd = false;

 private:
  const ImageInput &input_;
};

bool isPossible(const Layout &layout) {
  const bool isDepthRight = layout.mode == Bitmap
                                ? layout.depth == 1
                                : layout.depth == 8 || (layout.depth == 16 && layout.mode != Indexed);
  const bool isModeKnown = layout.mode <= CMYK || layout.mode == Duotone || layout.mode == Lab;
  return layout.width > 0 && layout.height > 0 && layout.width <= kMaximumSide &&
         layout.height <= kMaximumSide && layout.channels <= kMaximumChannels &&
         layout.channels >= layout.colorChannels() && isDepthRight && isModeKnown;
}

/// Everything in front of the rows; nothing when it is damaged or of a kind that is not read.
std::optional<Layout> headerOfDocument(Cursor &cursor) {
  Layout layout;
  cursor.place = 4;
  layout.isLarge = cursor.number(2) == 2;
  cursor.place += 6;
  layout.channels = static_cast<std::uint32_t>(cursor.number(2));
  layout.height = static_cast<std::uint32_t>(cursor.number(4));
  layout.width = static_cast<std::uint32_t>(cursor.number(4));
  layout.depth = static_cast<std::uint32_t>(cursor.number(2));
  layout.mode = static_cast<std::uint32_t>(cursor.number(2));
  const std::uint64_t paletteLength = cursor.number(4);
  constexpr std::uint64_t kPaletteLength = 768;
  if (cursor.isAtEnd || !isPossible(layout) || (layout.mode == Indexed && paletteLength < kPaletteLength))
    return std::nullopt;
  const std::uint64_t palette = cursor.place;
  if (layout.mode == Indexed) layout.palette = cursor.bytes(kPaletteLength);
  cursor.place = palette + paletteLength;
  const std::uint64_t resourcesLength = cursor.number(4);
  const std::uint64_t resources = cursor.place;
  layout.resources = cursor.bytes(std::min(resourcesLength, kMaximumResourcesBytes));
  cursor.place = resources + resourcesLength;
  if (cursor.isAtEnd) return std::nullopt;
  return layout;
}

/// Finds the rows; false when they are missing or packed in a way that is not read.
bool findRows(Cursor &cursor, Layout &layout) {
  const std::size_t lengthSize = layout.isLarge ? 8 : 4;
  const std::uint64_t layersLength = cursor.number(lengthSize);
  const std::uint64_t layers = cursor.place;
  if (layersLength > lengthSize + 2) {
    cursor.number(lengthSize);
    // A negative number of layers says that the first channel behind the colours is their transparency.
    layout.hasTransparency =
        static_cast<std::int16_t>(cursor.number(2)) < 0 && layout.channels > layout.colorChannels();
  }
  cursor.place = layers + layersLength;
  const std::uint64_t compression = cursor.number(2);
  if (compression > 1 || cursor.isAtEnd) return false;
  layout.isCompressed = compression == 1;
  const std::size_t rows = std::size_t{layout.channels} * layout.height;
  const std::size_t countSize = layout.isLarge ? 4 : 2;
  const std::string counts = layout.isCompressed ? cursor.bytes(rows * countSize) : std::string();
  if (cursor.isAtEnd) return false;
  layout.rows.resize(std::size_t{layout.usedChannels()} * layout.height + 1);
  std::uint64_t place = cursor.place;
  for (std::size_t i = 0; i < layout.rows.size(); ++i) {
    layout.rows[i] = place;
    place += layout.isCompressed ? bigEndianAt(counts, i * countSize, countSize) : layout.rowLength();
  }
  return true;
}

/// Undoes the packing of runs; what is missing stays zero.
void unpack(std::string_view packed, std::string &row) {
  std::size_t place = 0;
  for (std::size_t i = 0; i < packed.size() && place < row.size();) {
    const std::size_t code = static_cast<std::uint8_t>(packed[i++]);
    // It says nothing.
    if (code == 128) continue;
    const bool isRun = code > 128;
    const std::size_t count = std::min(isRun ? 257 - code : 1 + code, row.size() - place);
    if (isRun) {
      if (i >= packed.size()) return;
      std::fill_n(row.begin() + static_cast<std::ptrdiff_t>(place), count, packed[i++]);
    } else {
      const std::size_t there = std::min(count, packed.size() - i);
      row.replace(place, there, packed.substr(i, there));
      i += there;
    }
    place += count;
  }
}

class PhotoshopReader final : public ImageReader {
 public:
  PhotoshopReader(const ImageInput &input, const Deadline &deadline)
      : input_(input), deadline_(deadline), cursor_(input), layout_(headerOfDocument(cursor_)) {}

  ImageHeader header(std::uint32_t index) override {
    ImageHeader header;
    header.isKnown = true;
    if (!layout_ || index > 0) return header;
    header.type = layout_->isLarge ? u"com.adobe.photoshop-large-image"_ns : u"com.adobe.photoshop-image"_ns;
    NSDictionary &properties = header.properties;
    properties.setObject(std::int64_t{layout_->width}, u"PixelWidth"_ns);
    properties.setObject(std::int64_t{layout_->height}, u"PixelHeight"_ns);
    properties.setObject(std::int64_t{layout_->depth}, u"Depth"_ns);
    properties.setObject(layout_->mode == CMYK                              ? u"CMYK"_ns
                         : layout_->mode == Lab                             ? u"Lab"_ns
                         : layout_->mode == RGB || layout_->mode == Indexed ? u"RGB"_ns
                                                                            : u"Gray"_ns,
                         u"ColorModel"_ns);
    const std::string resolution = resource(kResolutionResource);
    const auto dotsPerInch = [&](std::size_t offset) {
      constexpr double kOne = 65536;
      const double dots = numberAt(resolution, offset, 4, ByteOrder::big) / kOne;
      return dots > 0 ? std::round(dots * 1000) / 1000 : 72.0;
    };
    properties.setObject(dotsPerInch(0), u"DPIWidth"_ns);
    properties.setObject(dotsPerInch(8), u"DPIHeight"_ns);
    if (findRowsOnce()) properties.setObject(layout_->hasTransparency, u"HasAlpha"_ns);
    return header;
  }

  VipsPointer<VipsImage> open(std::uint32_t index, NSError *error) override {
    if (index > 0 || !layout_) return nullptr;
    if (std::int64_t{layout_->width} * layout_->height > kMaximumPixels) {
      setError(error, ErrorCode::tooLarge, "the image has too many pixels");
      return nullptr;
    }
    if (!findRowsOnce()) return nullptr;
    return withColors(rowsAsImage());
  }

 private:
  bool findRowsOnce() {
    if (layout_->rows.empty()) hasRows_ = findRows(cursor_, *layout_);
    return hasRows_;
  }

  /// The content of a resource; empty when there is none.
  std::string resource(std::uint32_t number) const {
    const std::string_view bytes = layout_->resources;
    for (std::size_t place = 0; place + 12 <= bytes.size();) {
      const std::size_t nameLength = static_cast<unsigned char>(bytes[place + 6]);
      const std::size_t length = place + 6 + (nameLength + 2) / 2 * 2;
      const std::size_t content = numberAt(bytes, length, 4, ByteOrder::big);
      if (length + 4 > bytes.size()) break;
      if (numberAt(bytes, place + 4, 2, ByteOrder::big) == number)
        return std::string(bytes.substr(length + 4, content));
      place = length + 4 + (content + 1) / 2 * 2;
    }
    return {};
  }

  /// The samples as they are stored.
  VipsPointer<VipsImage> rowsAsImage() {
    VipsPointer<VipsImage> image(vips_image_new());
    const bool isWide = layout_->depth == 16;
    const auto bands = static_cast<int>(layout_->mode == Indexed ? 3 + (layout_->hasTransparency ? 1 : 0)
                                                                 : layout_->usedChannels());
    VipsInterpretation interpretation = isWide ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB;
    if (layout_->mode == CMYK) interpretation = VIPS_INTERPRETATION_CMYK;
    if (layout_->mode == Lab) interpretation = VIPS_INTERPRETATION_MULTIBAND;
    if (bands <= 2) interpretation = isWide ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
    vips_image_init_fields(image.get(), static_cast<int>(layout_->width), static_cast<int>(layout_->height),
                           bands, isWide ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR, VIPS_CODING_NONE,
                           interpretation, 1, 1);
    // Rows are asked for once if it is said that they are read so.
    vips_image_set_int(image.get(), VIPS_META_SEQUENTIAL, 1);
    if (const std::string profile = resource(kProfileResource); !profile.empty())
      vips_image_set_blob_copy(image.get(), VIPS_META_ICC_NAME, profile.data(), profile.size());
    if (vips_image_pipelinev(image.get(), VIPS_DEMAND_STYLE_THINSTRIP, nullptr) != 0 ||
        vips_image_generate(image.get(), nullptr, generate, nullptr, this, nullptr) != 0)
      return nullptr;
    return image;
  }

  /// Lab has an interpretation of its own samples, which are shifted.
  VipsPointer<VipsImage> withColors(VipsPointer<VipsImage> image) const {
    if (layout_->mode != Lab || !image) return image;
    const double unit = layout_->depth == 16 ? 257 : 1;
    const double factors[] = {100 / (255 * unit), 1 / unit, 1 / unit, 1 / unit};
    const double summands[] = {0, -128, -128, 0};
    const int bands = vips_image_get_bands(image.get());
    image = applied(image,
                    [&](auto in, auto out) { return vips_linear(in, out, factors, summands, bands, nullptr); });
    return applied(image, [](auto in, auto out) {
      return vips_copy(in, out, "interpretation", VIPS_INTERPRETATION_LAB, nullptr);
    });
  }

  /// The row of a channel, unpacked.
  void readRow(std::uint32_t channel, int y, std::string &packed, std::string &row) const {
    const std::size_t number = std::size_t{channel} * layout_->height + static_cast<std::size_t>(y);
    const std::uint64_t place = layout_->rows[number];
    row.assign(layout_->rowLength(), '\0');
    // No row becomes longer by being packed than by a byte for each 128.
    packed.assign(std::min<std::uint64_t>(layout_->rows[number + 1] - place, row.size() * 2 + 128), '\0');
    const auto got = readBytes(input_, packed.data(), static_cast<std::int64_t>(packed.size()),
                               static_cast<std::int64_t>(place));
    packed.resize(static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));
    if (layout_->isCompressed)
      unpack(packed, row);
    else
      row.replace(0, packed.size(), packed);
  }

  /// Puts the samples of one row of a channel between those of the others.
  void placeRow(const std::string &row, std::uint32_t channel, const VipsRect &valid, VipsPel *to,
                std::size_t bands) const {
    const bool isColor = channel < layout_->colorChannels();
    // Ink is stored as its absence.
    const unsigned mask = layout_->mode == CMYK && isColor ? 0xff : 0;
    const auto left = static_cast<std::size_t>(valid.left);
    for (std::size_t x = left; x < left + static_cast<std::size_t>(valid.width); ++x, to += bands) {
      const auto sample = [&](std::size_t i) { return static_cast<unsigned char>(row[i]); };
      if (layout_->mode == Bitmap) {
        *to = (sample(x / 8) >> (7 - x % 8) & 1) ? 0 : 255;
      } else if (layout_->mode == Indexed && isColor) {
        for (std::size_t color = 0; color < 3; ++color)
          to[color] = static_cast<unsigned char>(layout_->palette[color * 256 + sample(x)]);
      } else if (layout_->depth == 16) {
        const unsigned value = (sample(x * 2) << 8 | sample(x * 2 + 1)) ^ (mask * 257);
        *reinterpret_cast<std::uint16_t *>(to) = static_cast<std::uint16_t>(value);
      } else {
        *to = static_cast<VipsPel>(sample(x) ^ mask);
      }
    }
  }

  static int generate(VipsRegion *region, void *, void *reader, void *, gboolean *) {
    const auto &self = *static_cast<const PhotoshopReader *>(reader);
    const VipsRect &valid = region->valid;
    const std::size_t bands = VIPS_IMAGE_SIZEOF_PEL(region->im);
    std::string packed;
    std::string row;
    for (int y = valid.top; y < valid.top + valid.height; ++y) {
      if (self.deadline_.isOver()) return -1;
      VipsPel *to = VIPS_REGION_ADDR(region, valid.left, y);
      for (std::uint32_t channel = 0; channel < self.layout_->usedChannels(); ++channel) {
        self.readRow(channel, y, packed, row);
        self.placeRow(row, channel, valid, to, bands);
        to += self.layout_->mode == Indexed && channel == 0 ? 3 : self.layout_->depth == 16 ? 2 : 1;
      }
    }
    return 0;
  }

  const ImageInput &input_;
  const Deadline deadline_;
  Cursor cursor_;
  std::optional<Layout> layout_;
  bool hasRows_ = false;
};

}  // namespace

std::unique_ptr<ImageReader> photoshopReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                                    const Deadline &deadline) {
  if (!firstBytes.starts_with("8BPS\0\1"sv) && !firstBytes.starts_with("8BPS\0\2"sv)) return nullptr;
  return std::make_unique<PhotoshopReader>(input, deadline);
}

}  // namespace nimbo::detail
