// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSUserDefaults.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {
namespace {

NSString standardPath() {
  if (const char *path = std::getenv("QUIVERLEAF_DEFAULTS"); path && path[0])
    return NSString::stringWithFileSystemRepresentation(path);
  const char *configuration = std::getenv("XDG_CONFIG_HOME");
  const NSString folder = configuration && configuration[0] == '/'
                              ? NSString::stringWithFileSystemRepresentation(configuration)
                              : stringByAppendingPathComponent(NSHomeDirectory(), u".config"_ns);
  return stringByAppendingPathComponent(folder, u"quiverleaf/defaults.plist"_ns);
}

/// The dictionary in the file, empty when there is no file or nothing in it. Nil, with `*error`, when the file
/// is anything else; `*format` gets its form.
NSDictionary readEntries(const NSString &path, NSPropertyListFormat *format, NSError *error) {
  NSError failure;
  const NSData data = NSData::dataWithContentsOfFile(path, &failure);
  const bool isEmpty = data && data.length() == 0;
  if (isEmpty || failure.errorCode() == ErrorCode::noSuchFile) return NSDictionary::dictionary();
  const id list = data ? NSPropertyListSerialization::propertyListFromData(data, format, &failure) : id();
  if (list && !list.dictionary()) setError(&failure, ErrorCode::damaged, "it is no dictionary");
  if (failure && error) *error = std::move(failure);
  return list.dictionary();
}

void setWritingError(NSError *error) {
  setError(error, ErrorCode::unreadable,
           "the file cannot be written: " + std::generic_category().message(errno));
}

/// Keeps others from writing the file until it is closed. Nothing, with `*error`, when that cannot be had.
FileDescriptor lockFile(const std::filesystem::path &path, NSError *error) {
  constexpr useconds_t kPauseMicroseconds = 5000;
  std::error_code ignored;
  std::filesystem::create_directories(path.parent_path(), ignored);
  // All links to a file have one lock.
  std::filesystem::path file = std::filesystem::weakly_canonical(path, ignored);
  if (ignored) file = path;
  const std::string name = file.parent_path() / ("." + file.filename().native() + ".lock");
  FileDescriptor lock(::open(name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
  const Deadline deadline = Deadline::after(NSUserDefaults::kLockSeconds);
  while (!lock || ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    if (!lock || (errno != EWOULDBLOCK && errno != EINTR)) {
      setWritingError(error);
      return FileDescriptor();
    }
    if (deadline.isOver()) {
      setError(error, ErrorCode::timeLimit, "another process keeps the file locked");
      return FileDescriptor();
    }
    ::usleep(kPauseMicroseconds);
  }
  return lock;
}

/// Makes the changes in the file. What stands in it then; nil, with `*error`, when that fails.
NSDictionary writeChanges(const NSString &path, const NSDictionary &changes, NSError *error) {
  const auto name = path.fileSystemRepresentation();
  if (!name) {
    setError(error, ErrorCode::noSuchFile, "there is no folder for it");
    return NSDictionary();
  }
  const FileDescriptor lock = lockFile(*name, error);
  if (!lock) return NSDictionary();
  auto format = NSPropertyListFormat::xml;
  NSDictionary entries = readEntries(path, &format, error);
  if (!entries) return NSDictionary();
  for (const auto &[key, value] : changes) {
    if (value.isNull())
      entries.removeObjectForKey(key);
    else
      entries.setObject(value, key);
  }
  // The text form can only be read.
  if (format == NSPropertyListFormat::openStep) format = NSPropertyListFormat::xml;
  const NSData data = NSPropertyListSerialization::dataWithPropertyList(entries, format, error);
  if (!data) return NSDictionary();
  if (writeDataToFile(data, path, true)) return entries;
  setWritingError(error);
  return NSDictionary();
}

}  // namespace

NSUserDefaults::NSUserDefaults(const NSString &path) : path_(path) {
  NSError error;
  values_ = readEntries(path, nullptr, &error);
  if (!values_) NSLog(u"The user defaults are not used, %@: %@", path, error.localizedFailureReason);
}

NSUserDefaults &NSUserDefaults::standardUserDefaults() {
  static NSUserDefaults defaults(standardPath());
  return defaults;
}

void NSUserDefaults::registerDefaults(const NSDictionary &defaults) {
  const std::scoped_lock lock(mutex_);
  registered_.addEntriesFromDictionary(defaults);
}

id NSUserDefaults::objectForKey(const NSString &key) const {
  const std::scoped_lock lock(mutex_);
  const id &change = changes_.objectForKey(key);
  if (change && !change.isNull()) return change;
  const id &value = change ? change : values_.objectForKey(key);
  return value && !value.isNull() ? value : registered_.objectForKey(key);
}

std::optional<std::vector<NSString>> NSUserDefaults::stringArrayForKey(const NSString &key) const {
  const NSArray array = objectForKey(key).array();
  if (!array) return std::nullopt;
  std::vector<NSString> strings;
  for (const id &element : array) {
    strings.push_back(element.string());
    if (!strings.back()) return std::nullopt;
  }
  return strings;
}

void NSUserDefaults::setObject(id object, const NSString &key) {
  const std::scoped_lock lock(mutex_);
  changes_.setObject(object ? std::move(object) : id(NSNull()), key);
}

void NSUserDefaults::removeObjectForKey(const NSString &key) {
  setObject(NSNull(), key);
}

bool NSUserDefaults::synchronize(NSError *error) {
  const std::scoped_lock one(synchronizing_);
  const NSDictionary changes = [this] {
    const std::scoped_lock lock(mutex_);
    return changes_;
  }();
  NSDictionary entries =
      changes.count() == 0 ? readEntries(path_, nullptr, error) : writeChanges(path_, changes, error);
  if (!entries) return false;
  const std::scoped_lock lock(mutex_);
  values_ = std::move(entries);
  for (const auto &[key, value] : changes)
    if (changes_.objectForKey(key) == value) changes_.removeObjectForKey(key);
  return true;
}

}  // namespace nimbo
