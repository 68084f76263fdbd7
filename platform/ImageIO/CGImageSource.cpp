// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageSource.hpp"

#include <utility>

#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo {
namespace {

CGImage imageWithPixels(detail::ImagePixels pixels) {
  return pixels.bytes
             ? CGImage::imageWithPixels(pixels.width, pixels.height, pixels.hasAlpha, std::move(pixels.bytes))
             : CGImage();
}

}  // namespace

struct CGImageSource::Storage {
  FileDescriptor file;
  detail::ImageInput input;
  const detail::ImageEngine *engine = nullptr;
  detail::ImageHeader header;

  CGImage image(const detail::ImageRequest &request, NSError *error) const {
    return imageWithPixels(engine->pixels(input, request, error));
  }
};

CGImageSource::CGImageSource(std::unique_ptr<Storage> storage) : storage_(std::move(storage)) {}

CGImageSource::~CGImageSource() = default;

std::unique_ptr<CGImageSource> CGImageSource::sourceWithStorage(std::unique_ptr<Storage> storage,
                                                                NSError *error) {
  if (storage->input.size() == 0) {
    setError(error, ErrorCode::incomplete, "the file is empty");
    return nullptr;
  }
  storage->engine = detail::imageEngine(error);
  if (!storage->engine) return nullptr;
  storage->header = storage->engine->header(storage->input, error);
  if (!storage->header.type) return nullptr;
  return std::unique_ptr<CGImageSource>(new CGImageSource(std::move(storage)));
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithContentsOfFile(const NSString &path, NSError *error) {
  auto storage = std::make_unique<Storage>();
  storage->file = openRegularFile(path, &storage->input.fileSize, error);
  if (!storage->file) return nullptr;
  storage->input.descriptor = storage->file.get();
  return sourceWithStorage(std::move(storage), error);
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithData(const NSData &data, NSError *error) {
  auto storage = std::make_unique<Storage>();
  storage->input.data = data;
  return sourceWithStorage(std::move(storage), error);
}

std::uint32_t CGImageSource::count() const {
  return storage_->header.count;
}

const NSString &CGImageSource::type() const {
  return storage_->header.type;
}

const NSDictionary &CGImageSource::properties() const {
  return storage_->header.properties;
}

NSDictionary CGImageSource::copyPropertiesAtIndex(std::uint32_t index) const {
  if (index == 0) return properties();
  return index < count() ? storage_->engine->properties(storage_->input, index) : NSDictionary();
}

CGImage CGImageSource::createThumbnailAtIndex(std::uint32_t index, const CGImageThumbnailOptions &options,
                                              NSError *error) const {
  return storage_->image({.index = index,
                          .maxPixelSize = options.maxPixelSize,
                          .withTransform = options.withTransform,
                          .mayBeEmbedded = !options.createFromImageAlways,
                          .mayBeDecoded = options.createFromImageAlways || options.createFromImageIfAbsent,
                          .deadline = options.deadline},
                         error);
}

CGImage CGImageSource::createImageAtIndex(std::uint32_t index, const CGImageOptions &options,
                                          NSError *error) const {
  return storage_->image({.index = index, .withTransform = options.withTransform, .deadline = options.deadline},
                         error);
}

CGImage CGImageSource::createImageAtIndex(std::uint32_t index, std::uint32_t width, std::uint32_t height,
                                          CGInterpolationQuality quality, const CGImageOptions &options,
                                          NSError *error) const {
  if (width == 0 || height == 0 || width > CGImage::kMaximumSide || height > CGImage::kMaximumSide) {
    setError(error, ErrorCode::tooLarge, "no image has that many pixels");
    return {};
  }
  return storage_->image({.index = index,
                          .width = width,
                          .height = height,
                          .quality = quality,
                          .withTransform = options.withTransform,
                          .deadline = options.deadline},
                         error);
}

}  // namespace nimbo
