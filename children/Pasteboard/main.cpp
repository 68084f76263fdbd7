// SPDX-License-Identifier: Apache-2.0
//
// The clipboard of the desktop, for programs that have no connection to it:
//
//     quiverleaf-pasteboard check SECONDS              fails when there is no clipboard
//     quiverleaf-pasteboard types SECONDS              writes the types that are offered, a line each
//     quiverleaf-pasteboard read SECONDS TYPE...       writes the first of the types that is there (rather one
//                                                      that is not empty, where that may be a refusal): its
//                                                      name as given, as a line, and the data
//     quiverleaf-pasteboard own SECONDS [TYPE...]      offers these types instead; of none, empties it
//
// The owner's data come through its standard input, a stream as `Contents` describes it. The program ends when
// it owns the clipboard; a copy of it, which belongs to no terminal, serves other programs until another one
// owns it. SECONDS is how long other programs may take for a step. When something fails, the reason stands on
// the standard error, and the exit code is that of the `ErrorCode`.
#include <fcntl.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

#include "children/Pasteboard/Clipboard.hpp"
#include "children/Pasteboard/PasteboardError.hpp"
#include "children/Pasteboard/TypeNames.hpp"
#include "children/Pasteboard/WaylandClipboard.hpp"
#include "children/Pasteboard/X11Clipboard.hpp"

namespace nimbo {
namespace {

/// How much longer than a step everything may take.
constexpr double kSteps = 6;

/// That of Wayland where programs without a window may use it, else that of X11.
std::unique_ptr<Clipboard> openClipboard(const Patience &patience) {
  const auto isSet = [](const char *name) {
    const char *const value = std::getenv(name);
    return value && *value;
  };
  if (isSet("WAYLAND_DISPLAY")) {
    try {
      return openWaylandClipboard(patience);
    } catch (const PasteboardError &error) {
      if (isSet("DISPLAY")) return openX11Clipboard();
      throw PasteboardError(error.code, error.what() + std::string(", and DISPLAY is not set"));
    }
  }
  if (isSet("DISPLAY")) return openX11Clipboard();
  throw PasteboardError(ErrorCode::other, "there is no desktop: neither WAYLAND_DISPLAY nor DISPLAY is set");
}

void write(std::string_view bytes) {
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

void writeTypes(Clipboard &clipboard, const Patience &patience) {
  const auto types = clipboard.types(patience);
  if (!types)
    throw PasteboardError(ErrorCode::incomplete,
                          "the program that owns the clipboard does not tell what it has");
  for (const std::string &type : *types) write(type + "\n");
}

void writeData(Clipboard &clipboard, const std::vector<std::string> &wanted, const Patience &patience) {
  const auto types = clipboard.types(patience);
  const std::vector<std::string> &offered = types ? *types : wanted;
  std::optional<std::string> output;
  for (const std::string &type : wanted) {
    const auto match =
        std::ranges::find_if(offered, [&type](const std::string &other) { return isSameType(type, other); });
    if (match == offered.end()) continue;
    const auto data = clipboard.read(*match, patience);
    if (!data) continue;
    if (!output || !data->empty()) output = type + "\n" + *data;
    if (!data->empty() || clipboard.tellsRefusal()) break;
  }
  if (!output) throw PasteboardError(ErrorCode::incomplete, "the clipboard holds no data of this type");
  write(*output);
}

/// Goes on as a process of its own, which the caller does not wait for. The old process leaves everything as it
/// is: what both are connected to is to stay so.
void detach() {
  const pid_t process = ::fork();
  if (process < 0) throw PasteboardError(ErrorCode::other, "no process can be started to own the clipboard");
  if (process > 0) ::_exit(EXIT_SUCCESS);
  ::setsid();
  const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  ::dup2(nothing, STDOUT_FILENO);
  ::dup2(nothing, STDERR_FILENO);
  if (::chdir("/") != 0) throw PasteboardError(ErrorCode::other, "the root folder is gone");
}

FileDescriptor signalsOfEnding() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) ::sigaddset(&signals, signal);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  return FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

void own(Clipboard &clipboard, const std::vector<std::string> &types, const Patience &patience) {
  clipboard.own(types, patience);
  if (types.empty()) return;
  // Nobody may end it before it hears of that.
  const FileDescriptor signals = signalsOfEnding();
  detach();
  Contents contents(types, FileDescriptor(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)));
  ::close(STDIN_FILENO);
  ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  clipboard.serve(contents, signals.get());
}

/// Reads anew when another program takes the clipboard over meanwhile.
void readFromOneOwner(const auto &read, const Patience &patience) {
  for (;;) {
    try {
      return read();
    } catch (const OwnerReplaced &) {
      if (patience.end.isOver()) throw;
    }
  }
}

void run(const std::vector<std::string> &arguments) {
  if (arguments.size() < 2)
    throw PasteboardError(ErrorCode::other, "a command and a number of seconds are missing");
  const double seconds = std::strtod(arguments[1].c_str(), nullptr);
  const Patience patience = {seconds, Deadline::after(seconds * kSteps)};
  const std::vector<std::string> types(arguments.begin() + 2, arguments.end());
  if (types.size() > kMaximumTypes) throw PasteboardError(ErrorCode::tooLarge, kTooManyTypes);
  if (!std::ranges::all_of(types, isTypeName))
    throw PasteboardError(ErrorCode::unsupportedType, "the clipboard takes no types of such names");
  const auto clipboard = openClipboard(patience);
  if (arguments[0] == "own") return own(*clipboard, types, patience);
  if (arguments[0] == "read") readFromOneOwner([&] { writeData(*clipboard, types, patience); }, patience);
  if (arguments[0] == "types") readFromOneOwner([&] { writeTypes(*clipboard, patience); }, patience);
}

}  // namespace
}  // namespace nimbo

int main(int argc, char **argv) {
  using namespace nimbo;
  // What the caller left open is none of the owner's business, who may live for days.
  ::close_range(STDERR_FILENO + 1, ~0U, 0);
  ::signal(SIGPIPE, SIG_IGN);
  try {
    run({argv + std::min(argc, 1), argv + argc});
    if (std::fflush(stdout) == 0) return EXIT_SUCCESS;
  } catch (const PasteboardError &error) {
    std::fputs(error.what(), stderr);
    return static_cast<int>(error.code);
  } catch (const std::exception &error) {
    std::fputs(error.what(), stderr);
  }
  return static_cast<int>(ErrorCode::other);
}
