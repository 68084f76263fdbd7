// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ChildProcess.hpp"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"
#include "tests/support/EnvironmentSetting.hpp"
#include "tests/support/Interruptions.hpp"
#include "tests/support/Processes.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

const Deadline kLong = Deadline::after(3600);

NSString text(std::string_view utf8) {
  return NSString::stringWithUTF8String(utf8);
}

ChildProgram probe(std::string_view what, std::string_view where = {}) {
  return {.launchPath = text(CONFINEMENT_PROBE), .arguments = {text(what), text(where)}};
}

/// A socket of this process that waits for connections, or takes datagrams.
class Listener {
 public:
  explicit Listener(int type) : file_(::socket(AF_INET, type | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    bindTo(reinterpret_cast<sockaddr *>(&address), length);
    if (type == SOCK_STREAM) ::listen(file_.get(), 8);
    ::getsockname(file_.get(), reinterpret_cast<sockaddr *>(&address), &length);
    name_ = std::to_string(ntohs(address.sin_port));
  }
  /// A name that begins with '@' is an abstract one.
  explicit Listener(const std::string &name)
      : file_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)), name_(name) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path, sizeof address.sun_path - 1);
    if (name.starts_with('@')) address.sun_path[0] = '\0';
    bindTo(reinterpret_cast<sockaddr *>(&address),
           static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size()));
    ::listen(file_.get(), 8);
  }
  const std::string &name() const { return name_; }

 private:
  void bindTo(const sockaddr *address, socklen_t length) {
    if (::bind(file_.get(), address, length) != 0) throw std::runtime_error("no socket");
  }

  FileDescriptor file_;
  std::string name_;
};

class ChildProcessTest : public testing::Test {
 protected:
  ChildProcessTest() {
    confinement_.writableFolders = {inside_->path()};
    confinement_.readablePaths = Confinement::systemPaths();
    confinement_.readablePaths.push_back(text(CONFINEMENT_PROBE));
  }

  std::string answer(const ChildProgram &program) {
    NSError error;
    const auto child = ChildProcess::start(program, confinement_, &error);
    const auto result = child ? child->waitUntilExit(Deadline::after(60), &error) : std::nullopt;
    if (child) protections_ = child->protections();
    if (!result) return "failed: " + error.localizedFailureReason.UTF8String();
    refused_.clear();
    for (const std::string &call : result->refusedCalls) refused_ += call + " ";
    return std::string(result->standardOutput.view());
  }
  std::string inside(std::string_view name) { return inside_->pathOf(name).UTF8String(); }
  std::string outside(std::string_view name) { return outside_.write(name, "content").UTF8String(); }

  std::unique_ptr<PrivateFolder> inside_ = PrivateFolder::make();
  TemporaryFolder outside_;
  Confinement confinement_;
  Protections protections_;
  std::string refused_;
};

