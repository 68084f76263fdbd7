// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/Foundation/NSTask.hpp"
#include "tests/support/Processes.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {

/// A desktop of a test's own without a screen, to which the environment of this process then leads, and the
/// other programs there that copy and paste.
class DesktopSession {
 public:
  enum class Kind { X11, Wayland };
  friend void PrintTo(Kind kind, std::ostream *stream) { *stream << (kind == Kind::X11 ? "X11" : "Wayland"); }

  /// Null where its programs are not installed; `*missing` names one.
  static std::unique_ptr<DesktopSession> start(Kind kind, std::string *missing) {
    const std::vector<std::string> programs = kind == Kind::X11
                                                  ? std::vector<std::string>{"Xvfb", "xclip"}
                                                  : std::vector<std::string>{"sway", "wl-copy", "wl-paste"};
    for (const std::string &program : programs)
      if (!std::filesystem::exists("/usr/bin/" + program)) {
        *missing = program;
        return nullptr;
      }
    std::unique_ptr<DesktopSession> session(new DesktopSession(kind));
    return session->display_.empty() ? nullptr : std::move(session);
  }
  ~DesktopSession() {
    if (server_ > 0) {
      ::kill(server_, SIGKILL);
      ::waitpid(server_, nullptr, 0);
    }
    for (const char *const name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"}) ::unsetenv(name);
  }
  DesktopSession(const DesktopSession &) = delete;

  /// Another program copies. It owns the clipboard a little later than it says, when the one before has ended.
  void copy(std::string_view bytes, const std::string &type,
            const std::vector<std::string> &options = {}) const {
    std::vector<std::string> command = kind_ == Kind::X11
                                           ? std::vector<std::string>{"xclip", "-selection", "clipboard"}
                                           : std::vector<std::string>{"wl-copy"};
    command.insert(command.end(), options.begin(), options.end());
    command.insert(command.end(), {"-t", type});
    run(command, bytes);
    const char *const program = kind_ == Kind::X11 ? "xclip" : "wl-copy";
    waitUntil([&] { return processes(program).size() == 1 && offered().find(type) != std::string::npos; });
  }
  /// What another program gets; empty when it gets nothing.
  std::string paste(const std::string &type) const {
    return run(kind_ == Kind::X11
                   ? std::vector<std::string>{"xclip", "-o", "-selection", "clipboard", "-t", type}
                   : std::vector<std::string>{"wl-paste", "-n", "-t", type},
               {});
  }
  /// What another program is offered, a line a type.
  std::string offered() const { return kind_ == Kind::X11 ? paste("TARGETS") : run({"wl-paste", "-l"}, {}); }
  /// The processes of a program that belong to this desktop.
  std::vector<pid_t> processes(std::string_view program) const {
    std::vector<pid_t> found;
    for (const pid_t process : allProcesses()) {
      const std::string folder = "/proc/" + std::to_string(process);
      std::error_code error;
      const auto path = std::filesystem::read_symlink(folder + "/exe", error);
      std::ifstream stream(folder + "/environ", std::ios::binary);
      const std::string environment{std::istreambuf_iterator<char>(stream), {}};
      if (path.filename() == program && environment.find(display_) != std::string::npos)
        found.push_back(process);
    }
    return found;
  }
  /// Whether a process of the program is there, after some time.
  bool isRunning(std::string_view program) const {
    return waitUntil([&] { return !processes(program).empty(); });
  }
  /// Whether no process of the program is left, after some time.
  bool isGone(std::string_view program) const {
    return waitUntil([&] { return processes(program).empty(); });
  }

 private:
  explicit DesktopSession(Kind kind) : kind_(kind) {
    for (const char *const name : {"DISPLAY", "WAYLAND_DISPLAY"}) ::unsetenv(name);
    ::setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    const std::string ready = folder_.path() / "display";
    const std::string configuration = folder_.path() / "configuration";
    std::ofstream(configuration) << "xwayland disable\nexec echo $WAYLAND_DISPLAY >" << ready << "\n";
    // The compositor refuses to be started by root; where the root folder is another, no namespace helps.
    const bool isRoot = kind == Kind::Wayland && ::getuid() == 0;
    const std::string user = isRoot ? "setpriv --reuid=1000 --regid=1000 --clear-groups " : "";
    if (isRoot && ::chown(folder_.path().c_str(), 1000, 1000) != 0) return;
    const std::string command =
        kind == Kind::X11
            ? "exec Xvfb -displayfd 1 -screen 0 64x64x24 -nolisten tcp -noreset >" + ready + " 2>/dev/null"
            : "export WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman; exec " + user +
                  "sway -c " + configuration + " >/dev/null 2>&1";
    std::string arguments[] = {"sh", "-c", command};
    char *const pointers[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(), nullptr};
    if (::posix_spawnp(&server_, "sh", nullptr, nullptr, pointers, environ) != 0) return;
    std::string number;
    const bool isReady = waitUntil([&] {
      std::ifstream stream(ready);
      return std::getline(stream, number) && !stream.eof();
    });
    if (!isReady) return;
    const bool isX11 = kind == Kind::X11;
    ::setenv(isX11 ? "DISPLAY" : "WAYLAND_DISPLAY", (isX11 ? ":" + number : number).c_str(), 1);
    display_ = folder_.path();
  }

  /// Whether it becomes true before a test is given up.
  static bool waitUntil(const auto &condition) {
    for (int i = 0; i < 6000; ++i) {
      if (condition()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }

  static std::string run(const std::vector<std::string> &command, std::string_view input) {
    NSTask task{.launchPath = NSString::stringWithUTF8String("/usr/bin/" + command.front()),
                .standardInput = NSData::dataWithBytes(input.data(), input.size()),
                .deadline = Deadline::after(30),
                .maximumOutputBytes = 256 << 20,
                .standardOutput = NSTask::Output::collected};
    for (std::size_t i = 1; i < command.size(); ++i)
      task.arguments.push_back(NSString::stringWithUTF8String(command[i]));
    const auto result = task.run();
    return std::string(result && result->terminationStatus == 0 ? result->standardOutput.view() : "");
  }

  const Kind kind_;
  const TemporaryFolder folder_;
  pid_t server_ = 0;
  /// What stands in the environment of all processes of this desktop, and of no others.
  std::string display_;
};

}  // namespace nimbo
