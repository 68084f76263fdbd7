// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/IconReader.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/ImageIO/Engine/ByteOrder.hpp"
#include "platform/ImageIO/Engine/ImageColors.hpp"
#include "platform/ImageIO/Engine/PixelCopying.hpp"
#include "platform/ImageIO/Engine/VipsReader.hpp"

namespace nimbo::detail {
namespace {

using namespace std::literals;

/// Larger files are no icons.
constexpr std::uint64_t kMaximumFileBytes = std::uint64_t{64} << 20;
constexpr std::uint32_t kMaximumImages = 1000;
constexpr std::size_t kDirectoryHeaderLength = 6;
constexpr std::size_t kEntryLength = 16;
constexpr std::uint32_t kBitmapHeaderLength = 40;
constexpr std::uint32_t kMaximumSide = 4096;
constexpr std::string_view kPNGSignature = "\x89PNG\r\n\x1a\n"sv;

std::uint32_t littleEndianAt(std::string_view bytes, std::size_t offset, std::size_t length) {
  return numberAt(bytes, offset, length, ByteOrder::little);
}

/// An image of the file: a whole PNG file, or a bitmap without its file header.
struct Entry {
  NSData data;
  PixelSize size;
  std::uint32_t bitsPerPixel;

  bool isPNG() const { return data.view().starts_with(kPNGSignature); }
};

/// Nothing when it is damaged.
std::optional<Entry> entryAt(const NSData &file, std::size_t index) {
  const std::size_t place = kDirectoryHeaderLength + index * kEntryLength;
  const std::uint32_t length = littleEndianAt(file.view(), place + 8, 4);
  const std::uint32_t offset = littleEndianAt(file.view(), place + 12, 4);
  if (offset > file.length()) return std::nullopt;
  Entry entry = {file.subdataWithRange({offset, length}), {}, 0};
  const std::string_view bytes = entry.data.view();
  if (entry.isPNG()) {
    entry.size = {numberAt(bytes, 16, 4, ByteOrder::big), numberAt(bytes, 20, 4, ByteOrder::big)};
    entry.bitsPerPixel = 32;
  } else if (littleEndianAt(bytes, 0, 4) == kBitmapHeaderLength) {
    // The rows of the mask follow, and count.
    entry.size = {littleEndianAt(bytes, 4, 4), littleEndianAt(bytes, 8, 4) / 2};
    entry.bitsPerPixel = littleEndianAt(bytes, 14, 2);
  }
  const bool isRight = entry.size.width > 0 && entry.size.height > 0 && entry.size.width <= kMaximumSide &&
                       entry.size.height <= kMaximumSide;
  return isRight ? std::optional(entry) : std::nullopt;
}

std::vector<Entry> entriesOf(const NSData &file) {
  std::vector<Entry> entries;
  const std::uint32_t count = std::min(littleEndianAt(file.view(), 4, 2), kMaximumImages);
  for (std::uint32_t i = 0; i < count; ++i)
    if (const auto entry = entryAt(file, i)) entries.push_back(*entry);
  std::ranges::stable_sort(entries, [](const Entry &a, const Entry &b) {
    const auto pixels = [](const Entry &entry) { return entry.size.width * entry.size.height; };
    return pixels(a) != pixels(b) ? pixels(a) > pixels(b) : a.bitsPerPixel > b.bitsPerPixel;
  });
  return entries;
}

std::size_t rowLength(std::uint32_t width, std::uint32_t bitsPerPixel) {
  return (std::size_t{width} * bitsPerPixel + 31) / 32 * 4;
}

/// The file of the bitmap alone, as others have them.
std::string bitmapFile(const Entry &entry, std::size_t offsetOfPixels) {
  const std::string_view bytes = entry.data.view();
  std::string file = "BM";
  const auto append = [&file](std::size_t value) {
    for (int i = 0; i < 4; ++i, value >>= 8) file += static_cast<char>(value);
  };
  constexpr std::size_t kFileHeaderLength = 14;
  append(kFileHeaderLength + bytes.size());
  append(0);
  append(kFileHeaderLength + offsetOfPixels);
  file += bytes.substr(0, 8);
  append(entry.size.height);
  file += bytes.substr(12);
  return file;
}

/// The alphas of the mask's bits, of which one means transparent; empty when the mask is cut off.
std::vector<std::uint8_t> alphasOfMask(const Entry &entry, std::size_t offset) {
  const std::size_t length = rowLength(entry.size.width, 1);
  if (entry.data.length() < offset + length * entry.size.height) return {};
  std::vector<std::uint8_t> alphas(std::size_t{entry.size.width} * entry.size.height);
  for (std::size_t y = 0; y < entry.size.height; ++y) {
    // The last row comes first.
    const std::uint8_t *row = entry.data.bytes() + offset + (entry.size.height - 1 - y) * length;
    for (std::size_t x = 0; x < entry.size.width; ++x)
      alphas[y * entry.size.width + x] = (row[x / 8] >> (7 - x % 8) & 1) ? 0 : 255;
  }
  return alphas;
}

class IconReader final : public ImageReader {
 public:
  IconReader(const NSData &file, NSString type, const Deadline &deadline)
      : deadline_(deadline), type_(std::move(type)), entries_(entriesOf(file)) {}