TEST_F(ChildProcessTest, RefusesWhatTheProtectionsInForceForbid) {
  const Listener tcp(SOCK_STREAM), udp(SOCK_DGRAM), path(outside_.string("socket").UTF8String()),
      abstract("@quiverleaf-test-" + std::to_string(::getpid()));
  const std::string own = std::to_string(::getpid());
  const std::string newFile = outside_.string("new").UTF8String();
  const struct {
    const char *what;
    std::string where;
    bool Protections::*by;
    const char *named = "";
  } cases[] = {
      {"tcp", tcp.name(), &Protections::network},
      {"udp", udp.name(), &Protections::network},
      {"socket", abstract.name(), &Protections::network},
      {"socket", path.name(), &Protections::systemCalls, "socket "},
      {"read", outside("secret"), &Protections::reading},
      {"list", outside_.path(), &Protections::reading},
      {"read", "/proc/" + own + "/environ", &Protections::signals},
      {"write", outside("written"), &Protections::writing},
      {"truncate", outside("cut"), &Protections::writing},
      {"create", newFile, &Protections::writing},
      {"folder", newFile, &Protections::writing},
      {"link", newFile, &Protections::writing},
      {"remove", outside("removed"), &Protections::writing},
      {"rename", outside("renamed"), &Protections::writing},
      {"mode", outside("mode"), &Protections::systemCalls},
      {"fork", "", &Protections::processes},
      {"unshare", "", &Protections::systemCalls, "unshare "},
      {"trace", own, &Protections::signals},
      {"trace-me", "", &Protections::systemCalls, "ptrace "},
      {"signal", own, &Protections::signals},
  };
  const auto setWays = [this](bool landlock, bool filter, bool namespaces) {
    confinement_.usesLandlock = landlock;
    confinement_.usesFilter = filter;
    confinement_.usesNamespaces = namespaces;
  };
  // What this system has, asked in other ways than the code under test does.
  const bool hasLandlock = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, 1) > 0;
  const bool hasFilter = ::prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0;
  const bool hasNamespaces = ::system("unshare -Urmpi --fork true 2>/dev/null") == 0;
  const auto renewFiles = [this] {
    for (const char *name : {"removed", "renamed", "cut"}) outside(name);
  };
  for (const int ways : {7, 1, 2, 4, 3, 6}) {
    setWays(ways & 1, ways & 2, ways & 4);
    const std::string first = answer(probe("pair"));
    if (!((ways & 1) && hasLandlock) && !((ways & 2) && hasFilter) && !((ways & 4) && hasNamespaces)) {
      EXPECT_EQ(first, "failed: this system has nothing to confine a program with") << ways;
      continue;
    }
    EXPECT_EQ(protections_.reading, (ways & 1) && hasLandlock) << ways;
    EXPECT_EQ(protections_.systemCalls, (ways & 2) && hasFilter) << ways;
    EXPECT_LE(protections_.namedRefusals, protections_.systemCalls) << ways;
    EXPECT_EQ(protections_.processes, protections_.systemCalls) << ways;
    EXPECT_EQ(protections_.descendants, (ways & 4) && hasNamespaces) << ways;
    EXPECT_EQ(protections_.writing, protections_.reading || protections_.descendants) << ways;
    EXPECT_EQ(protections_.network, protections_.systemCalls || protections_.descendants) << ways;
    for (const auto &[what, where, by, named] : cases) {
      renewFiles();
      const std::string said = answer(probe(what, where));
      std::string message = what;
      message.append(" ")
          .append(where)
          .append(", ways ")
          .append(std::to_string(ways))
          .append(": ")
          .append(said);
      if (protections_.*by) {
        EXPECT_TRUE(said.starts_with("refused: ")) << message;
        EXPECT_EQ(refused_.find(named) != std::string::npos, protections_.namedRefusals || !*named) << message;
      }
    }
    EXPECT_EQ(answer(probe("privileges")), "refused: Operation not permitted\n") << ways;
    EXPECT_TRUE(answer(probe("descriptors")).starts_with("refused")) << ways;
    EXPECT_TRUE(answer(probe("new-call")).starts_with("refused")) << ways;
    // The kernel does not look at the upper half of the request.
    for (const std::uint64_t request : {TIOCSTI, TIOCLINUX})
      EXPECT_EQ(answer(probe("terminal", std::to_string(request | std::uint64_t{1} << 32))) ==
                    "refused: Operation not permitted\n",
                protections_.systemCalls);
  }
  // Without a confinement all that can be done is done, or this test could not fail.
  for (const auto &[what, where, by, named] : cases) {
    if (what == std::string("trace") || where == newFile || (what == std::string("unshare") && !hasNamespaces))
      continue;
    renewFiles();
    const std::string command = std::string(CONFINEMENT_PROBE " ") + what + " '" + where + "' >/dev/null";
    EXPECT_EQ(::system(command.c_str()), 0) << command;
  }
  setWays(false, false, false);
  EXPECT_EQ(answer(probe("pair")), "failed: this system has nothing to confine a program with");
}

TEST_F(ChildProcessTest, LetsAProgramDoItsWork) {
  outside_.write("own/readable", "text");
  confinement_.readablePaths.push_back(outside_.string("own"));
  const std::string file = inside("file");
  const struct {
    const char *what;
    std::string where;
  } cases[] = {
      {"create", file},
      {"write", file},
      {"read", file},
      {"truncate", file},
      {"rename", file},
      {"folder", inside("folder")},
      {"link", inside("link")},
      {"list", inside("")},
      {"remove", file + ".new"},
      {"read", outside_.string("own/readable").UTF8String()},
      {"read", "/etc/passwd"},
      {"read", "/proc/self/maps"},
      {"read", "/proc/meminfo"},
      {"read", "/proc/cpuinfo"},
      {"write", "/dev/null"},
      {"read", "/dev/urandom"},
      {"pair", ""},
      {"thread", ""},
      {"memory", "64"},
      {"files", "100"},
  };
  for (const auto &[what, where] : cases) EXPECT_EQ(answer(probe(what, where)), "done\n") << what << where;
  EXPECT_EQ(answer(probe("run", "/bin/true")), "");
  // What it makes is nobody else's to read.
  EXPECT_EQ(answer(probe("create", inside("own"))), "done\n");
  EXPECT_EQ(std::filesystem::status(inside("own")).permissions(), std::filesystem::perms(0600));
  ChildProgram program = probe("environment");
  program.environment = {{u"SAL_USE_VCLPLUGIN"_ns, u"svp"_ns}, {u"EMPTY"_ns, u""_ns}};
  const std::string home = inside_->path().UTF8String();
  EXPECT_EQ(answer(program), "PATH=/usr/bin:/bin\nLANG=C.UTF-8\nHOME=" + home + "\nTMPDIR=" + home +
                                 "\nSAL_USE_VCLPLUGIN=svp\nEMPTY=\ndone\n");
  confinement_.readablePaths.clear();
  EXPECT_EQ(answer(probe("read", outside("anything"))), "done\n");
}

