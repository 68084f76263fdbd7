// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Desktop/SessionDesktop.hpp"

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

#include "platform/Foundation/System/Deadline.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

constexpr const char *kInterfaces =
    "<node><interface name='org.freedesktop.Notifications'>"
    "<method name='GetCapabilities'><arg type='as' direction='out'/></method>"
    "<method name='Notify'><arg type='s' direction='in'/><arg type='u' direction='in'/><arg type='s' "
    "direction='in'/>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='as' direction='in'/>"
    "<arg type='a{sv}' direction='in'/><arg type='i' direction='in'/><arg type='u' direction='out'/></method>"
    "<method name='CloseNotification'><arg type='u' direction='in'/></method></interface>"
    "<interface name='org.freedesktop.portal.OpenURI'><method name='OpenURI'><arg type='s' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='a{sv}' direction='in'/><arg type='o' direction='out'/></method>"
    "</interface></node>";

constexpr const char *kPath = "/org/freedesktop/Notifications";
constexpr const char *kName = "org.freedesktop.Notifications";

/// A desktop of notifications on a connection of its own, which writes down what it is asked and then does what
/// the test says.
class FakeDesktop {
 public:
  explicit FakeDesktop(const std::string &address) : thread_([this, address] { serve(address); }) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isReady_; });
  }
  ~FakeDesktop() {
    stop();
    if (thread_.joinable()) thread_.join();
  }

  /// Leaves the bus, as when it crashes.
  void stop() {
    g_main_context_invoke(
        context_,
        [](void *self) -> gboolean {
          g_main_loop_quit(static_cast<FakeDesktop *>(self)->loop_);
          return G_SOURCE_REMOVE;
        },
        this);
  }
  /// What it was asked so far, and begins anew.
  std::string takeAsked() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(asked_, std::string());
  }

  // What it can, and the signals that follow a notification, with the number that they are about counted from
  // it.
  bool hasActions = true;
  bool hasMarkup = true;
  bool leaves = false;
  bool refuses = false;
  struct Signal {
    std::uint32_t offset;
    const char *action;
  };
  std::vector<Signal> signals;

 private:
  void serve(const std::string &address) {
    context_ = g_main_context_new();
    g_main_context_push_thread_default(context_);
    loop_ = g_main_loop_new(context_, FALSE);
    connection_ = g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    GDBusNodeInfo *const node = g_dbus_node_info_new_for_xml(kInterfaces, nullptr);
    const GDBusInterfaceVTable table = {&FakeDesktop::answer, nullptr, nullptr, {}};
    g_dbus_connection_register_object(connection_, kPath, node->interfaces[0], &table, this, nullptr, nullptr);
    g_dbus_connection_register_object(connection_, "/org/freedesktop/portal/desktop", node->interfaces[1],
                                      &table, this, nullptr, nullptr);
    own(kName);
    own("org.freedesktop.portal.Desktop");
    {
      const std::scoped_lock lock(mutex_);
      isReady_ = true;
    }
    changed_.notify_all();
    g_main_loop_run(loop_);
    g_dbus_node_info_unref(node);
    g_dbus_connection_flush_sync(connection_, nullptr, nullptr);
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    g_object_unref(connection_);
    g_main_loop_unref(loop_);
    g_main_context_pop_thread_default(context_);
  }
  void own(const char *name) {
    GVariant *const answer = g_dbus_connection_call_sync(
        connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name, 4U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    if (answer) g_variant_unref(answer);
  }
  void emit(const char *signal, GVariant *parameters) {
    g_dbus_connection_emit_signal(connection_, nullptr, kPath, kName, signal, parameters, nullptr);
  }

  static void answer(GDBusConnection *, const char *, const char *, const char *, const char *method,
                     GVariant *parameters, GDBusMethodInvocation *call, void *desktop) {
    auto &self = *static_cast<FakeDesktop *>(desktop);
    const std::string_view name = method;
    if (name == "GetCapabilities") {
      GVariantBuilder capabilities;
      g_variant_builder_init(&capabilities, G_VARIANT_TYPE("as"));
      if (self.hasActions) g_variant_builder_add(&capabilities, "s", "actions");
      if (self.hasMarkup) g_variant_builder_add(&capabilities, "s", "body-markup");
      g_dbus_method_invocation_return_value(call, g_variant_new("(as)", &capabilities));
      return;
    }
    char *const text = g_variant_print(parameters, FALSE);
    {
      const std::scoped_lock lock(self.mutex_);
      self.asked_ += std::string(name) + text + "\n";
    }
    g_free(text);
    if (name == "OpenURI") {
      g_dbus_method_invocation_return_value(call, g_variant_new("(o)", "/request"));
    } else if (name == "CloseNotification") {
      g_dbus_method_invocation_return_value(call, nullptr);
    } else if (self.refuses) {
      g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.Notifications.Error", "no");
    } else {
      // A quick person: the signals are there before the answer that names the notification.
      const std::uint32_t number = ++self.number_;
      for (const auto &[offset, action] : self.signals)
        action ? self.emit("ActionInvoked", g_variant_new("(us)", number + offset, action))
               : self.emit("NotificationClosed", g_variant_new("(uu)", number + offset, 2U));
      g_dbus_method_invocation_return_value(call, g_variant_new("(u)", number));
      if (self.leaves) self.stop();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isReady_ = false;
  std::string asked_;
  std::uint32_t number_ = 40;
  GMainContext *context_ = nullptr;
  GMainLoop *loop_ = nullptr;
  GDBusConnection *connection_ = nullptr;
  std::thread thread_;
};

/// A session with a message bus of its own, which is the environment's.
class SessionDesktopTest : public testing::Test {
 protected:
  void SetUp() override {
    bus_ = g_test_dbus_new(G_TEST_DBUS_NONE);
    g_test_dbus_up(bus_);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", g_test_dbus_get_bus_address(bus_), 1);
  }
  void TearDown() override {
    g_test_dbus_stop(bus_);
    g_object_unref(bus_);
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  }
  std::string address() const { return g_test_dbus_get_bus_address(bus_); }

  const DesktopAlert question{.title = u"Title"_ns,
                              .message = u"a < \"b\"\x1b"_ns,
                              .buttons = {u"Yes"_ns, u"No"_ns},
                              .address = NSURL::URLWithString(u"http://h/?a&b"_ns)};
  SessionDesktop desktop{{.alertSeconds = 3600, .browserTool = u"/nowhere/browser"_ns}};

 private:
  GTestDBus *bus_ = nullptr;
};

TEST_F(SessionDesktopTest, AsksByNotificationsWithActions) {
  const struct {
    std::vector<FakeDesktop::Signal> signals;
    std::optional<std::size_t> pressed;
  } cases[] = {
      {{{0, "0"}}, 0},
      {{{0, "1"}, {0, nullptr}}, 1},
      {{{0, "default"}}, 0},
      {{{1, "0"}, {1, nullptr}, {0, "1"}}, 1},
      {{{0, nullptr}, {0, "0"}}, std::nullopt},
      {{{0, "2"}}, std::nullopt},
      {{{0, "1x"}}, std::nullopt},
      {{{0, ""}}, std::nullopt},
  };
  FakeDesktop fake(address());
  for (const auto &[signals, pressed] : cases) {
    fake.signals = signals;
    EXPECT_EQ(desktop.runAlert(question), pressed);
    EXPECT_EQ(fake.takeAsked(),
              "Notify('Quiverleaf', 0, '', 'Title', 'a &lt; &quot;b&quot;&#x1b;', ['default', 'Yes', '0', "
              "'Yes', '1', "
              "'No'], {}, 0)\n");
  }
}

TEST_F(SessionDesktopTest, DoesNotWaitForEver) {
  FakeDesktop fake(address());
  SessionDesktop hasty({.alertSeconds = 0.2, .browserTool = {}});
  EXPECT_EQ(hasty.runAlert(question), std::nullopt);
  EXPECT_TRUE(fake.takeAsked().ends_with("CloseNotification(41,)\n"));
  EXPECT_EQ(desktop.runAlert({.title = u"News"_ns}), std::nullopt);
  fake.hasActions = fake.hasMarkup = false;
  EXPECT_EQ(desktop.runAlert(question), std::nullopt);
  EXPECT_EQ(fake.takeAsked(),
            "Notify('Quiverleaf', 0, '', 'News', '', [], {}, -1)\n"
            "Notify('Quiverleaf', 0, '', 'Title', 'a < \"b\"\\u001b\\nhttp://h/?a&b', [], {}, -1)\n");
  fake.refuses = true;
  testing::internal::CaptureStderr();
  EXPECT_EQ(desktop.runAlert({.title = u"News"_ns}), std::nullopt);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "News\n");
  fake.refuses = false;
  fake.hasActions = fake.leaves = true;
  EXPECT_EQ(desktop.runAlert(question), std::nullopt);
}

TEST_F(SessionDesktopTest, OpensURLsByThePortalOrATool) {
  const NSURL url = NSURL::URLWithString(u"http://h/a%20b"_ns);
  {
    FakeDesktop fake(address());
    EXPECT_FALSE(desktop.openURL(NSURL()));
    EXPECT_TRUE(desktop.openURL(url));
    EXPECT_EQ(fake.takeAsked(), "OpenURI('', 'http://h/a%20b', {})\n");
  }
  EXPECT_FALSE(desktop.openURL(url));
  const TemporaryFolder folder;
  const NSString tool =
      folder.write("browser", "#!/bin/sh\nread line <\"$0.fifo\"\necho \"$line $1\" >\"$0.opened\"\n");
  std::filesystem::permissions(folder.path() / "browser", std::filesystem::perms(0755));
  const std::string fifo = folder.path() / "browser.fifo";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  SessionDesktop other({.alertSeconds = 60, .browserTool = tool});
  // The tool is not waited for: it goes on when it is told to.
  EXPECT_TRUE(other.openURL(url));
  std::ofstream(fifo) << "opened\n";
  std::string opened;
  for (int i = 0; i < 500 && opened.empty(); ++i) {
    ::usleep(10'000);
    std::getline(std::ifstream(folder.path() / "browser.opened"), opened);
  }
  EXPECT_EQ(opened, "opened http://h/a%20b");
}

TEST(SessionDesktop, GivesUpABusThatDoesNotGreet) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / "bus";
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
  path.native().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  FILE *stream = nullptr;
  std::thread bus([listener, &stream] {
    const int client = ::accept(listener, nullptr, nullptr);
    stream = ::fdopen(client, "r");
    char line[4096];
    std::string_view text;
    while (!text.starts_with("BEGIN") && std::fgets(line, sizeof line, stream)) {
      text = line;
      const std::string_view answer = text.find("AUTH EXTERNAL") != text.npos
                                          ? "OK 1234deadbeef1234deadbeef12345678\r\n"
                                      : text.starts_with("NEGOTIATE") ? "AGREE_UNIX_FD\r\n"
                                      : text.starts_with("BEGIN")     ? ""
                                                                      : "REJECTED EXTERNAL\r\n";
      ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
    }
  });
  ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path.native()).c_str(), 1);
  SessionDesktop desktop({.alertSeconds = 60, .browserTool = {}});
  const Deadline deadline = Deadline::after(20);
  testing::internal::CaptureStderr();
  EXPECT_EQ(desktop.runAlert({.title = u"T"_ns}), std::nullopt);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "T\n");
  EXPECT_FALSE(deadline.isOver());
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  bus.join();
  std::fclose(stream);
  ::close(listener);
}

