// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Names.hpp"

#include <fcntl.h>

#include <cerrno>
#include <optional>
#include <string>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ItemStatus.hpp"
#include "Classes/Paths/NSMutableString+NSStringNimboPathExtensions.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kNewFolderMode = 0777;

/// The names that a path may come to, in their order.
class Candidates {
 public:
  explicit Candidates(const NSString &path)
      : path_(path),
        folder_(stringByDeletingLastPathComponent(path)),
        name_(lastPathComponent(path)),
        base_(stringByDeletingPathExtension(name_)),
        extension_(pathExtension(name_)) {}

  NSString next() {
    if (counter_++ == 0) return path_;
    const NSString suffix = stringWithFormat(u"-%d", counter_ - 1);
    const bool hasExtension = extension_.length() > 0;
    const NSString tail = hasExtension ? stringWithFormat(u"%@.%@", suffix, extension_) : suffix;
    if (const auto name = nameWith(base_, tail)) return pathOf(*name);
    // The extension leaves no room: it is a part of the name.
    return pathOf(nameWith(name_, suffix).value_or(NSString()));
  }

 private:
  NSString pathOf(const NSString &name) const { return stringByAppendingPathComponent(folder_, name); }

  static std::size_t bytesOf(const NSString &name) {
    return name.fileSystemRepresentation().value_or("").size();
  }

  /// The base, cut where it has to be, and what follows it. Nothing when that leaves no room for a base.
  static std::optional<NSString> nameWith(const NSString &base, const NSString &tail) {
    NSMutableString name(base);
    const std::size_t tailBytes = bytesOf(tail);
    if (tailBytes >= kMaximumFileNameBytes) return std::nullopt;
    if (bytesOf(base) + tailBytes > kMaximumFileNameBytes)
      createFileSystemRepresentationWithinBytes(name,
                                                kMaximumFileNameBytes - static_cast<std::uint32_t>(tailBytes));
    if (name.length() == 0) return std::nullopt;
    name.appendString(tail);
    return std::move(name).string();
  }

  const NSString path_, folder_, name_, base_, extension_;
  std::uint64_t counter_ = 0;
};

bool make(const std::string &path, ClaimedItem item) {
  if (item == ClaimedItem::folder) return ::mkdir(path.c_str(), kNewFolderMode) == 0;
  return static_cast<bool>(
      FileDescriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode)));
}

}  // namespace

NSString nonExistingFilenameAtPath(const NSString &path) {
  Candidates candidates(path);
  for (;;)
    if (NSString candidate = candidates.next(); !statusOfItem(candidate)) return candidate;
}

NSString claimNonExistingFilenameAtPath(const NSString &path, ClaimedItem item, NSError *error) {
  Candidates candidates(path);
  for (;;) {
    NSString candidate = candidates.next();
    const auto name = candidate.fileSystemRepresentation();
    if (name && make(*name, item)) return candidate;
    if (name && errno == EEXIST) continue;
    if (error) *error = NSError::errorWithFileWritingErrno(name ? errno : ENOENT);
    return NSString();
  }
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
