// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <exception>
#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Why a file or a document gives no answer, or not a whole one. These are the codes of `NimboErrorDomain`.
/// Their numbers cross named connections and stand in MDImporter.h, so they never change; new ones come at the
/// end, and who meets one that is unknown takes it for `other`.
enum class ErrorCode : std::int64_t {
  none = 0,             ///< There is no error.
  other = 1,            ///< The reason has no code of its own.
  noSuchFile = 2,       ///< Nothing has this name.
  unreadable = 3,       ///< The file may not be read, is a folder or no regular file, or its disk fails.
  tooLarge = 4,         ///< The content goes beyond a limit of size.
  unsupportedType = 5,  ///< Nothing here reads content of this kind.
  damaged = 6,          ///< The content is not what its kind asks for.
  locked = 7,           ///< The content needs a password.
  timeLimit = 8,        ///< The work took too long.
  memoryLimit = 9,      ///< The work needed too much memory.
  incomplete = 10,      ///< The content is empty, or a part of it or of the answer is left out.
};

/// The domain of the errors of this system's own functions.
inline NSString NimboErrorDomain() {
  return u"NimboErrorDomain"_ns;
}

/// The domain of errors of loading a URL.
inline NSString NSURLErrorDomain() {
  return u"NSURLErrorDomain"_ns;
}

/// What went wrong: a number for programs, the domain that gives it its meaning, and a reason for people. A
/// default-made one is nil. Functions that can fail take a pointer to one as their last parameter, which may be
/// null, and set it when they answer nil, or when their answer is not whole; else they leave it alone:
///
///     NSError error;
///     const NSData data = NSData::dataWithContentsOfFile(path, &error);
///     if (!data) tell(error.localizedFailureReason);
///     if (error.errorCode() == ErrorCode::noSuchFile) forget(path);
///
/// It may be copied and read from any thread; one is changed by one.
struct NSError {
  /// What gives the code its meaning; nil when there is no error.
  NSString domain;
  /// The number for programs.
  std::int64_t code = 0;
  /// One line, a clause that reads well behind the name of the file: "the file is empty". Nil when there is
  /// none.
  NSString localizedFailureReason = {};

  /// An error of `NimboErrorDomain`; the reason is UTF-8.
  static NSError errorWithCode(ErrorCode code, std::string_view reason);
  /// What the system's error number says about a file.
  static NSError errorWithFileErrno(int number);
  /// What the system's error number says about a file that was to be made, changed, moved or removed.
  static NSError errorWithFileWritingErrno(int number);
  /// `memoryLimit` for std::bad_alloc, else `other` with what the exception says.
  static NSError errorWithException(const std::exception &exception);

  /// The code as one of `NimboErrorDomain`: `none` when nil, `other` when the domain is another one than
  /// `NimboErrorDomain`.
  ErrorCode errorCode() const noexcept;

  /// Whether there is an error.
  explicit operator bool() const noexcept { return static_cast<bool>(domain); }
  /// Whether domain, code and reason are equal.
  friend bool operator==(const NSError &, const NSError &) = default;
};

/// Sets `*error` unless the pointer is null; the reason is UTF-8.
void setError(NSError *error, ErrorCode code, std::string_view reason);

/// Codes of `NSURLErrorDomain`.
enum : std::int64_t {
  NSURLErrorTimedOut = -1001,
  NSURLErrorNetworkConnectionLost = -1005,
  NSURLErrorHTTPTooManyRedirects = -1007,
  NSURLErrorNotConnectedToInternet = -1009,
  NSURLErrorRedirectToNonExistentLocation = -1010,
  NSURLErrorBadServerResponse = -1011,
  NSURLErrorUserCancelledAuthentication = -1012,
  NSURLErrorUserAuthenticationRequired = -1013,
  NSURLErrorZeroByteResource = -1014,
  NSURLErrorFileDoesNotExist = -1100,
  NSURLErrorNoPermissionsToReadFile = -1102,
};

}  // namespace nimbo
