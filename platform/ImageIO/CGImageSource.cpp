// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageSource.hpp"

#include <sys/stat.h>

#include <utility>

#include "platform/ImageIO/ImageInput.hpp"

namespace nimbo {
namespace {

bool isRegularFile(const std::string &name) {
  struct stat info = {};
  return ::stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0;
}

}  // namespace

std::unique_ptr<CGImageSource> CGImageSource::sourceWithInput(const detail::ImageInput &input) {
  detail::ImageHeader header = detail::readHeaderWithVips(input);
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
