// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSError.hpp"

#include <cerrno>
#include <new>
#include <string>
#include <system_error>

#include "platform/Foundation/NSException.hpp"

namespace nimbo {

NSError NSError::errorWithCode(ErrorCode code, std::string_view reason) {
  return {NimboErrorDomain(), static_cast<std::int64_t>(code), NSString::stringWithLossyUTF8String(reason)};
}

NSError NSError::errorWithFileErrno(int number) {
  const std::string reason = std::generic_category().message(number);
  switch (number) {
    case ENOENT:
    case ENOTDIR:
      return errorWithCode(ErrorCode::noSuchFile, "there is no such file");
    case EACCES:
    case EPERM:
      return errorWithCode(ErrorCode::unreadable, "the file cannot be read: permission denied");
    case EISDIR:
      return errorWithCode(ErrorCode::unreadable, "the file is a folder");
    case EFBIG:
    case EOVERFLOW:
      return errorWithCode(ErrorCode::tooLarge, "the file is too large");
    case ENOMEM:
      return errorWithCode(ErrorCode::memoryLimit, "there is no memory to read the file");
    case EMFILE:
    case ENFILE:
      return errorWithCode(ErrorCode::other, "the file cannot be opened: " + reason);
    default:
      return errorWithCode(ErrorCode::unreadable, "the file cannot be read: " + reason);
  }
}

NSError NSError::errorWithFileWritingErrno(int number) {
  switch (number) {
    case ENOENT:
    case ENOTDIR:
      return errorWithCode(ErrorCode::noSuchFile, "there is no such file or folder");
    case EEXIST:
    case ENOTEMPTY:
      return errorWithCode(ErrorCode::other, "there is something of that name already");
    case EACCES:
    case EPERM:
      return errorWithCode(ErrorCode::other, "the file cannot be changed: permission denied");
    case EROFS:
      return errorWithCode(ErrorCode::other, "the disk can only be read");
    case ENOSPC:
    case EDQUOT:
      return errorWithCode(ErrorCode::other, "the disk is full");
    case EFBIG:
      return errorWithCode(ErrorCode::tooLarge, "the file is too large");
    case ENAMETOOLONG:
      return errorWithCode(ErrorCode::other, "the name is too long");
    case EOPNOTSUPP:
      return errorWithCode(ErrorCode::other, "the disk there keeps no extended attributes");
    default:
      return errorWithCode(ErrorCode::other,
                           "the file cannot be changed: " + std::generic_category().message(number));
  }
}

NSError NSError::errorWithException(const std::exception &exception) {
  if (dynamic_cast<const std::bad_alloc *>(&exception))
    return errorWithCode(ErrorCode::memoryLimit, "there is not enough memory");
  if (const auto *raised = dynamic_cast<const NSException *>(&exception))
    return {NimboErrorDomain(), static_cast<std::int64_t>(ErrorCode::other), raised->reason()};
  return errorWithCode(ErrorCode::other, exception.what());
}

ErrorCode NSError::errorCode() const noexcept {
  if (!*this) return ErrorCode::none;
  return domain == NimboErrorDomain() ? static_cast<ErrorCode>(code) : ErrorCode::other;
}

void setError(NSError *error, ErrorCode code, std::string_view reason) {
  if (error) *error = NSError::errorWithCode(code, reason);
}

}  // namespace nimbo
