// SPDX-License-Identifier: Apache-2.0
// A helper for the tests: its operations answer, fail, hang and die on demand. It leaves a file "started.PID"
// in the runtime folder, so that a test can count the helpers that were started.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>

#include "helper/NimboImExport.hpp"
#include "platform/Foundation/Connection/ConnectionName.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSRunLoop.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"
#include "platform/Foundation/System/SignalSource.hpp"

using namespace nimbo;

namespace {

class TestRoot final : public NSConnectionRootObject {
 public:
  id perform(const NSString &selector, const NSDictionary &arguments, NSError *error) override {
    const std::string operation = selector.UTF8String();
    const id &value = arguments.objectForKey(selector.substringWithRange({0, selector.length() - 1}));
    if (operation == "nil") return id();
    if (operation == "fail") {
      *error = NSError::errorWithCode(ErrorCode::damaged, "the test asked for it");
      return id();
    }
    if (operation == "leaveOut") *error = NSError::errorWithCode(ErrorCode::timeLimit, "pages are left out");
    if (operation == "failOddly") *error = {u"AnotherDomain"_ns, 260};
    if (operation == "raise") throw NSException(u"TestException"_ns, u"as it was told"_ns);
    if (operation == "exhaust") throw std::bad_alloc();
    if (operation == "throwNumber") throw 42;
    if (operation == "crash") {
      // Its connections end some time before it does.
      ::close_range(STDERR_FILENO + 1, ~0u, 0);
      ::usleep(50'000);
      ::kill(::getpid(), SIGKILL);
    }
    // Below those that are left there is a hole, as of the document.
    const FileDescriptor document(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    if (operation == "leave:")
      for (std::int64_t i = 0; i < *value.integer(); ++i) ::fcntl(STDIN_FILENO, F_DUPFD, 0);
    if (operation == "lowerLimit") {
      const rlimit few = {8, 8};
      ::setrlimit(RLIMIT_NOFILE, &few);
    }
    if (operation == "crashBesideCopy") {
      std::thread([] {
        if (::fork() == 0) ::_exit(static_cast<int>(::sleep(10)));
      }).join();
      ::kill(::getpid(), SIGKILL);
    }
    if (operation == "unwritable") return nested(2000);
    if (operation == "sleep:") std::this_thread::sleep_for(std::chrono::duration<double>(*value.real()));
    if (operation == "runLoop:") {
      const NSDate end{NSDate::date().timeIntervalSinceReferenceDate + *value.real()};
      NSRunLoop::currentRunLoop().runUntilDate(end);
    }
    if (operation == "length:") return value.data().length();
    if (operation == "bytes:")
      return NSData::dataWithMallocedBytes(std::calloc(*value.integer(), 1), *value.integer());
    if (operation == "note:") notes_.addObject(value);
    if (operation == "notes") return notes_;
    return NSDictionary{{u"Selector"_ns, selector}, {u"Arguments"_ns, arguments}};
  }

 private:
  static id nested(int depth) {
    NSArray list = NSArray::array();
    for (; depth > 0; --depth) list = NSArray{list};
    return list;
  }

  NSArray notes_ = NSArray::array();
};

double setting(const char *name, double usual) {
  const char *value = std::getenv(name);
  return value ? std::atof(value) : usual;
}

}  // namespace

int main() {
  returnLargeBytesWhenFreed();
  const std::string name = "started." + std::to_string(::getpid());
  const FileDescriptor mark(
      ::openat(openConnectionFolder().get(), name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  NSConnection &connection = NSConnection::defaultConnection();
  TestRoot root;
  connection.setRootObject(&root);
  connection.setVersion(u"1.2"_ns);
  connection.setInvalidationHandler([] { std::_Exit(EXIT_SUCCESS); });
  callOnSignal(SIGTERM, [&] { connection.invalidate(); });
  connection.setIdleLimit(setting("TEST_HELPER_IDLE_SECONDS", 0));
  connection.setAbandonedWorkLimit(setting("TEST_HELPER_ABANDONED_SECONDS", 0));
  connection.setReachabilityInterval(setting("TEST_HELPER_LOOK_SECONDS", 30));
  connection.registerName(NSString::stringWithCharacters(kHelperConnectionName));
  connection.setRequestTimeout(setting("TEST_HELPER_TIMEOUT", 15));
  connection.setReplyTimeout(setting("TEST_HELPER_TIMEOUT", 15));
  NSRunLoop::currentRunLoop().run();
}
