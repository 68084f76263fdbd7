// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/BundleLibrary.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <map>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/TrustedFiles.hpp"

namespace nimbo {
namespace {

/// A path to the open folder that never comes to mean another one: to the dynamic linker a name that it met
/// once is the same library or folder for ever. Empty when the folder's disk fails.
std::string lastingPath(FileDescriptor folder) {
  static std::map<std::pair<dev_t, ino_t>, FileDescriptor> kept;
  static std::mutex mutex;
  struct stat info = {};
  if (::fstat(folder.get(), &info) != 0) return std::string();
  const std::scoped_lock lock(mutex);
  const auto [entry, isNew] = kept.try_emplace({info.st_dev, info.st_ino}, std::move(folder));
  return pathOfDescriptor(entry->second.get());
}

bool isSameTime(const timespec &one, const timespec &other) {
  return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

/// Whether the file lacks what its segments are to be mapped from, which would end the process that reads them.
/// A file of another kind lacks nothing.
bool isCutShort(int file) {
  const FileDescriptor open(::open(pathOfDescriptor(file).c_str(), O_RDONLY | O_CLOEXEC));
  struct stat info = {};
  ElfW(Ehdr) header = {};
  if (!open || ::fstat(open.get(), &info) != 0) return false;
  if (::pread(open.get(), &header, sizeof header, 0) != sizeof header ||
      std::string_view(reinterpret_cast<const char *>(header.e_ident), SELFMAG) != ELFMAG ||
      header.e_phentsize != sizeof(ElfW(Phdr)))
    return false;
  std::vector<ElfW(Phdr)> segments(header.e_phnum);
  const std::size_t size = segments.size() * sizeof(ElfW(Phdr));
  if (::pread(open.get(), segments.data(), size, static_cast<off_t>(header.e_phoff)) !=
      static_cast<ssize_t>(size))
    return true;
  const auto end = static_cast<std::uint64_t>(info.st_size);
  return std::ranges::any_of(segments, [end](const auto &segment) {
    return segment.p_type == PT_LOAD && (segment.p_offset > end || segment.p_filesz > end - segment.p_offset);
  });
}

/// What the information file holds that is open, read again only when it has changed. Nil when it cannot be
/// read; `*error` says why.
NSDictionary information(int file, NSError *error) {
  /// What was read, and of what state of the file.
  struct Reading {
    struct stat state;
    NSDictionary info;
  };
  static std::map<std::pair<dev_t, ino_t>, Reading> readings;
  static std::mutex mutex;
  // Whoever writes a file twice within a tick of the clock leaves no trace of the second time.
  constexpr time_t kSettledSeconds = 2;

  struct stat state = {};
  const bool isSettled = ::fstat(file, &state) == 0 &&
                         ::time(nullptr) - std::max(state.st_ctime, state.st_mtime) > kSettledSeconds;
  const std::pair place(state.st_dev, state.st_ino);
  if (isSettled) {
    const std::scoped_lock lock(mutex);
    const auto known = readings.find(place);
    if (known != readings.end() && isSameTime(known->second.state.st_ctim, state.st_ctim) &&
        isSameTime(known->second.state.st_mtim, state.st_mtim) && known->second.state.st_size == state.st_size)
      return known->second.info;
  }
  NSDictionary info = NSBundle::infoDictionaryOfFile(
      NSString::stringWithFileSystemRepresentation(pathOfDescriptor(file)), error);
  if (info && isSettled) {
    const std::scoped_lock lock(mutex);
    readings.insert_or_assign(place, Reading{state, info});
  }
  return info;
}

/// The library in the bundle's folder of libraries; null, with `*error`, when it cannot be loaded.
void *openLibrary(const NSString &bundlePath, FileDescriptor folder, const std::string &name, NSError *error) {
  // By its name in a folder that nobody else can change, as its dependencies may be named relative to that.
  const std::string path = lastingPath(std::move(folder));
  void *library =
      path.empty() ? nullptr : ::dlopen((path + "/" + name).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library) return library;
  const char *message = ::dlerror();
  std::string reason = message ? message : "its library cannot be loaded";
  if (reason.starts_with(path + "/"))
    reason.replace(0, path.size(),
                   stringByAppendingPathComponent(bundlePath, u"Contents/Linux"_ns).UTF8String());
  setError(error, ErrorCode::damaged, reason);
  return nullptr;
}

/// The library of the bundle after `*info`, its information, was read, and nothing in it is found that must not
/// be trusted; null, with `*error`, when it cannot be loaded.
void *loadLibrary(const NSString &bundlePath, NSDictionary *info, NSError *error) {
  // The path loses the slashes at its end, with which a symbolic link would be followed.
  const auto path = stringByAppendingPathComponent(bundlePath, NSString::string()).fileSystemRepresentation();
  const FileDescriptor bundle = openTrusted(AT_FDCWD, path.value_or(std::string()), S_IFDIR, error);
  if (!bundle || !holderIsTrusted(bundle.get(), error)) return nullptr;
  const FileDescriptor contents = openTrusted(bundle.get(), "Contents", S_IFDIR, error);
  if (!contents) return nullptr;
  const FileDescriptor informationFile = openTrusted(contents.get(), "Info.plist", S_IFREG, error);
  if (!informationFile) return nullptr;
  FileDescriptor libraries = openTrusted(contents.get(), "Linux", S_IFDIR, error);
  if (!libraries) return nullptr;
  *info = information(informationFile.get(), error);
  if (!*info) return nullptr;
  const auto name = NSBundle::executableName(*info).fileSystemRepresentation();
  if (!name) {
    setError(error, ErrorCode::damaged, "its library is not named");
    return nullptr;
  }
  // The dynamic linker takes "$LIB" and the like for other names.
  if (name->find('$') != name->npos) {
    setError(error, ErrorCode::damaged, "its library has a name with '$'");
    return nullptr;
  }
  const FileDescriptor library = openTrusted(libraries.get(), *name, S_IFREG, error);
  if (!library) return nullptr;
  if (isCutShort(library.get())) {
    setError(error, ErrorCode::damaged, "its library is cut short");
    return nullptr;
  }
  return openLibrary(bundlePath, std::move(libraries), *name, error);
}

}  // namespace

std::optional<BundleLibrary> BundleLibrary::load(const NSString &path, NSError *error) {
  NSDictionary info;
  void *library = loadLibrary(path, &info, error);
  return library ? std::optional(BundleLibrary(std::move(info), library)) : std::nullopt;
}

void *BundleLibrary::symbol(const std::string &name) const {
  void *const found = ::dlsym(library_, name.c_str());
  link_map *own = nullptr, *holder = nullptr;
  Dl_info info = {};
  const bool isOwn = found && ::dlinfo(library_, RTLD_DI_LINKMAP, &own) == 0 &&
                     ::dladdr1(found, &info, reinterpret_cast<void **>(&holder), RTLD_DL_LINKMAP) != 0 &&
                     own == holder;
  return isOwn ? found : nullptr;
}

}  // namespace nimbo
