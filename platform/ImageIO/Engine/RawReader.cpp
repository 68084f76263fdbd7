// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/RawReader.hpp"

#include <libraw/libraw.h>

#include <algorithm>
#include <string>
#include <utility>

#include "platform/ImageIO/Engine/ByteOrder.hpp"
#include "platform/ImageIO/Engine/VipsReader.hpp"

namespace nimbo::detail {
namespace {

using namespace std::literals;

/// Larger files are not read.
constexpr std::uint64_t kMaximumFileBytes = std::uint64_t{512} << 20;
/// More entries of a directory are not looked at.
constexpr std::uint32_t kMaximumEntries = 200;

enum Tag : std::uint32_t { NewSubfileType = 254, Make = 271, SubIFDs = 330, DNGVersion = 50706 };

/// Whether the file is TIFF as cameras write it: a small picture in front, the raw one behind it.
bool isRawTIFF(const ImageInput &input, std::string_view firstBytes) {
  const bool isLittle = firstBytes.starts_with("II*\0"sv);
  if (!isLittle && !firstBytes.starts_with("MM\0*"sv)) return false;
  if (isLittle && firstBytes.substr(8, 2) == "CR") return true;
  const ByteOrder order = isLittle ? ByteOrder::little : ByteOrder::big;
  std::string directory(2 + kMaximumEntries * 12, '\0');
  readBytes(input, directory.data(), static_cast<std::int64_t>(directory.size()),
            numberAt(firstBytes, 4, 4, order));
  bool isSmall = false;
  bool hasMaker = false;
  bool hasMore = false;
  const std::uint32_t count = std::min(numberAt(directory, 0, 2, order), kMaximumEntries);
  for (std::size_t entry = 2; entry < 2 + std::size_t{count} * 12; entry += 12) {
    switch (numberAt(directory, entry, 2, order)) {
      case DNGVersion:
        return true;
      case NewSubfileType:
        isSmall = numberAt(directory, entry + 8, 4, order) == 1;
        break;
      case Make:
        hasMaker = true;
        break;
      case SubIFDs:
        hasMore = true;
        break;
      default:
        break;
    }
  }
  return isSmall && hasMaker && hasMore;
}

bool hasRawSignature(std::string_view bytes) {
  static constexpr std::pair<std::size_t, std::string_view> kSignatures[] = {
      {0, "FUJIFILMCCD-RAW"sv}, {0, "IIRO"sv},  {0, "IIRS"sv}, {0, "MMOR"sv},    {0, "IIU\0"sv},
      {6, "HEAPCCDR"sv},        {0, "\0MRM"sv}, {0, "FOVb"sv}, {4, "ftypcrx "sv}};
  return std::ranges::any_of(kSignatures, [bytes](const auto &signature) {
    return bytes.substr(std::min(signature.first, bytes.size())).starts_with(signature.second);
  });
}

/// The number of Exif for LibRaw's.
int orientationOfFlip(int flip) {
  return flip == 3 ? 3 : flip == 5 ? 8 : flip == 6 ? 6 : 1;
}

class RawReader final : public ImageReader {
 public:
  RawReader(const ImageInput &input, const Deadline &deadline)
      : file_(wholeData(input)), deadline_(deadline), processor_(std::make_unique<LibRaw>()) {
    processor_->set_progress_handler(
        [](void *self, LibRaw_progress, int, int) {
          return static_cast<RawReader *>(self)->deadline_.isOver() ? 1 : 0;
        },
        this);
    libraw_output_params_t &parameters = processor_->imgdata.params;
    parameters.use_camera_wb = 1;
    parameters.output_bps = 8;
    // Its 1 is sRGB.
    parameters.output_color = 1;
    // What is answered is turned by who asks.
    parameters.user_flip = 0;
    isOpen_ = reopen();
  }

  /// Whether LibRaw knows the camera's format.
  bool isOpen() const { return isOpen_; }

  ImageHeader header(std::uint32_t index) override {
    ImageHeader header;
    header.isKnown = true;
    if (index > 0) return header;
    header.type = u"public.camera-raw-image"_ns;
    header.properties.setObject(std::int64_t{sizes().iwidth}, u"PixelWidth"_ns);
    header.properties.setObject(std::int64_t{sizes().iheight}, u"PixelHeight"_ns);
    header.properties.setObject(u"RGB"_ns, u"ColorModel"_ns);
    header.properties.setObject(std::int64_t{orientation_}, u"Orientation"_ns);
    header.properties.setObject(false, u"HasAlpha"_ns);
    return header;
  }

