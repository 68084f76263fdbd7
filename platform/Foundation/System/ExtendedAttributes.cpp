// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ExtendedAttributes.hpp"

#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>

namespace nimbo {
namespace {

/// What `read(buffer, size)` gives, which tells the size when it is asked with none. Nothing on failure; errno
/// says why.
template <class Read>
std::optional<std::string> contents(Read read) {
  for (;;) {
    const ssize_t size = read(nullptr, 0);
    if (size < 0) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const ssize_t got = size == 0 ? 0 : read(bytes.data(), bytes.size());
    if (got >= 0) {
      bytes.resize(static_cast<std::size_t>(got));
      return bytes;
    }
    // Another process has set a longer one in between.
    if (errno != ERANGE) return std::nullopt;
  }
}

std::optional<std::string> list(const std::string &path, bool traverseLink) {
  return contents([&](char *buffer, std::size_t size) {
    return traverseLink ? ::listxattr(path.c_str(), buffer, size) : ::llistxattr(path.c_str(), buffer, size);
  });
}

std::optional<std::string> value(const std::string &path, const char *name, bool traverseLink) {
  return contents([&](char *buffer, std::size_t size) {
    return traverseLink ? ::getxattr(path.c_str(), name, buffer, size)
                        : ::lgetxattr(path.c_str(), name, buffer, size);
  });
}

/// Calls `action` with each name of a list, in which a null byte ends a name.
template <class Action>
void forEachName(std::string_view names, Action action) {
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find('\0'));
    action(name);
    names.remove_prefix(std::min(name.size() + 1, names.size()));
  }
}

void setErrno(NSError *error, int number) {
  switch (number) {
    case ENODATA:
      return setError(error, ErrorCode::noSuchFile, "the file has no such attribute");
    case EOPNOTSUPP:
      return setError(error, ErrorCode::unsupportedType, "the file system keeps no such attributes");
    case ENOSPC:
    case EDQUOT:
    case E2BIG:
    case ERANGE:
      return setError(error, ErrorCode::tooLarge, "the file system has no room for the attribute");
    case EACCES:
    case EPERM:
      return setError(error, ErrorCode::unreadable, "the attribute cannot be reached: permission denied");
    case ENOENT:
    case ENOTDIR:
      return setError(error, ErrorCode::noSuchFile, "there is no such file");
    default:
      return setError(error, ErrorCode::unreadable,
                      "the attribute cannot be reached: " + std::generic_category().message(number));
  }
}

}  // namespace

std::optional<std::vector<NSString>> extendedAttributeNames(const NSString &path, Flag traverseLink,
                                                            NSError *error) {
  const auto file = path.fileSystemRepresentation();
  const auto bytes = file ? list(*file, traverseLink) : std::nullopt;
  if (!bytes) {
    setErrno(error, file ? errno : ENOENT);
    return std::nullopt;
  }
  std::vector<NSString> names;
  forEachName(*bytes, [&](std::string_view name) {
    names.push_back(NSString::stringWithFileSystemRepresentation(name));
  });
  return names;
}

NSData extendedAttribute(const NSString &path, const NSString &name, Flag traverseLink, NSError *error) {
  const auto file = path.fileSystemRepresentation(), attribute = name.fileSystemRepresentation();
  const auto bytes = file && attribute ? value(*file, attribute->c_str(), traverseLink) : std::nullopt;
  if (bytes) return NSData::dataWithBytes(bytes->data(), bytes->size());
  setErrno(error, !file ? ENOENT : attribute ? errno : ENODATA);
  return NSData();
}

bool setExtendedAttribute(const NSString &path, const NSString &name, const NSData &data, Flag traverseLink,
                          NSError *error) {
  const auto file = path.fileSystemRepresentation(), attribute = name.fileSystemRepresentation();
  if (!file || !attribute) {
    setErrno(error, !file ? ENOENT : EINVAL);
    return false;
  }
  const int status = !data ? (traverseLink ? ::removexattr : ::lremovexattr)(file->c_str(), attribute->c_str())
                     : traverseLink
                         ? ::setxattr(file->c_str(), attribute->c_str(), data.bytes(), data.length(), 0)
                         : ::lsetxattr(file->c_str(), attribute->c_str(), data.bytes(), data.length(), 0);
  if (status == 0 || (!data && errno == ENODATA)) return true;
  setErrno(error, errno);
  return false;
}

bool copyExtendedAttributes(const std::string &path, int descriptor) {
  const auto names = list(path, true);
  if (!names) return errno == EOPNOTSUPP || errno == ENOENT;
  bool isWhole = true;
  forEachName(*names, [&](std::string_view view) {
    // The others say what the file may do, which a new content must not inherit.
    if (!isWhole || (!view.starts_with("user.") && view != "system.posix_acl_access")) return;
    const std::string name(view);
    const auto bytes = value(path, name.c_str(), true);
    isWhole =
        bytes ? ::fsetxattr(descriptor, name.c_str(), bytes->data(), bytes->size(), 0) == 0 : errno == ENODATA;
  });
  return isWhole;
}

}  // namespace nimbo
