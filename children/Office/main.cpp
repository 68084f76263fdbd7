// SPDX-License-Identifier: Apache-2.0
//
// Reads documents of word processors with LibreOffice, as a confined child:  quiverleaf-office PROGRAM-FOLDER
// PROFILE-FOLDER
//
// Its standard input is a socket of packets. A request is the path of a document, a line feed, and the path
// where its content is written as flat OpenDocument XML. The reply is the number of bytes of memory in use, a
// line feed, and what is wrong, or nothing when the content is written. It ends when there are no more
// requests, or none has come for some minutes.
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "children/Office/FlatDocument.hpp"
#include "children/Office/Profile.hpp"

namespace {

constexpr int kIdleMilliseconds = 5 * 60 * 1000;
constexpr std::size_t kMaximumRequestBytes = 64 << 10;

std::size_t memoryInUse() {
  std::size_t all = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

/// Empty at the end of the requests.
std::string nextRequest() {
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  int ready = 0;
  while ((ready = ::poll(&input, 1, kIdleMilliseconds)) < 0 && errno == EINTR) {
  }
  if (ready <= 0) return {};
  std::string request(kMaximumRequestBytes, '\0');
  ssize_t got = 0;
  while ((got = ::recv(STDIN_FILENO, request.data(), request.size(), 0)) < 0 && errno == EINTR) {
  }
  request.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return request;
}

/// LibreOffice takes long to end, and there is nothing that it could save.
[[noreturn]] void endAtOnce(int exitCode) {
  std::fflush(nullptr);
  ::_exit(exitCode);
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) return EXIT_FAILURE;
  const std::string profile = argv[2];
  const auto office = nimbo::writeProfile(profile) ? nimbo::Office::load(argv[1], profile) : nullptr;
  if (!office) {
    std::fputs("LibreOffice cannot be loaded\n", stderr);
    endAtOnce(EXIT_FAILURE);
  }
  for (std::string request = nextRequest(); !request.empty(); request = nextRequest()) {
    const std::size_t middle = request.find('\n');
    if (middle == std::string::npos) endAtOnce(EXIT_FAILURE);
    const std::string failure =
        office->writeFlatDocument(request.substr(0, middle), request.substr(middle + 1));
    const std::string reply = std::to_string(memoryInUse()) + "\n" + failure;
    if (::send(STDIN_FILENO, reply.data(), reply.size(), MSG_NOSIGNAL) < 0) break;
  }
  endAtOnce(EXIT_SUCCESS);
}
