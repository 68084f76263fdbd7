// SPDX-License-Identifier: Apache-2.0
#include "tools/FailureReason.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace nimbo {

namespace {

/// A PDF may begin with this much of something else.
constexpr std::size_t kPDFHeaderSearchBytes = 1024;

std::string textOfError(int error) {
  if (error == ENOENT || error == ENOTDIR) return "no such file";
  if (error == EACCES || error == EPERM) return "cannot be read: permission denied";
  return "cannot be read: " + std::generic_category().message(error);
}

}  // namespace

std::string reasonFileIsUnreadable(const std::string &path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return textOfError(errno);
  if (S_ISDIR(status.st_mode)) return "is a folder";
  if (!S_ISREG(status.st_mode)) return "is not a regular file";
  if (::access(path.c_str(), R_OK) != 0) return textOfError(errno);
  return status.st_size == 0 ? "is empty" : "";
}

std::string reasonForNoMetadata(const std::string &path) {
  if (std::string reason = reasonFileIsUnreadable(path); !reason.empty()) return reason;
  const std::string extension = std::filesystem::path(path).extension().string();
  return extension.empty() ? "no importer takes a file of this type"
                           : "no importer takes a file of this type (" + extension + ")";
}

std::string reasonForEmptyMetadata(const std::string &path) {
  const std::string reason = reasonFileIsUnreadable(path);
  return reason.empty() ? "its importer found nothing in it; it may be damaged" : reason;
}

std::string reasonForNoPDF(std::string_view bytes) {
  if (bytes.empty()) return "is empty";
  const bool hasHeader = bytes.substr(0, kPDFHeaderSearchBytes).find("%PDF-") != std::string_view::npos;
  return hasHeader ? "is a damaged PDF" : "is not a PDF";
}

}  // namespace nimbo