  /// An image that is developed when its pixels are asked for: who wants its size alone shall not wait.
  VipsPointer<VipsImage> open(std::uint32_t index, NSError *error) override {
    if (index > 0) return nullptr;
    if (std::int64_t{sizes().iwidth} * sizes().iheight > kMaximumDecodedBytes / 16) {
      setError(error, ErrorCode::tooLarge, "the image has too many pixels");
      return nullptr;
    }
    VipsPointer<VipsImage> image(vips_image_new());
    vips_image_init_fields(image.get(), sizes().iwidth, sizes().iheight, 3, VIPS_FORMAT_UCHAR, VIPS_CODING_NONE,
                           VIPS_INTERPRETATION_sRGB, 1, 1);
    if (vips_image_pipelinev(image.get(), VIPS_DEMAND_STYLE_ANY, nullptr) != 0 ||
        vips_image_generate(image.get(), nullptr, generate, nullptr, this, nullptr) != 0)
      return nullptr;
    vips_image_set_int(image.get(), VIPS_META_ORIENTATION, orientation_);
    return image;
  }

  VipsPointer<VipsImage> openSmaller(std::uint32_t, double shrink, VipsPointer<VipsImage> image) override {
    if (shrink < 2) return image;
    // A pixel of each group of four sensors, without a guess at the others.
    processor_->imgdata.params.half_size = 1;
    isOpen_ = reopen();
    return develop() ? imageOfSamples(samples_) : nullptr;
  }

  VipsPointer<VipsImage> openThumbnail(std::uint32_t, bool) override {
    const libraw_thumbnail_t &thumbnail = processor_->imgdata.thumbnail;
    if (processor_->unpack_thumb() != LIBRAW_SUCCESS || thumbnail.tformat != LIBRAW_THUMBNAIL_JPEG)
      return nullptr;
    thumbnail_.data = NSData::dataWithBytes(thumbnail.thumb, thumbnail.tlength);
    thumbnailReader_ = vipsReaderOfInput(thumbnail_, thumbnail_.data.view(), deadline_);
    return thumbnailReader_ ? thumbnailReader_->open(0, nullptr) : nullptr;
  }

 private:
  const libraw_image_sizes_t &sizes() const { return processor_->imgdata.sizes; }

  bool reopen() {
    processor_->recycle();
    if (processor_->open_buffer(const_cast<std::uint8_t *>(file_.bytes()), file_.length()) != LIBRAW_SUCCESS)
      return false;
    orientation_ = orientationOfFlip(sizes().flip);
    return sizes().iwidth > 0 && sizes().iheight > 0;
  }

  /// Fills `samples_`; false when the file is damaged or the deadline is over.
  bool develop() {
    if (samples_.bytes) return true;
    if (!isOpen_ || processor_->unpack() != LIBRAW_SUCCESS || processor_->dcraw_process() != LIBRAW_SUCCESS)
      return false;
    int bits = 0;
    processor_->get_mem_image_format(&samples_.width, &samples_.height, &samples_.bands, &bits);
    if (samples_.bands != 3 || bits != 8) return false;
    const auto width = static_cast<std::size_t>(samples_.width);
    const auto height = static_cast<std::size_t>(samples_.height);
    auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(width * height * 3);
    if (processor_->copy_mem_image(bytes.get(), samples_.width * 3, 0) != LIBRAW_SUCCESS) return false;
    samples_.bytes = std::move(bytes);
    return true;
  }

  static int generate(VipsRegion *region, void *, void *reader, void *, gboolean *) {
    auto &self = *static_cast<RawReader *>(reader);
    const VipsRect &valid = region->valid;
    if (!self.develop() || self.samples_.width < valid.left + valid.width ||
        self.samples_.height < valid.top + valid.height)
      return -1;
    for (int y = valid.top; y < valid.top + valid.height; ++y) {
      const std::size_t place = (static_cast<std::size_t>(y) * static_cast<std::size_t>(self.samples_.width) +
                                 static_cast<std::size_t>(valid.left)) *
                                3;
      std::copy_n(self.samples_.bytes.get() + place, static_cast<std::size_t>(valid.width) * 3,
                  VIPS_REGION_ADDR(region, valid.left, y));
    }
    return 0;
  }

  const NSData file_;
  const Deadline deadline_;
  const std::unique_ptr<LibRaw> processor_;
  bool isOpen_ = false;
  int orientation_ = 1;
  DecodedSamples samples_;
  ImageInput thumbnail_;
  std::unique_ptr<ImageReader> thumbnailReader_;
};

}  // namespace

std::unique_ptr<ImageReader> rawReaderOfInput(const ImageInput &input, std::string_view firstBytes,
                                              const Deadline &deadline) {
  if ((!hasRawSignature(firstBytes) && !isRawTIFF(input, firstBytes)) || input.size() > kMaximumFileBytes)
    return nullptr;
  auto reader = std::make_unique<RawReader>(input, deadline);
  return reader->isOpen() ? std::move(reader) : nullptr;
}

}  // namespace nimbo::detail
