// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

class NSFileWrapper;

namespace detail {
struct FileWrapperStorage;
}
/// Ends what a file wrapper stands on.
template <>
NIMBO_PUBLIC void destroyShared<detail::FileWrapperStorage>(ReferenceCounted *storage) noexcept;

/// A file, a folder with all in it, or a symbolic link, in memory: an immutable handle, one pointer wide. A
/// default-made one is nil: it tests false and is none of the three.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     const NSFileWrapper picture = NSFileWrapper::regularFileWithContents(bytes, u"photo.png"_ns);
///     const NSFileWrapper folder = NSFileWrapper::directoryWithFileWrappers({picture}, u"Letter.rtfd"_ns);
///     folder.fileWrapperNamed(u"photo.png"_ns).regularFileContents().length();
///     if (!folder.writeToFile(path, false)) NSLog(u"%@ is not written", path);
class NSFileWrapper {
 public:
  /// How deep folders may stand in folders where they are read or written.
  static constexpr std::uint32_t kMaximumDepth = 32;
  /// How many files and folders are read.
  static constexpr std::uint32_t kMaximumFiles = 100'000;
  /// The longest name of a file in bytes of UTF-8, as Linux has it.
  static constexpr std::size_t kMaximumNameBytes = 255;

  NSFileWrapper() noexcept = default;
  /// A file; nil when the contents are.
  static NSFileWrapper regularFileWithContents(NSData contents, NSString preferredFilename = {});
  /// A folder. Each gets a name of its own, as far as possible its preferred one: without "/", U+0000 and
  /// control characters, neither empty, "." nor "..", not longer than a name may be, and not taken by one
  /// before it, in whatever case.
  static NSFileWrapper directoryWithFileWrappers(std::vector<NSFileWrapper> files,
                                                 NSString preferredFilename = {});
  /// A symbolic link; nil when the destination is.
  static NSFileWrapper symbolicLinkWithDestination(NSString destination, NSString preferredFilename = {});
  /// What stands at the path: links in a folder are not followed, but the path itself is. What is neither a
  /// file, a folder nor a link is left out. Nil when it cannot be read or goes beyond the limits; `*error` says
  /// why.
  static NSFileWrapper initWithPath(const NSString &path, NSError *error = nullptr);
  /// A folder out of its serialised form; nil when the data is none, `*error` says why.
  static NSFileWrapper initWithSerializedRepresentation(const NSData &data, NSError *error = nullptr);

  /// Whether it is a file.
  bool isRegularFile() const noexcept;
  /// Whether it is a folder.
  bool isDirectory() const noexcept;
  /// Whether it is a symbolic link.
  bool isSymbolicLink() const noexcept;
  /// The name that it would like to have; nil when it has no wish.
  NSString preferredFilename() const;
  /// The bytes of a file; nil for others.
  NSData regularFileContents() const;
  /// Where a link leads, as it is written; nil for others.
  NSString symbolicLinkDestination() const;
  /// The names and files of a folder, borrowed; none for others.
  const std::vector<std::pair<NSString, NSFileWrapper>> &fileWrappers() const noexcept NIMBO_LIFETIMEBOUND;
  /// The file of that name in a folder; nil when there is none.
  NSFileWrapper fileWrapperNamed(const NSString &name) const;

  /// The serialised form of a folder, that of RTFD data; nil for others, and beyond `NSNotFound` bytes.
  ///
  ///     "rtfd" 0 folder        all numbers 32 bits, the lowest byte first
  ///     folder = 3 n, n times (length name), n lengths of the entries, n entries
  ///     entry  = 1 length bytes | 2 length destination | folder
  ///
  /// The names are UTF-8. The last entry of the outermost folder has the name "." and is a file of attributes:
  /// n, n times (length name), n times (16, seconds since 1970, mode, 0, 0). Readers may do without it. Links
  /// and inner folders are this system's own continuation of the form.
  NSData serializedRepresentation() const;

  /// Writes it to the path. Atomically: under another name beside it, which then takes the place of what was
  /// there; on failure that is as it was. Otherwise: into what is there, file by file, each whole or not at
  /// all. A folder leaves the files of an old folder alone that it has no names for. False when anything cannot
  /// be written; `*error` says why.
  bool writeToFile(const NSString &path, Flag atomically, NSError *error = nullptr) const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether kinds, preferred names and contents are equal; nil equals only nil.
  bool operator==(const NSFileWrapper &other) const;
  /// A hash of the contents, which is kept.
  std::size_t hash() const noexcept;

 private:
  using Storage = detail::FileWrapperStorage;

  explicit NSFileWrapper(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
