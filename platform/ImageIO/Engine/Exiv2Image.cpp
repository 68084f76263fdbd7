// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/Exiv2Image.hpp"

#include <string>
#include <vector>

namespace nimbo::detail {
namespace {

/// Of formats of which Exiv2 wants the whole file, as TIFF, no larger one is read.
constexpr std::size_t kMaximumReadBytes = std::size_t{256} << 20;

/// A file that is read where Exiv2 would map it, and that ends where it ended when it was opened: who cuts a
/// mapped file short, or makes it longer while it is looked at, ends the process.
class UnmappedFile final : public Exiv2::FileIo {
 public:
  /// Goes through the descriptor, so that it is the same file whatever has its name now.
  explicit UnmappedFile(const ImageInput &input)
      : FileIo("/proc/self/fd/" + std::to_string(input.descriptor)), size_(input.fileSize) {}

  std::size_t size() const override { return size_; }
  Exiv2::byte *mmap(bool) override {
    if (size_ > kMaximumReadBytes) throw TooLargeToRead();
    content_.assign(size_, 0);
    seek(0L, beg);
    read(content_.data(), static_cast<long>(size_));
    return content_.data();
  }
  int munmap() override {
    content_ = {};
    return 0;
  }

 private:
  const std::size_t size_;
  std::vector<Exiv2::byte> content_;
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
