// SPDX-License-Identifier: Apache-2.0
// The named connection against a bare Unix socket, each between two processes, in turns in one run: the round
// trip of a small request against the same bytes echoed, and 64 MiB of data one way against the same bytes
// written and acknowledged. Answers are checked before anything is timed. Prints medians and ratios.
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "clients/cpp/HelperClient.hpp"
#include "helper/NimboImExport.hpp"
#include "platform/Foundation/Connection/ConnectionMessage.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/NSRunLoop.hpp"

using namespace nimbo;

namespace {

constexpr int kRoundTrips = 20'000;
constexpr int kLargeTransfers = 15;
constexpr std::uint32_t kLargeBytes = 64u << 20;
constexpr std::size_t kSinkBytes = 1u << 20;

[[noreturn]] void fail(const char *what) {
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

int servingProcessor = 0;

/// Keeps this process on one processor.
void stayOn(int processor) {
  cpu_set_t set;
  CPU_ZERO(&set);
  CPU_SET(processor, &set);
  if (::sched_setaffinity(0, sizeof set, &set) != 0) fail("sched_setaffinity");
}

/// Runs `serve` in a child that ends with this process.
pid_t serveInChild(const std::function<void()> &serve) {
  const pid_t child = ::fork();
  if (child < 0) fail("fork");
  if (child > 0) return child;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  stayOn(servingProcessor);
  serve();
  ::_exit(0);
}

class BenchRoot final : public NSConnectionRootObject {
 public:
  id perform(const NSString &selector, const NSDictionary &arguments, NSError *) override {
    const id &value = arguments.objectForKey(selector.substringWithRange({0, selector.length() - 1}));
    return value.data() ? id(value.data().length()) : value;
  }
};

void readAll(int socket, char *bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t got = ::read(socket, bytes, count);
    if (got <= 0) ::_exit(0);
    bytes += got;
    count -= static_cast<std::size_t>(got);
  }
}

void writeAll(int socket, const char *bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t sent = ::write(socket, bytes, count);
    if (sent <= 0) fail("write");
    bytes += sent;
    count -= static_cast<std::size_t>(sent);
  }
}

/// The bare peer: echoes each small message, and acknowledges each large one, whose length comes first, with
/// one byte.
class BarePeer {
 public:
  BarePeer(std::size_t echoed, bool sinks) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) fail("socketpair");
    child_ = serveInChild([&] {
      ::close(ends[0]);
      if (sinks) sink(ends[1]);
      std::vector<char> bytes(echoed);
      for (;;) {
        readAll(ends[1], bytes.data(), bytes.size());
        writeAll(ends[1], bytes.data(), bytes.size());
      }
    });
    ::close(ends[1]);
    socket_ = ends[0];
  }
  ~BarePeer() {
    ::close(socket_);
    ::waitpid(child_, nullptr, 0);
  }
  int socket() const { return socket_; }

 private:
  [[noreturn]] static void sink(int socket) {
    std::vector<char> bytes(kSinkBytes);
    for (;;) {
      std::size_t left = kLargeBytes;
      while (left > 0) {
        const ssize_t got = ::read(socket, bytes.data(), std::min(left, bytes.size()));
        if (got <= 0) ::_exit(0);
        left -= static_cast<std::size_t>(got);
      }
      writeAll(socket, "!", 1);
    }
  }

  int socket_ = -1;
  pid_t child_ = 0;
};

double secondsOf(const std::function<void()> &work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Times both in turns and gives the two medians.
std::pair<double, double> compare(int times, const std::function<void()> &ours,
                                  const std::function<void()> &bare) {
  std::vector<double> ourTimes, bareTimes;
  for (int i = 0; i < times; ++i) {
    ourTimes.push_back(secondsOf(ours));
    bareTimes.push_back(secondsOf(bare));
  }
  return {median(ourTimes), median(bareTimes)};
}

void report(const char *what, const std::pair<double, double> &medians) {
  std::printf("%-24s %10.1f us   bare socket %10.1f us   ratio %.2f\n", what, medians.first * 1e6,
              medians.second * 1e6, medians.first / medians.second);
}

void measure() {
  HelperClient::Options options;
  options.startsHelper = false;
  HelperClient client(options);
  const NSString selector = u"metaDataForFile:"_ns;
  const NSDictionary small = {{u"metaDataForFile"_ns, u"/home/somebody/Documents/Letter.pdf"_ns}};
  // Written to, since pages that are not stand all on the one page of zeros, which is read for nothing.
  const NSData data = NSData::dataWithBytes(std::string(kLargeBytes, 'x').data(), kLargeBytes);
  const NSDictionary large = {{u"metaDataForFile"_ns, data}};
  std::string bytes;
  for (const NSData &piece : encodeMessage(ConnectionRequest{1, selector, small})) bytes += piece.view();
  const BarePeer echo(bytes.size(), false);
  const BarePeer sink(0, true);

  const auto callSmall = [&] {
    if (client.call(selector, small).result != small.objectForKey(u"metaDataForFile"_ns))
      fail("wrong small answer");
  };
  const auto callLarge = [&] {
    if (client.call(selector, large).result != id(kLargeBytes)) fail("wrong large answer");
  };
  std::string answer(bytes.size(), '\0');
  const auto echoSmall = [&] {
    writeAll(echo.socket(), bytes.data(), bytes.size());
    readAll(echo.socket(), answer.data(), answer.size());
  };
  const auto sinkLarge = [&] {
    writeAll(sink.socket(), data.view().data(), data.length());
    readAll(sink.socket(), answer.data(), 1);
  };
  echoSmall();
  if (answer != bytes) fail("wrong echo");
  callSmall();
  callLarge();
  sinkLarge();

  report("round trip of a path", compare(kRoundTrips, callSmall, echoSmall));
  report("64 MiB one way", compare(kLargeTransfers, callLarge, sinkLarge));
}

std::vector<int> processors() {
  cpu_set_t set;
  if (::sched_getaffinity(0, sizeof set, &set) != 0) fail("sched_getaffinity");
  std::vector<int> result;
  for (int processor = 0; processor < CPU_SETSIZE; ++processor)
    if (CPU_ISSET(processor, &set)) result.push_back(processor);
  return result;
}

/// Measures against a helper of its own, with all serving processes on that processor.
void measureOn(int processor) {
  servingProcessor = processor;
  int ready[2];
  if (::pipe(ready) != 0) fail("pipe");
  const pid_t helper = serveInChild([&] {
    BenchRoot root;
    NSConnection connection;
    connection.setRootObject(&root);
    if (!connection.registerName(NSString::stringWithCharacters(kHelperConnectionName)))
      fail("cannot register");
    writeAll(ready[1], "!", 1);
    NSRunLoop::currentRunLoop().run();
  });
  char byte;
  readAll(ready[0], &byte, 1);
  ::close(ready[0]);
  ::close(ready[1]);
  measure();
  ::kill(helper, SIGKILL);
  ::waitpid(helper, nullptr, 0);
}

}  // namespace

int main() {
  std::string folder = std::filesystem::temp_directory_path() / "connection-bench.XXXXXX";
  if (!::mkdtemp(folder.data())) fail("mkdtemp");
  ::setenv("QUIVERLEAF_RUNTIME_DIR", folder.c_str(), 1);
  const std::vector<int> available = processors();
  stayOn(available.front());
  std::printf("both sides on one processor\n");
  measureOn(available.front());
  if (available.size() > 1) {
    std::printf("on two processors\n");
    measureOn(available.back());
  }
  std::filesystem::remove_all(folder);
}
