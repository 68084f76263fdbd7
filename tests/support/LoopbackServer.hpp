// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace nimbo {

/// A server of HTTP on this machine that answers paths with whole answers, as "HTTP/1.0 200 OK\r\n\r\nbody",
/// and counts what was asked for. A path without an answer is never answered.
class LoopbackServer {
 public:
  LoopbackServer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto *const any = reinterpret_cast<sockaddr *>(&address);
    if (bind(listener_, any, size) != 0 || listen(listener_, SOMAXCONN) != 0) return;
    getsockname(listener_, any, &size);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  ~LoopbackServer() {
    shutdown(listener_, SHUT_RDWR);
    if (thread_.joinable()) thread_.join();
    close(listener_);
    for (const int connection : unanswered_) close(connection);
  }
  LoopbackServer(const LoopbackServer &) = delete;

  void answer(const std::string &path, std::string whole) {
    const std::scoped_lock lock(mutex_);
    answers_[path] = std::move(whole);
  }
  /// How often a path was asked for.
  int requests(const std::string &path) {
    const std::scoped_lock lock(mutex_);
    return requests_[path];
  }
  /// The last request for a path, up to its empty line.
  std::string head(const std::string &path) {
    const std::scoped_lock lock(mutex_);
    return heads_[path];
  }
  std::string url(const std::string &path, const std::string &host = "127.0.0.1") const {
    return "http://" + host + ":" + std::to_string(port_) + path;
  }

 private:
  void serve() {
    for (int connection; (connection = accept(listener_, nullptr, nullptr)) >= 0;) {
      std::string head;
      char buffer[4096];
      while (head.find("\r\n\r\n") == std::string::npos) {
        const ssize_t count = recv(connection, buffer, sizeof(buffer), 0);
        if (count <= 0) break;
        head.append(buffer, static_cast<std::size_t>(count));
      }
      const std::size_t first = head.find(' ') + 1;
      const std::string path = head.substr(first, head.find(' ', first) - first);
      const std::scoped_lock lock(mutex_);
      ++requests_[path];
      heads_[path] = head;
      const auto found = answers_.find(path);
      if (found == answers_.end()) {
        unanswered_.push_back(connection);
        continue;
      }
      send(connection, found->second.data(), found->second.size(), MSG_NOSIGNAL);
      close(connection);
    }
  }

  int listener_;
  int port_ = 0;
  std::mutex mutex_;
  std::map<std::string, std::string> answers_;
  std::map<std::string, int> requests_;
  std::map<std::string, std::string> heads_;
  std::vector<int> unanswered_;
  std::thread thread_;
};

}  // namespace nimbo
