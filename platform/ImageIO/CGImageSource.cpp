// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageSource.hpp"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/ImageIO/ImageInput.hpp"

namespace nimbo {

std::string detail::ImageInput::firstBytes() const {
  if (descriptor < 0) return std::string(data.view().substr(0, kFirstBytesLength));
  std::string bytes(kFirstBytesLength, '\0');
  const ssize_t got = ::pread(descriptor, bytes.data(), bytes.size(), 0);
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  return bytes;
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithInput(const detail::ImageInput &input, NSError *error) {
  if (input.fileSize == 0 && input.data.length() == 0) {
    setError(error, ErrorCode::incomplete, "the file is empty");
    return nullptr;
  }
  detail::ImageHeader header = detail::readHeaderWithVips(input);
  if (!header.isKnown) header = detail::readHeaderOfBMP(input);
  NSError metadataError = detail::addMetadataWithExiv2(input, header);
  if (!header.type) {
    if (header.isKnown)
      setError(error, ErrorCode::damaged, "the image is damaged");
    else
      setError(error, ErrorCode::unsupportedType, "the file is no image of a known kind");
    return nullptr;
  }
  if (error && metadataError) *error = std::move(metadataError);
  std::unique_ptr<CGImageSource> source(new CGImageSource);
  source->count_ = header.count;
  source->type_ = std::move(header.type);
  source->properties_ = std::move(header.properties);
  return source;
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithContentsOfFile(const NSString &path, NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, error);
  return file ? sourceWithInput({file.get(), size, NSData()}, error) : nullptr;
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithData(const NSData &data, NSError *error) {
  return sourceWithInput({-1, 0, data}, error);
}

}  // namespace nimbo
