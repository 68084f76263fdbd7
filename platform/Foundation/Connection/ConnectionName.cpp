// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionName.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <thread>

#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {
namespace {

constexpr mode_t kSocketMode = 0600;
constexpr int kListenBacklog = 64;
constexpr auto kLockSuffix = ".lock";
constexpr auto kRecordSuffix = ".record";
constexpr std::chrono::milliseconds kRetryInterval{5};
/// How long to wait for a lock whose owner answers nobody: it is just starting or just ending.
constexpr double kLockWaitSeconds = 1;

/// What a function that fails gives: nothing.
struct Failure {
  operator FileDescriptor() const { return FileDescriptor(); }
  operator ConnectionListener() const { return {}; }
};

Failure failed(NSString *error, const std::string &reason) {
  if (error) *error = NSString::stringWithLossyUTF8String(reason);
  return {};
}

Failure failedCall(NSString *error, const std::string &what) {
  return failed(error, what + ": " + std::strerror(errno));
}

const char *environmentValue(const char *name) {
  const char *value = std::getenv(name);
  return value && *value ? value : nullptr;
}

struct FolderPlace {
  std::string path;
  int flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
};

FolderPlace placeOfConnectionFolder() {
  if (const char *own = environmentValue("QUIVERLEAF_RUNTIME_DIR")) return {own};
  if (const char *session = environmentValue("XDG_RUNTIME_DIR")) return {session};
  const char *temporary = environmentValue("TMPDIR");
  FolderPlace place = {std::string(temporary ? temporary : "/tmp") + "/quiverleaf-" +
                       std::to_string(::geteuid())};
  // Anybody may put a link into the temporary folder.
  place.flags |= O_NOFOLLOW;
  return place;
}

/// The name as a file name; nothing when it cannot be one.
std::optional<std::string> fileNameOfConnection(const NSString &name) {
  auto fileName = name.fileSystemRepresentation();
  if (!fileName || *fileName == "." || *fileName == ".." || fileName->find('/') != std::string::npos)
    return std::nullopt;
  return fileName;
}

/// The address of a socket in a folder. It goes through the folder's descriptor, since an address holds only
/// about a hundred bytes, and so that the folder cannot be exchanged after it was checked.
bool makeAddress(const FileDescriptor &folder, const std::string &fileName, sockaddr_un *address) {
  const std::string path = "/proc/self/fd/" + std::to_string(folder.get()) + "/" + fileName;
  if (path.size() >= sizeof address->sun_path) return false;
  *address = {};
  address->sun_family = AF_UNIX;
  std::memcpy(address->sun_path, path.data(), path.size());
  return true;
}

FileDescriptor makeSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

int connectTo(const FileDescriptor &socket, const sockaddr_un &address) {
  return ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
}

/// Whether a process listens there. One that is too busy to take a connection does; copies of one that has
/// ended do not.
bool isServed(const sockaddr_un &address) {
  const FileDescriptor probe = makeSocket();
  if (!probe) return false;
  if (connectTo(probe, address) != 0) return errno == EAGAIN;
  const int process = peerProcessIdentifier(probe);
  return process == 0 || ::kill(process, 0) == 0 || errno != ESRCH;
}

/// The lock of the whole file for writing.
struct flock wholeLock() {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

FileDescriptor openBesideSocket(const FileDescriptor &folder, const std::string &file) {
  return FileDescriptor(::openat(folder.get(), file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

/// A new file with the record, whatever is in its place. Clients take the lack of one for an older version.
FileDescriptor makeRecord(const FileDescriptor &folder, const std::string &file,
                          const ConnectionRecord &record) {
  if (::unlinkat(folder.get(), file.c_str(), 0) != 0) ::unlinkat(folder.get(), file.c_str(), AT_REMOVEDIR);
  FileDescriptor made = openBesideSocket(folder, file);
  writeConnectionRecord(made, record);
  return made;
}

/// What is in the socket's place; nothing when that is empty or cannot be seen.
std::optional<struct stat> fileInPlace(const FileDescriptor &folder, const std::string &fileName) {
  struct stat info = {};
  if (!folder || ::fstatat(folder.get(), fileName.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0)
    return std::nullopt;
  return info;
}

bool isInPlace(const ConnectionListener &listener, const FileDescriptor &folder, const std::string &fileName) {
  const auto info = fileInPlace(folder, fileName);
  return info && info->st_dev == listener.device && info->st_ino == listener.number;
}

/// Takes the lock of a name, unless a living process has it. It is the process's own: no copy of it has the
/// lock, but it is lost as soon as any descriptor of the file is closed. Who listens keeps the name then.
bool takeLock(const FileDescriptor &lock, const sockaddr_un &address) {
  const Deadline deadline = Deadline::after(kLockWaitSeconds);
  struct flock whole = wholeLock();
  while (::fcntl(lock.get(), F_SETLK, &whole) != 0) {
    if (errno == EINTR) continue;
    if ((errno != EAGAIN && errno != EACCES) || isServed(address) || deadline.isOver()) return false;
    std::this_thread::sleep_for(kRetryInterval);
  }
  return true;
}

}  // namespace

FileDescriptor openConnectionFolder(NSString *error) {
  const FolderPlace place = placeOfConnectionFolder();
  if (place.path.front() == '/' && ::mkdir(place.path.c_str(), 0700) != 0 && errno != EEXIST)
    return failedCall(error, "Cannot make the runtime folder " + place.path);
  return openExistingConnectionFolder(error);
}

FileDescriptor openExistingConnectionFolder(NSString *error) {
  const auto &[path, flags] = placeOfConnectionFolder();
  if (path.front() != '/') return failed(error, "The runtime folder " + path + " is a relative path");
  FileDescriptor folder(::open(path.c_str(), flags));
  struct stat info = {};
  if (!folder || ::fstat(folder.get(), &info) != 0)
    return failedCall(error, "Cannot open the runtime folder " + path);
  if (info.st_uid != ::geteuid() || (info.st_mode & (S_IWGRP | S_IWOTH)))
    return failed(error, "The runtime folder " + path + " belongs to another user, or others may write to it");
  return folder;
}

ConnectionListener listenOnConnectionName(const NSString &name, const ConnectionRecord &record,
                                          NSString *error) {
  const FileDescriptor folder = openConnectionFolder(error);
  if (!folder) return {};
  const auto fileName = fileNameOfConnection(name);
  sockaddr_un address;
  if (!fileName || !makeAddress(folder, *fileName, &address))
    return failed(error, "The name cannot be the name of a socket");
  ConnectionListener listener;
  listener.lock = openBesideSocket(folder, *fileName + kLockSuffix);
  if (!listener.lock) return failedCall(error, "Cannot open the lock of the name");
  // The lock file may have been removed by somebody while its owner lives: who listens keeps the name in any
  // case.
  if (!takeLock(listener.lock, address) || isServed(address))
    return failed(error, "Another process serves the name");

  if (const auto stale = fileInPlace(folder, *fileName)) {
    if (!S_ISSOCK(stale->st_mode)) return failed(error, "A file that is no socket has the name");
    if (::unlinkat(folder.get(), fileName->c_str(), 0) != 0)
      return failedCall(error, "Cannot remove the stale socket");
  }
  listener.record = makeRecord(folder, *fileName + kRecordSuffix, record);
  FileDescriptor socket = makeSocket();
  // The socket's file is made with the mode that the socket has: at no moment do clients see another.
  if (!socket || ::fchmod(socket.get(), kSocketMode) != 0 ||
      ::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
      ::listen(socket.get(), kListenBacklog) != 0)
    return failedCall(error, "Cannot listen under the name");
  const auto info = fileInPlace(folder, *fileName);
  if (!info) return failedCall(error, "Cannot see the socket of the name");
  listener.device = info->st_dev;
  listener.number = info->st_ino;
  listener.socket = std::move(socket);
  return listener;
}

bool isOccupied(const NSString &name) {
  const auto fileName = fileNameOfConnection(name);
  const auto info = fileName ? fileInPlace(openExistingConnectionFolder(), *fileName) : std::nullopt;
  return info && !S_ISSOCK(info->st_mode);
}

bool isReachable(const ConnectionListener &listener, const NSString &name) {
  const auto fileName = fileNameOfConnection(name);
  return fileName && isInPlace(listener, openExistingConnectionFolder(), *fileName);
}

void removeSocket(const ConnectionListener &listener, const NSString &name) {
  const FileDescriptor folder = openExistingConnectionFolder();
  const auto fileName = fileNameOfConnection(name);
  if (fileName && isInPlace(listener, folder, *fileName)) ::unlinkat(folder.get(), fileName->c_str(), 0);
}

void writeRecord(ConnectionListener *listener, const NSString &name, const ConnectionRecord &record) {
  struct stat info = {};
  if (listener->record && ::fstat(listener->record.get(), &info) == 0 && info.st_nlink > 0)
    return writeConnectionRecord(listener->record, record);
  const FileDescriptor folder = openExistingConnectionFolder();
  const auto fileName = fileNameOfConnection(name);
  if (folder && fileName) listener->record = makeRecord(folder, *fileName + kRecordSuffix, record);
}

bool isLocked(const NSString &name) {
  const FileDescriptor folder = openExistingConnectionFolder();
  const auto fileName = fileNameOfConnection(name);
  if (!folder || !fileName) return false;
  const FileDescriptor lock(::openat(folder.get(), (*fileName + kLockSuffix).c_str(),
                                     O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
  // Asked as for another owner, so that a process sees its own lock, too.
  struct flock whole = wholeLock();
  return lock && ::fcntl(lock.get(), F_OFD_GETLK, &whole) == 0 && whole.l_type != F_UNLCK;
}

bool isRecordMissing(const NSString &name) {
  const FileDescriptor folder = openExistingConnectionFolder();
  const auto fileName = fileNameOfConnection(name);
  return fileName && !fileInPlace(folder, *fileName + kRecordSuffix);
}

FileDescriptor openConnectionRecord(const NSString &name) {
  const FileDescriptor folder = openExistingConnectionFolder();
  const auto fileName = fileNameOfConnection(name);
  if (!folder || !fileName) return FileDescriptor();
  return FileDescriptor(::openat(folder.get(), (*fileName + kRecordSuffix).c_str(),
                                 O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
}

FileDescriptor connectToConnectionName(const NSString &name, double timeoutSeconds, bool *isBusy) {
  if (isBusy) *isBusy = false;
  const FileDescriptor folder = openExistingConnectionFolder();
  const auto fileName = fileNameOfConnection(name);
  sockaddr_un address;
  if (!folder || !fileName || !makeAddress(folder, *fileName, &address)) return FileDescriptor();
  const auto info = fileInPlace(folder, *fileName);
  if (!info || !S_ISSOCK(info->st_mode) || info->st_uid != ::geteuid() ||
      (info->st_mode & 07777) != kSocketMode)
    return FileDescriptor();

  FileDescriptor socket = makeSocket();
  if (!socket) return FileDescriptor();
  const Deadline deadline = Deadline::after(timeoutSeconds);
  while (connectTo(socket, address) != 0) {
    if (errno == EINTR) continue;
    if (errno != EAGAIN) return FileDescriptor();
    if (deadline.isOver()) {
      if (isBusy) *isBusy = true;
      return FileDescriptor();
    }
    std::this_thread::sleep_for(kRetryInterval);
  }
  return peerProcessIdentifier(socket) != 0 ? std::move(socket) : FileDescriptor();
}

int peerProcessIdentifier(const FileDescriptor &socket) {
  ucred peer = {};
  socklen_t length = sizeof peer;
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0 || peer.uid != ::geteuid())
    return 0;
  return peer.pid;
}

}  // namespace nimbo
