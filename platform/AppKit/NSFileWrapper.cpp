// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/NSFileWrapper.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "platform/AppKit/FileNames.hpp"
#include "platform/AppKit/FileWrapperDisk.hpp"
#include "platform/AppKit/RecordHash.hpp"
#include "platform/AppKit/SerializedFileWrapper.hpp"

namespace nimbo {

struct detail::FileWrapperStorage : ReferenceCounted {
  NSString preferredFilename;
  NSData contents;
  NSString destination;
  std::vector<std::pair<NSString, NSFileWrapper>> files;
  std::size_t hash = 0;
};

template <>
void destroyShared<detail::FileWrapperStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::FileWrapperStorage *>(storage);
}

NSFileWrapper NSFileWrapper::regularFileWithContents(NSData contents, NSString preferredFilename) {
  if (!contents) return {};
  auto storage = makeShared<Storage>();
  storage->hash = combinedRecordHash(contents, preferredFilename);
  storage->contents = std::move(contents);
  storage->preferredFilename = std::move(preferredFilename);
  return NSFileWrapper(std::move(storage));
}

NSFileWrapper NSFileWrapper::directoryWithFileWrappers(std::vector<NSFileWrapper> files,
                                                       NSString preferredFilename) {
  auto storage = makeShared<Storage>();
  storage->hash = recordHash(preferredFilename);
  FileNames names;
  for (NSFileWrapper &file : files) {
    if (!file) continue;
    NSString name = names.take(file.preferredFilename());
    storage->hash = combinedHash(storage->hash, combinedRecordHash(name, file));
    storage->files.emplace_back(std::move(name), std::move(file));
  }
  storage->preferredFilename = std::move(preferredFilename);
  return NSFileWrapper(std::move(storage));
}

NSFileWrapper NSFileWrapper::symbolicLinkWithDestination(NSString destination, NSString preferredFilename) {
  if (!destination) return {};
  auto storage = makeShared<Storage>();
  storage->hash = combinedRecordHash(destination, preferredFilename);
  storage->destination = std::move(destination);
  storage->preferredFilename = std::move(preferredFilename);
  return NSFileWrapper(std::move(storage));
}

NSFileWrapper NSFileWrapper::initWithPath(const NSString &path, NSError *error) {
  return fileWrapperOfPath(path, error);
}

NSFileWrapper NSFileWrapper::initWithSerializedRepresentation(const NSData &data, NSError *error) {
  return folderOfSerializedForm(data, error);
}

bool NSFileWrapper::isRegularFile() const noexcept {
  return storage_ && storage_->contents;
}

bool NSFileWrapper::isDirectory() const noexcept {
  return storage_ && !storage_->contents && !storage_->destination;
}

bool NSFileWrapper::isSymbolicLink() const noexcept {
  return storage_ && storage_->destination;
}

NSString NSFileWrapper::preferredFilename() const {
  return storage_ ? storage_->preferredFilename : NSString();
}

NSData NSFileWrapper::regularFileContents() const {
  return storage_ ? storage_->contents : NSData();
}

NSString NSFileWrapper::symbolicLinkDestination() const {
  return storage_ ? storage_->destination : NSString();
}

const std::vector<std::pair<NSString, NSFileWrapper>> &NSFileWrapper::fileWrappers() const noexcept {
  static const std::vector<std::pair<NSString, NSFileWrapper>> kNone;
  return storage_ ? storage_->files : kNone;
}

NSFileWrapper NSFileWrapper::fileWrapperNamed(const NSString &name) const {
  const auto &files = fileWrappers();
  const auto found =
      std::find_if(files.begin(), files.end(), [&](const auto &file) { return file.first == name; });
  return found == files.end() ? NSFileWrapper() : found->second;
}

NSData NSFileWrapper::serializedRepresentation() const {
  return isDirectory() ? serializedFolder(*this) : NSData();
}

bool NSFileWrapper::writeToFile(const NSString &path, Flag atomically, NSError *error) const {
  if (!storage_ || writeFileWrapper(*this, path, atomically)) return static_cast<bool>(storage_);
  setError(error, ErrorCode::other, "it cannot be written: " + std::generic_category().message(errno));
  return false;
}

bool NSFileWrapper::operator==(const NSFileWrapper &other) const {
  if (storage_ == other.storage_) return true;
  return storage_ && other.storage_ && storage_->hash == other.storage_->hash &&
         storage_->preferredFilename == other.storage_->preferredFilename &&
         storage_->contents == other.storage_->contents &&
         storage_->destination == other.storage_->destination && storage_->files == other.storage_->files;
}

std::size_t NSFileWrapper::hash() const noexcept {
  return storage_ ? storage_->hash : 0;
}

}  // namespace nimbo