TEST(SessionDesktop, FindsTheBusInTheFolderOfTheSession) {
  const TemporaryFolder folder;
  // The address of a bus has its own meaning of most of these.
  const std::filesystem::path session = folder.path() / "a b,c=%41;d";
  std::filesystem::create_directory(session);
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
  (session / "bus").native().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  bool isFound = false;
  std::thread bus([listener, &isFound] {
    pollfd waiting = {listener, POLLIN, 0};
    isFound = ::poll(&waiting, 1, 10000) == 1;
    if (isFound) ::close(::accept(listener, nullptr, nullptr));
  });
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  ::setenv("XDG_RUNTIME_DIR", session.c_str(), 1);
  SessionDesktop desktop({.alertSeconds = 60, .browserTool = {}});
  testing::internal::CaptureStderr();
  EXPECT_EQ(desktop.runAlert({.title = u"T"_ns}), std::nullopt);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "T\n");
  ::unsetenv("XDG_RUNTIME_DIR");
  bus.join();
  EXPECT_TRUE(isFound);
  ::close(listener);
}

TEST(SessionDesktop, TellsTheStandardErrorWithoutADesktop) {
  const TemporaryFolder folder;
  const std::string none = "unix:path=" + (folder.path() / "none").native();
  const NSURL url = NSURL::URLWithString(u"http://h/"_ns);
  SessionDesktop desktop({.alertSeconds = 60, .browserTool = u"/bin/false"_ns});
  ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  for (const char *address : {"", none.c_str(), "nonsense"}) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(desktop.runAlert({.title = u"T\x1f\x7f"_ns,
                                .message = u"\u009f\u00a0m\u0080"_ns,
                                .buttons = {u"b"_ns},
                                .address = url}),
              std::nullopt);
    EXPECT_FALSE(desktop.openURL(url));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "T  \n  \u00a0m   http://h/\nhttp://h/\n") << address;
  }
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  ::unsetenv("XDG_RUNTIME_DIR");
}

}  // namespace
}  // namespace nimbo