TEST_F(ChildProcessTest, OpensTheInternetAloneWhenItIsAsked) {
  confinement_.network = true;
  const Listener tcp(SOCK_STREAM), udp(SOCK_DGRAM), path(outside_.string("socket").UTF8String());
  EXPECT_EQ(answer(probe("tcp", tcp.name())), "done\n");
  EXPECT_EQ(answer(probe("udp", udp.name())), "done\n");
  const std::string said = answer(probe("socket", path.name()));
  EXPECT_EQ(said.starts_with("refused"), protections_.systemCalls) << said;
  EXPECT_FALSE(protections_.network);
}

TEST_F(ChildProcessTest, KeepsWithinItsLimits) {
  confinement_.memoryBytes = 256 << 20;
  confinement_.fileBytes = 4 << 20;
  confinement_.openFiles = 64;
  confinement_.processorSeconds = 1;
  EXPECT_EQ(answer(probe("memory", "400")), "refused: Cannot allocate memory\n");
  EXPECT_EQ(answer(probe("large-file", inside("large"))), "refused: File too large\n");
  EXPECT_EQ(answer(probe("files", "100")), "refused: Too many open files\n");
  NSError error;
  auto child = ChildProcess::start(probe("spin"), confinement_, &error);
  ASSERT_TRUE(child);
  const auto result = child->waitUntilExit(Deadline::after(60), &error);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->terminationStatus, 128 + SIGXCPU);
  EXPECT_GE(result->processorSeconds, 0.5);
  EXPECT_NE(child->reasonOfEnd().find("CPU time limit"), std::string::npos) << child->reasonOfEnd();

  ChildProgram loud = probe("output");
  loud.maximumOutputBytes = 1 << 20;
  EXPECT_EQ(answer(loud), "failed: the program wrote more than its output limit");
  child = ChildProcess::start(probe("complain"), confinement_, &error);
  const auto complaint = child->waitUntilExit(Deadline::after(60), &error);
  ASSERT_TRUE(complaint);
  EXPECT_EQ(complaint->standardError.length(), ChildProcess::kStandardErrorBytes);
  EXPECT_TRUE(complaint->standardError.UTF8String().ends_with("complaint 19999\n"));
}

