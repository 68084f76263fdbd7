// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Calls the helper over its named connection. Starts one when none is registered, gives every call a time
/// limit, and replaces a helper that died or hangs, so that a bad document costs one request. Used from one
/// thread at a time.
class HelperClient {
 public:
  struct Options {
    /// Nil: the name of the helper's contract. A helper program that is started has to register under it.
    NSString name;
    /// For one call: request and reply together.
    double timeoutSeconds = 15.0;
    /// Whether a helper is started when none is registered.
    bool startsHelper = true;
    /// Whether a helper that let a call time out is ended, so that the next call meets a fresh one.
    bool endsHungHelper = true;
    /// The helper program; a relative path counts from the working directory in which the client is made.
    /// Empty: `$QUIVERLEAF_HELPER`, else the helper of this library's own prefix or that of the running
    /// program, else the one that was installed with this library, else "quiverleaf-helper" in `$PATH`.
    std::string helperPath;
  };

  enum class Status {
    answered,     ///< `result` is the answer; `reason` and `code` say why it is not whole, if so.
    nil,          ///< The operation answered nil; `reason` and `code` say why.
    exception,    ///< The operation raised; `exceptionName` and `exceptionReason` say what.
    timedOut,     ///< No reply within the time limit, which `message` names.
    died,         ///< The helper ended, or closed the connection, before it replied.
    unreachable,  ///< No helper is registered and none could be started; `message` says why.
    invalid       ///< The request cannot be sent; `message` says why.
  };

  struct Answer {
    Status status = Status::unreachable;
    id result;
    NSString exceptionName;
    NSString exceptionReason;
    /// Why the answer is nil, or why it is not whole: for people, and for programs, which take an unknown code
    /// for `other`. Nil and `none` when the helper does not say it.
    NSString reason;
    ErrorCode code = ErrorCode::none;
    std::string message;
  };

  HelperClient();
  explicit HelperClient(Options options);
  /// A helper that it started lives on.
  ~HelperClient();
  HelperClient(HelperClient &&) noexcept;
  HelperClient &operator=(HelperClient &&) noexcept;

  /// Calls an operation by its full selector; `arguments` are keyed by its keywords, and those that are nil
  /// left out. Paths among them have to be absolute, since the helper has a working directory of its own.
  Answer call(const NSString &selector, const NSDictionary &arguments);

  // The operations. Relative paths count from this process's working directory; when that is gone, the request
  // is invalid. The empty path stays empty, and "~" is a name like any other.
  Answer metaDataForFile(const NSString &path);
  Answer searchableTextOfWebArchive(const NSString &path);
  Answer attributedStringWithPDF(bool attributed, const NSData &pdf);
  Answer attributedStringWithContentsOfFile(const NSString &path);
  Answer writeRTFDData(const NSData &rtfd, const NSString &toFile);
  Answer RTFDWithHTML(const NSData &html, const NSString &baseURL, bool allowRemoteRequest);
  Answer PDFImageRepOfFile(const NSString &path);
  Answer posterImageForMovieWithFile(const NSString &path);
  Answer imageWithContentsOfFile(const NSString &path, bool stringFromPDF, bool canUseSpotlight);

  /// The process number of the helper, started if need be; 0 when there is none, and `*failure` then says why.
  int helperProcessIdentifier(Answer *failure = nullptr);
  /// Ends the helper that is registered (without starting one) and waits until it is gone. False when there is
  /// none.
  bool stopHelper();

 private:
  struct Session;

  Answer callWithFile(const NSString &selector, const NSString &keyword, const NSString &path,
                      NSDictionary otherArguments = NSDictionary::dictionary());
  bool connect(bool startsHelper, Answer *failure);
  Answer awaitReply(std::int64_t serial);
  Answer endTimedOut();
  Answer endDied(std::string message);

  Options options_;
  std::unique_ptr<Session> session_;
  std::int64_t serial_ = 0;
};

}  // namespace nimbo
