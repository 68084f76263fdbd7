// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/System/Deadline.hpp"

struct sockaddr;

namespace NIMBO_PUBLIC nimbo {

/// What came of a request over HTTP. It is a plain value.
struct HTTPAnswer {
  /// The number that the request was started with.
  std::size_t tag = 0;
  /// 0 when the server did not answer.
  int statusCode = 0;
  /// The field "Content-Type".
  std::string contentType;
  /// Where a redirect leads, whole; nil when the answer is none. It may have characters that no URL has.
  NSString redirect;
  /// What has come of the content.
  std::string body;
  /// Why the content is not whole; empty when it is.
  std::string failure;
};

/// Requests over HTTP that run at the same time, without following redirects. Used by one thread. It takes
/// libcurl, which is loaded with the first request.
///
///     HTTPTransfers transfers({.maximumBytes = 1 << 20, .maximumConnections = 6});
///     for (std::size_t i = 0; i < urls.size(); ++i) transfers.start(i, urls[i]);
///     while (const auto answer = transfers.next(deadline)) use(answer->tag, answer->body);
class HTTPTransfers {
 public:
  /// What the requests may take and do.
  struct Limits {
    /// What one answer may have, decompressed.
    std::size_t maximumBytes = 0;
    /// What all answers may still have, decompressed, and whatever else its owner counts; unless it is null.
    std::size_t *bytesLeft = nullptr;
    /// How many connections there may be at a time.
    std::size_t maximumConnections = 0;
    /// Whether proxies that the environment names are used.
    bool mayUseProxies = false;
    /// Asked of each address before it is connected to.
    std::function<bool(const sockaddr &)> mayConnect;
  };

  /// Whether there is libcurl, without which nothing can be requested.
  static bool isAvailable();

  /// None runs yet.
  explicit HTTPTransfers(Limits limits);
  ~HTTPTransfers();
  HTTPTransfers(const HTTPTransfers &) = delete;
  HTTPTransfers &operator=(const HTTPTransfers &) = delete;

  /// Begins a request; false when it cannot be, as without libcurl.
  bool start(std::size_t tag, const NSURL &url);
  /// Whether requests run.
  bool isBusy() const { return !transfers_.empty(); }
  /// Waits until a request ends. Nothing at the deadline.
  std::optional<HTTPAnswer> next(const Deadline &deadline);
  /// Ends a request that runs, whichever; its answer is what has come by now.
  HTTPAnswer abandon();

 private:
  struct Transfer;
  struct CloseMulti {
    void operator()(void *multi) const;
  };

  bool open();
  HTTPAnswer take(void *handle, std::string failure);

  Limits limits_;
  std::unique_ptr<void, CloseMulti> multi_;
  std::map<void *, std::unique_ptr<Transfer>> transfers_;
};

}  // namespace nimbo