  ImageHeader header(std::uint32_t index) override {
    ImageHeader header;
    header.isKnown = true;
    if (index >= entries_.size()) return header;
    header.type = type_;
    header.count = static_cast<std::uint32_t>(entries_.size());
    header.properties.setObject(std::int64_t{entries_[index].size.width}, u"PixelWidth"_ns);
    header.properties.setObject(std::int64_t{entries_[index].size.height}, u"PixelHeight"_ns);
    header.properties.setObject(u"RGB"_ns, u"ColorModel"_ns);
    header.properties.setObject(true, u"HasAlpha"_ns);
    return header;
  }

  VipsPointer<VipsImage> open(std::uint32_t index, NSError *error) override {
    if (index >= entries_.size()) return nullptr;
    const Entry &entry = entries_[index];
    if (!entry.isPNG()) return openBitmap(entry);
    png_.data = entry.data;
    reader_ = vipsReaderOfInput(png_, entry.data.view(), deadline_);
    return reader_->open(0, error);
  }

 private:
  VipsPointer<VipsImage> openBitmap(const Entry &entry) {
    const std::uint32_t colors = littleEndianAt(entry.data.view(), 32, 4);
    const std::size_t paletteLength =
        entry.bitsPerPixel > 8 ? 0 : std::size_t{colors ? colors : 1u << entry.bitsPerPixel} * 4;
    const std::size_t offset = kBitmapHeaderLength + paletteLength;
    const std::string file = bitmapFile(entry, offset);
    const ImageCodec *codec = imageCodec(nullptr);
    if (!codec) return nullptr;
    samples_ = codec->samples(FFmpegFormat::BMP,
                              {reinterpret_cast<const std::uint8_t *>(file.data()), file.size()}, false);
    auto image = imageOfSamples(samples_);
    if (!image || samples_.bands == 4) return image;
    alphas_ = alphasOfMask(entry, offset + rowLength(entry.size.width, entry.bitsPerPixel) * entry.size.height);
    if (alphas_.empty()) return image;
    const VipsPointer<VipsImage> alpha(vips_image_new_from_memory(
        alphas_.data(), alphas_.size(), samples_.width, samples_.height, 1, VIPS_FORMAT_UCHAR));
    if (!alpha) return nullptr;
    return applied(image, [&](auto in, auto out) { return vips_bandjoin2(in, alpha.get(), out, nullptr); });
  }

  const Deadline deadline_;
  const NSString type_;
  const std::vector<Entry> entries_;
  ImageInput png_;
  std::unique_ptr<ImageReader> reader_;
  DecodedSamples samples_;
  std::vector<std::uint8_t> alphas_;
};

}  // namespace

std::unique_ptr<ImageReader> iconReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                               const Deadline &deadline) {
  const bool isIcon = firstBytes.starts_with("\0\0\1\0"sv);
  const bool isCursor = firstBytes.starts_with("\0\0\2\0"sv);
  // The fourth byte of an entry is zero, which few other files have there.
  if ((!isIcon && !isCursor) || firstBytes.size() < kDirectoryHeaderLength + kEntryLength ||
      littleEndianAt(firstBytes, 4, 2) == 0 || firstBytes[kDirectoryHeaderLength + 3] != 0 ||
      littleEndianAt(firstBytes, kDirectoryHeaderLength + 12, 4) < kDirectoryHeaderLength + kEntryLength ||
      input.size() > kMaximumFileBytes)
    return nullptr;
  return std::make_unique<IconReader>(wholeData(input),
                                      isIcon ? u"com.microsoft.ico"_ns : u"com.microsoft.cur"_ns, deadline);
}

}  // namespace nimbo::detail
