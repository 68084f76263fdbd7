// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/Exiv2Image.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>

#include "platform/ImageIO/Engine/ByteOrder.hpp"

namespace nimbo::detail {
namespace {

/// Of formats of which Exiv2 wants the whole file no larger one is read, and of TIFF no more.
constexpr std::int64_t kMaximumReadBytes = std::int64_t{32} << 20;
/// Of TIFF it gets no more than this much for each place that matters.
constexpr std::int64_t kMaximumPartBytes = 1 << 20;
constexpr std::uint32_t kMaximumEntries = 500;
constexpr int kMaximumDirectories = 20;

enum Tag : std::uint32_t { SubIFDs = 330, ExifDirectory = 34665, GPSDirectory = 34853 };

/// Memory of the size of a file, of which only what is written takes any; zeros stand elsewhere.
class SparseContent {
 public:
  explicit SparseContent(std::size_t size)
      : size_(size),
        bytes_(
            ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {
    if (bytes_ == MAP_FAILED) throw std::bad_alloc();
  }
  SparseContent(const SparseContent &) = delete;
  SparseContent &operator=(const SparseContent &) = delete;
  ~SparseContent() { ::munmap(bytes_, size_); }

  Exiv2::byte *bytes() const { return static_cast<Exiv2::byte *>(bytes_); }
  std::string_view view() const { return {static_cast<const char *>(bytes_), size_}; }

  void readPart(const ImageInput &input, std::uint64_t place, std::int64_t length) {
    const auto left = static_cast<std::int64_t>(size_ - std::min<std::uint64_t>(place, size_));
    const std::int64_t end = std::min({length, left, budget_});
    budget_ -= end;
    for (std::int64_t got = 1, at = 0; at < end && got > 0; at += got)
      got = readBytes(input, bytes() + place + at, end - at, static_cast<std::int64_t>(place) + at);
  }

 private:
  const std::size_t size_;
  void *const bytes_;
  std::int64_t budget_ = kMaximumReadBytes;
};

/// Reads the directories of a TIFF file and what their entries point at, but for the pixels.
class DirectoryReading {
 public:
  DirectoryReading(const ImageInput &input, SparseContent &content) : input_(input), content_(content) {
    content.readPart(input, 0, 16);
    order_ = content.view().starts_with("II") ? ByteOrder::little : ByteOrder::big;
    for (std::uint32_t next = numberAt(content.view(), 4, 4, order_); next != 0;) next = readDirectory(next);
  }

 private:
  /// Answers where the next one stands; 0 when there is none.
  std::uint32_t readDirectory(std::uint32_t place) {
    if (++directories_ > kMaximumDirectories) return 0;
    content_.readPart(input_, place, 2 + kMaximumEntries * 12 + 4);
    const std::string_view bytes = content_.view();
    const std::uint32_t count = std::min(numberAt(bytes, place, 2, order_), kMaximumEntries);
    for (std::size_t entry = std::size_t{place} + 2, i = 0; i < count; ++i, entry += 12) {
      const std::uint32_t tag = numberAt(bytes, entry, 2, order_);
      const std::uint32_t values = numberAt(bytes, entry + 8, 4, order_);
      // No type has more than eight bytes.
      content_.readPart(
          input_, values,
          std::min<std::int64_t>(std::int64_t{numberAt(bytes, entry + 4, 4, order_)} * 8, kMaximumPartBytes));
      if (tag == ExifDirectory || tag == GPSDirectory || tag == SubIFDs) readDirectory(values);
    }
    return numberAt(bytes, std::size_t{place} + 2 + std::size_t{count} * 12, 4, order_);
  }

  const ImageInput &input_;
  SparseContent &content_;
  ByteOrder order_ = ByteOrder::little;
  int directories_ = 0;
};

/// A file that is read where Exiv2 would map it, and that ends where it ended when it was opened: who cuts a
/// mapped file short, or makes it longer while it is looked at, ends the process.
class UnmappedFile final : public Exiv2::FileIo {
 public:
  /// Goes through the descriptor, so that it is the same file whatever has its name now.
  explicit UnmappedFile(const ImageInput &input)
      : FileIo("/proc/self/fd/" + std::to_string(input.descriptor)), input_(input) {}

  std::size_t size() const override { return input_.fileSize; }
  Exiv2::byte *mmap(bool) override {
    const std::string start = firstBytes(input_, 4);
    const bool isTIFF = start == std::string_view("II*\0", 4) || start == std::string_view("MM\0*", 4);
    if (!isTIFF && size() > std::size_t{kMaximumReadBytes}) throw TooLargeToRead();
    content_ = std::make_unique<SparseContent>(size());
    if (isTIFF && size() > std::size_t{kMaximumReadBytes})
      DirectoryReading(input_, *content_);
    else
      content_->readPart(input_, 0, static_cast<std::int64_t>(size()));
    return content_->bytes();
  }
  int munmap() override {
    content_.reset();
    return 0;
  }

 private:
  const ImageInput input_;
  std::unique_ptr<SparseContent> content_;
};

}  // namespace

Exiv2::Image::AutoPtr openWithExiv2(const ImageInput &input) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  Exiv2::enableBMFF();
  if (input.descriptor < 0)
    return Exiv2::ImageFactory::open(input.data.bytes(), static_cast<long>(input.data.length()));
  return Exiv2::ImageFactory::open(Exiv2::BasicIo::AutoPtr(new UnmappedFile(input)));
}

}  // namespace nimbo::detail