TEST_F(ChildProcessTest, KeepsNoFileOfThisProcessOpen) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const auto child = ChildProcess::start(probe("serve"), confinement_);
  ASSERT_TRUE(child);
  ::close(ends[1]);
  pollfd ended = {ends[0], POLLIN, 0};
  EXPECT_EQ(::poll(&ended, 1, 10'000), 1);
  EXPECT_EQ(child->exchange("one", kLong), "re: one");
  ::close(ends[0]);
}

/// Whether a file that a left process has locked gets free: the process is gone then.
bool getsFree(const std::string &path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  for (int i = 0; file && i < 1000; ++i) {
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

void waitForFile(const std::string &path) {
  struct stat info = {};
  for (int i = 0; i < 3000 && (::stat(path.c_str(), &info) != 0 || info.st_size == 0); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

TEST_F(ChildProcessTest, EndsWhatLeftTheFamily) {
  confinement_.children = 16;
  for (const bool namespaces : {true, false}) {
    SCOPED_TRACE(namespaces);
    confinement_.usesNamespaces = namespaces;
    const auto name = [&](const char *part) { return inside(part) + (namespaces ? "1" : "2"); };
    // After the program's own end.
    EXPECT_EQ(answer(probe("leave", name("left"))), "done\n");
    EXPECT_TRUE(getsFree(name("left")));
    // At the deadline.
    auto child = ChildProcess::start(probe("leave-and-stay", name("late")), confinement_);
    ASSERT_TRUE(child);
    waitForFile(name("late"));
    NSError error;
    EXPECT_FALSE(child->waitUntilExit(Deadline::after(0.05), &error));
    EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
    EXPECT_TRUE(getsFree(name("late")));
    // When this process is killed.
    const pid_t caller = ::fork();
    if (caller == 0) {
      const auto orphan = ChildProcess::start(probe("leave-and-stay", name("orphan")), confinement_);
      while (orphan) ::pause();
      ::_exit(1);
    }
    ASSERT_GT(caller, 1);
    waitForFile(name("orphan"));
    ::kill(caller, SIGKILL);
    ::waitpid(caller, nullptr, 0);
    EXPECT_TRUE(getsFree(name("orphan")));
  }
}

TEST_F(ChildProcessTest, BoundsTheNumberOfProcesses) {
  confinement_.children = 4;
  EXPECT_EQ(answer(probe("forks", "2")), "done\n");
  const std::string said = answer(probe("forks", "200"));
  EXPECT_EQ(said.starts_with("refused"), protections_.processes) << said;
}

TEST_F(ChildProcessTest, TalksToAWarmChild) {
  const Interruptions interruptions;
  NSError error;
  const auto child = ChildProcess::start(probe("serve"), confinement_, &error);
  ASSERT_TRUE(child) << error.localizedFailureReason.UTF8String();
  for (const char *request : {"one", "two", "three"})
    EXPECT_EQ(child->exchange(request, kLong), std::string("re: ") + request);
  // From another thread than that which started it, which may end before the child.
  std::optional<std::string> reply;
  std::thread([&] { reply = child->exchange("four", kLong); }).join();
  EXPECT_EQ(reply, "re: four");
  EXPECT_TRUE(child->isRunning());
  EXPECT_EQ(child->reasonOfEnd(), "");
  const auto result = child->waitUntilExit(kLong, &error);
  ASSERT_TRUE(result);
  EXPECT_EQ(result->terminationStatus, 0);
  EXPECT_FALSE(child->isRunning());
}

TEST_F(ChildProcessTest, TellsWhyAWarmChildGaveNoReply) {
  const struct {
    const char *request;
    double seconds;
    ErrorCode code;
    const char *reason;
  } cases[] = {{"crash", 3600, ErrorCode::other, "signal 6 (Aborted): this went wrong (refused: socket)"},
               {"hang", 0.2, ErrorCode::timeLimit, "time limit"},
               {"close", 3600, ErrorCode::other, "exit code 0"},
               {"long", 3600, ErrorCode::tooLarge, "too long"}};
  for (const auto &[request, seconds, code, reason] : cases) {
    NSError error;
    const auto child = ChildProcess::start(probe("serve"), confinement_, &error);
    ASSERT_TRUE(child);
    EXPECT_FALSE(child->exchange(request, Deadline::after(seconds), &error));
    EXPECT_EQ(error.errorCode(), code) << request;
    const std::string told = error.localizedFailureReason.UTF8String();
    if (child->protections().namedRefusals) {
      EXPECT_NE(told.find(reason), std::string::npos) << told;
    }
    EXPECT_FALSE(child->isRunning());
    EXPECT_FALSE(child->exchange("again", Deadline::after(1), &error));
  }
}

TEST_F(ChildProcessTest, NoticesThatItsSupervisorWasKilled) {
  const auto others = ownChildren();
  NSError error;
  const auto child = ChildProcess::start(probe("serve"), confinement_, &error);
  ASSERT_TRUE(child) << error.localizedFailureReason.UTF8String();
  const auto processes = ownChildren();
  const auto supervisor = std::ranges::find_if(
      processes, [&](pid_t process) { return std::ranges::find(others, process) == others.end(); });
  ASSERT_NE(supervisor, processes.end());
  // While the reply is waited for, mostly.
  std::thread killer([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ::kill(*supervisor, SIGKILL);
  });
  EXPECT_FALSE(child->exchange("hang", Deadline::after(20), &error));
  killer.join();
  EXPECT_EQ(error.localizedFailureReason.UTF8String(), "the program was ended from outside");
}

std::ptrdiff_t openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator());
}

TEST_F(ChildProcessTest, FailsWithAReasonAndKeepsNothing) {
  const std::ptrdiff_t before = openDescriptors();
  const auto others = ownChildren();
  const struct {
    ChildProgram program;
    ErrorCode code;
  } cases[] = {{{.launchPath = u"/usr/nowhere"_ns}, ErrorCode::noSuchFile},
               {{.launchPath = u"/etc/passwd"_ns}, ErrorCode::unreadable},
               {{.launchPath = text(outside("no-program"))}, ErrorCode::unreadable},
               {{.launchPath = u"true"_ns}, ErrorCode::other},
               {{}, ErrorCode::other},
               {{.launchPath = u"/bin/true"_ns, .arguments = {u"a\0b"_ns}}, ErrorCode::other}};
  for (const auto &[program, code] : cases) {
    NSError error;
    EXPECT_FALSE(ChildProcess::start(program, confinement_, &error));
    EXPECT_EQ(error.errorCode(), code) << error.localizedFailureReason.UTF8String();
  }
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_EQ(ownChildren(), others) << "a supervisor is left";
}

TEST_F(ChildProcessTest, SaysThatDescriptorsHaveRunOut) {
  rlimit before = {};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const std::ptrdiff_t open = openDescriptors();
  const FileDescriptor next(::open("/", O_PATH | O_CLOEXEC));
  // A child needs five pairs of them.
  for (rlim_t left = 0; left < 10; ++left) {
    const rlimit few = {static_cast<rlim_t>(next.get()) + 1 + left, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    NSError error;
    const bool isStarted = ChildProcess::start(probe("serve"), confinement_, &error) != nullptr;
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(isStarted) << left;
    EXPECT_EQ(error.localizedFailureReason.UTF8String(),
              "a child process cannot be set up: Too many open files")
        << left;
    EXPECT_EQ(openDescriptors(), open + 1) << left;
  }
}

/// Run in a process of its own, which exits with the number of the first thing that is not as it should be.
TEST_F(ChildProcessTest, ConfinesTheCallingProcess) {
  const std::string secret = outside("secret"), own = inside("own");
  const pid_t process = ::fork();
  if (process == 0) {
    confinement_.memoryBytes = std::uint64_t{1} << 50;
    NSError error;
    const Protections protections = confineThisProcess(confinement_, &error);
    if (error) ::_exit(1);
    if (protections.reading && ::open(secret.c_str(), O_RDONLY) >= 0) ::_exit(2);
    if (protections.writing && ::open(secret.c_str(), O_WRONLY) >= 0) ::_exit(3);
    if (protections.network && ::socket(AF_INET, SOCK_STREAM, 0) >= 0) ::_exit(4);
    if (protections.processes && ::fork() >= 0) ::_exit(5);
    if (protections.namedRefusals || protections.descendants) ::_exit(6);
    ::_exit(::open(own.c_str(), O_WRONLY | O_CREAT, 0600) >= 0 ? 0 : 7);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(PrivateFolder, IsRemovedWithItsContentEvenAfterAKill) {
  std::string left;
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const pid_t process = ::fork();
  if (process == 0) {
    const auto folder = PrivateFolder::make();
    const std::string path = folder->path().UTF8String();
    if (::write(ends[1], path.data(), path.size()) < 0) ::_exit(1);
    for (;;) ::pause();
  }
  ASSERT_GT(process, 1);
  char path[4096] = {};
  ASSERT_GT(::read(ends[0], path, sizeof path - 1), 0);
  const auto other = PrivateFolder::make();
  EXPECT_TRUE(std::filesystem::exists(path)) << "it is in use";
  ::kill(process, SIGKILL);
  ::waitpid(process, nullptr, 0);
  const auto folder = PrivateFolder::make();
  EXPECT_FALSE(std::filesystem::exists(path));
  struct stat info = {};
  const std::string name = folder->path().UTF8String();
  ASSERT_EQ(::stat(name.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700u);
  std::filesystem::create_directories(folder->pathOf("a/b").UTF8String());
  folder->clear();
  EXPECT_TRUE(std::filesystem::is_empty(name));
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(PrivateFolder, TellsThatThereIsNoTemporaryFolder) {
  const EnvironmentSetting setting("TMPDIR", "/no/such/folder");
  NSError error;
  EXPECT_FALSE(PrivateFolder::make(&error));
  const std::string reason = error.localizedFailureReason.UTF8String();
  EXPECT_TRUE(reason.starts_with("no temporary folder can be made: ")) << reason;
}

}  // namespace
}  // namespace nimbo
