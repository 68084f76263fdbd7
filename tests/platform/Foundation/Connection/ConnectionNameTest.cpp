// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionName.hpp"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "platform/Foundation/NSConnection.hpp"
#include "tests/platform/Foundation/Connection/ConnectionClients.hpp"

namespace nimbo {
namespace {

using ConnectionNameTest = ConnectionFixture;

TEST_F(ConnectionNameTest, ALivingOwnerKeepsItsNameAndADeadOneLosesIt) {
  const int helper = startHelper();
  NSConnection second;
  EXPECT_FALSE(second.registerName(name()));
  // Whoever listens is alive, even when somebody has removed its lock.
  std::filesystem::remove(file(".lock"));
  EXPECT_FALSE(second.registerName(name()));
  EXPECT_TRUE(RawClient().answers());

  ::kill(helper, SIGKILL);
  ::waitpid(helper, nullptr, 0);
  EXPECT_TRUE(std::filesystem::is_socket(file()));
  EXPECT_FALSE(connectToConnectionName(name()));
  EXPECT_TRUE(second.registerName(name()));
  EXPECT_TRUE(second.registerName(name()));
  EXPECT_FALSE(second.registerName(u".."_ns));
  EXPECT_TRUE(connectToConnectionName(name()));
  EXPECT_TRUE(second.registerName(u"another"_ns) && connectToConnectionName(u"another"_ns));
  EXPECT_FALSE(connectToConnectionName(name()));
}

TEST_F(ConnectionNameTest, ACopyOfTheProcessListensUnderNoName) {
  auto first = std::make_unique<NSConnection>();
  NSConnection second;
  ASSERT_TRUE(first->registerName(u"first"_ns) && second.registerName(u"second"_ns));
  const auto countListeners = [] {
    int count = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
      int listens = 0;
      socklen_t length = sizeof listens;
      count += ::getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &length) == 0 && listens;
    }
    return count;
  };
  const auto listenersOfACopy = [&] {
    const pid_t copy = ::fork();
    if (copy == 0) ::_exit(countListeners());
    int status = -1;
    ::waitpid(copy, &status, 0);
    return WEXITSTATUS(status);
  };
  EXPECT_EQ(countListeners(), 2);
  EXPECT_EQ(listenersOfACopy(), 0);
  first.reset();
  EXPECT_EQ(countListeners(), 1);
  EXPECT_EQ(listenersOfACopy(), 0);
}

TEST_F(ConnectionNameTest, NamesAndFoldersThatCannotBeTrustedAreRefused) {
  for (const NSString &bad : {NSString(), u""_ns, u"."_ns, u".."_ns, u"a/b"_ns, u"a\0b"_ns})
    EXPECT_FALSE(listenOnConnectionName(bad, {}));
  std::ofstream(file()) << "precious";
  EXPECT_FALSE(listenOnConnectionName(name(), {}));
  EXPECT_TRUE(std::filesystem::is_regular_file(file()));
  std::filesystem::remove(file());

  const ConnectionListener listener = listenOnConnectionName(name(), {});
  struct stat info = {};
  ASSERT_EQ(::stat(file().c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0600u);
  EXPECT_EQ(peerProcessIdentifier(connectToConnectionName(name())), ::getpid());
  ::chmod(file().c_str(), 0666);
  EXPECT_FALSE(connectToConnectionName(name()));
  ::chmod(file().c_str(), 0600);
  // Once the listener takes no more, a client waits no longer than its limit.
  bool isBusy = false;
  std::vector<FileDescriptor> waiting;
  while (!isBusy && waiting.size() < 1000) {
    waiting.push_back(connectToConnectionName(name(), 0.01, &isBusy));
    ASSERT_EQ(isBusy, !waiting.back());
  }
  EXPECT_TRUE(isBusy);

  ::chmod(folder.c_str(), 0777);
  EXPECT_FALSE(openConnectionFolder());
  ::chmod(folder.c_str(), 0700);
  ::setenv("QUIVERLEAF_RUNTIME_DIR", "relative", 1);
  EXPECT_FALSE(openConnectionFolder());
  // Longer than a socket's address may be.
  ::setenv("QUIVERLEAF_RUNTIME_DIR", (folder / std::string(150, 'x')).c_str(), 1);
  const ConnectionListener deep = listenOnConnectionName(name(), {});
  EXPECT_TRUE(deep);
  EXPECT_TRUE(connectToConnectionName(name()));
}

TEST_F(ConnectionNameTest, OtherUsersAreTurnedAway) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  startHelper();
  ASSERT_EQ(::chown(folder.c_str(), 65534, 0), 0);
  EXPECT_FALSE(openConnectionFolder());
  ASSERT_EQ(::chown(folder.c_str(), 0, 0), 0);
  ASSERT_EQ(::chown(file().c_str(), 65534, 0), 0);
  EXPECT_FALSE(connectToConnectionName(name()));
  ASSERT_EQ(::chown(file().c_str(), 0, 0), 0);
  ::chmod(folder.c_str(), 0755);
  const FileDescriptor place = openConnectionFolder();
  ::chmod(file().c_str(), 0666);
  const pid_t other = ::fork();
  if (other == 0) {
    sockaddr_un address = {AF_UNIX, {}};
    const std::string path = "/proc/self/fd/" + std::to_string(place.get()) + "/" + name().UTF8String();
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    char byte;
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    if (::setuid(65534) != 0 || ::connect(socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
      ::_exit(2);
    ::_exit(::recv(socket, &byte, 1, 0) == 0 ? 0 : 1);
  }
  int status = 0;
  ::waitpid(other, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  ::chmod(file().c_str(), 0600);
  EXPECT_TRUE(RawClient().answers());
}

}  // namespace
}  // namespace nimbo
