// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>

#include "importers/ImporterPlugIn.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {
namespace {

/// The text of a longer file is that of its beginning.
constexpr std::size_t kMaximumLengthInBytes = std::size_t{16} << 20;

/// The first bytes of a regular file, one more than the limit when there are more; nothing when it cannot be
/// read.
std::optional<std::string> beginOfFile(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  const FileDescriptor file(name ? ::open(name->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
  struct stat info = {};
  if (!file || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  std::string bytes(std::min(static_cast<std::size_t>(info.st_size), kMaximumLengthInBytes) + 1, '\0');
  std::size_t length = 0;
  while (length < bytes.size()) {
    const ssize_t got = ::read(file.get(), bytes.data() + length, bytes.size() - length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    length += static_cast<std::size_t>(got);
  }
  bytes.resize(length);
  return bytes;
}

/// The text of text files of every kind, as it stands in them.
void importText(const NSString &path, Attributes &attributes) {
  auto bytes = beginOfFile(path);
  if (!bytes) return;
  const bool isCut = bytes->size() > kMaximumLengthInBytes;
  if (isCut) bytes->resize(kMaximumLengthInBytes);
  attributes.set("kMDItemTextContent", stringWithDetectedEncoding(*bytes, isCut).string);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *TextImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importText);
}
