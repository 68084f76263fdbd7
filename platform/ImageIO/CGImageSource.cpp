// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageSource.hpp"

#include <sys/stat.h>

#include <fstream>
#include <utility>

#include "platform/ImageIO/ImageInput.hpp"

namespace nimbo {
namespace {

bool isRegularFile(const std::string &name) {
  struct stat info = {};
  return ::stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0;
}

}  // namespace

std::string detail::ImageInput::firstBytes() const {
  if (fileName.empty()) return std::string(data.view().substr(0, kFirstBytesLength));
  std::string bytes(kFirstBytesLength, '\0');
  std::ifstream file(fileName, std::ios::binary);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithInput(const detail::ImageInput &input) {
  detail::ImageHeader header = detail::readHeaderWithVips(input);
  if (!header.type) header = detail::readHeaderOfBMP(input);
  detail::addMetadataWithExiv2(input, header);
  if (!header.type) return nullptr;
  std::unique_ptr<CGImageSource> source(new CGImageSource);
  source->count_ = header.count;
  source->type_ = std::move(header.type);
  source->properties_ = std::move(header.properties);
  return source;
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithContentsOfFile(const NSString &path) {
  auto name = path.fileSystemRepresentation();
  if (!name || !isRegularFile(*name)) return nullptr;
  // The libraries take some names for something else than a file, but none that begins with a folder.
  if (!name->starts_with('/')) name->insert(0, "./");
  return sourceWithInput({*std::move(name), NSData()});
}

std::unique_ptr<CGImageSource> CGImageSource::sourceWithData(const NSData &data) {
  if (data.length() == 0) return nullptr;
  return sourceWithInput({std::string(), data});
}

}  // namespace nimbo
