// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/HTTPTransfers.hpp"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <utility>

#include "platform/Foundation/URLs/CurlLibrary.hpp"

namespace nimbo {
namespace {

using detail::CurlLibrary;

constexpr const char *kUserAgent = "Quiverleaf";
constexpr long kConnectSeconds = 10;
constexpr int kPollMilliseconds = 1000;

struct CloseHandle {
  void operator()(CURL *handle) const { CurlLibrary::shared()->easy_cleanup(handle); }
};

curl_socket_t openSocket(void *limits, curlsocktype, curl_sockaddr *address) {
  const auto &mayConnect = static_cast<HTTPTransfers::Limits *>(limits)->mayConnect;
  if (mayConnect && !mayConnect(address->addr)) return CURL_SOCKET_BAD;
  return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

}  // namespace

struct HTTPTransfers::Transfer {
  std::unique_ptr<CURL, CloseHandle> handle;
  HTTPAnswer answer;
  const Limits *limits = nullptr;
  bool isTooLarge = false;

  /// A number other than `count` ends the transfer.
  static std::size_t receive(const char *bytes, std::size_t, std::size_t count, void *transfer) noexcept {
    auto &self = *static_cast<Transfer *>(transfer);
    std::size_t room = self.limits->maximumBytes - self.answer.body.size();
    std::size_t *const left = self.limits->bytesLeft;
    if (left) room = std::min(room, *left);
    const std::size_t taken = std::min(count, room);
    try {
      self.answer.body.append(bytes, taken);
    } catch (const std::bad_alloc &) {
      return 0;
    }
    if (left) *left -= taken;
    self.isTooLarge = count > room;
    return self.isTooLarge ? 0 : count;
  }
};

void HTTPTransfers::CloseMulti::operator()(void *multi) const {
  CurlLibrary::shared()->multi_cleanup(static_cast<CURLM *>(multi));
}

bool HTTPTransfers::isAvailable() {
  return CurlLibrary::shared() != nullptr;
}

HTTPTransfers::HTTPTransfers(Limits limits) : limits_(std::move(limits)) {}

bool HTTPTransfers::open() {
  if (multi_) return true;
  if (!CurlLibrary::shared()) return false;
  multi_.reset(CurlLibrary::shared()->multi_init());
  if (!multi_) throw std::bad_alloc();
  CurlLibrary::shared()->multi_setopt(multi_.get(), CURLMOPT_MAX_TOTAL_CONNECTIONS,
                                      static_cast<long>(limits_.maximumConnections));
  return true;
}

HTTPTransfers::~HTTPTransfers() {
  for (const auto &[handle, transfer] : transfers_)
    CurlLibrary::shared()->multi_remove_handle(multi_.get(), handle);
}

bool HTTPTransfers::start(std::size_t tag, const NSURL &url) {
  if (!open()) return false;
  auto transfer = std::make_unique<Transfer>();
  transfer->handle.reset(CurlLibrary::shared()->easy_init());
  transfer->answer.tag = tag;
  transfer->limits = &limits_;
  CURL *const handle = transfer->handle.get();
  if (!handle) return false;
  const bool isSet =
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_URL, url.absoluteString().UTF8String().c_str()) ==
          CURLE_OK &&
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https") == CURLE_OK &&
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_WRITEFUNCTION, &Transfer::receive) == CURLE_OK &&
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_WRITEDATA, transfer.get()) == CURLE_OK &&
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, &openSocket) == CURLE_OK &&
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_OPENSOCKETDATA, &limits_) == CURLE_OK &&
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_NOSIGNAL, 1L) == CURLE_OK &&
      CurlLibrary::shared()->easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, kConnectSeconds) == CURLE_OK;
  if (!isSet) return false;
  CurlLibrary::shared()->easy_setopt(handle, CURLOPT_USERAGENT, kUserAgent);
  CurlLibrary::shared()->easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, "");
  // Who gives up a request does not wait for the answer to a name.
  CurlLibrary::shared()->easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
  if (!limits_.mayUseProxies) CurlLibrary::shared()->easy_setopt(handle, CURLOPT_PROXY, "");
  if (CurlLibrary::shared()->multi_add_handle(multi_.get(), handle) != CURLM_OK) return false;
  transfers_.emplace(handle, std::move(transfer));
  return true;
}

std::optional<HTTPAnswer> HTTPTransfers::next(const Deadline &deadline) {
  while (isBusy()) {
    int running = 0;
    CurlLibrary::shared()->multi_perform(multi_.get(), &running);
    int waiting = 0;
    while (const CURLMsg *const message = CurlLibrary::shared()->multi_info_read(multi_.get(), &waiting))
      if (message->msg == CURLMSG_DONE)
        return take(message->easy_handle, message->data.result == CURLE_OK
                                              ? ""
                                              : CurlLibrary::shared()->easy_strerror(message->data.result));
    if (deadline.isOver()) break;
    const int milliseconds = deadline.remainingMilliseconds();
    CurlLibrary::shared()->multi_poll(
        multi_.get(), nullptr, 0,
        milliseconds < 0 ? kPollMilliseconds : std::min(milliseconds, kPollMilliseconds), nullptr);
  }
  return std::nullopt;
}

HTTPAnswer HTTPTransfers::abandon() {
  return take(transfers_.begin()->first, "it took too long");
}

HTTPAnswer HTTPTransfers::take(void *handle, std::string failure) {
  const auto place = transfers_.find(handle);
  HTTPAnswer answer = std::move(place->second->answer);
  long status = 0;
  CurlLibrary::shared()->easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
  answer.statusCode = static_cast<int>(status);
  const char *text = nullptr;
  if (CurlLibrary::shared()->easy_getinfo(handle, CURLINFO_CONTENT_TYPE, &text) == CURLE_OK && text)
    answer.contentType = text;
  text = nullptr;
  if (CurlLibrary::shared()->easy_getinfo(handle, CURLINFO_REDIRECT_URL, &text) == CURLE_OK && text)
    answer.redirect = NSString::stringWithLossyUTF8String(text);
  answer.failure = place->second->isTooLarge ? "it is too large" : std::move(failure);
  CurlLibrary::shared()->multi_remove_handle(multi_.get(), handle);
  transfers_.erase(place);
  return answer;
}

}  // namespace nimbo
