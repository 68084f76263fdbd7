// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Desktop/SessionBus.hpp"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>

namespace nimbo::detail {
namespace {

constexpr double kConnectSeconds = 5;
constexpr int kCallMilliseconds = 5000;

/// The address of the bus; empty when the session has none. GIO would start one.
std::string busAddress() {
  if (const char *address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && address[0]) return address;
  const char *folder = std::getenv("XDG_RUNTIME_DIR");
  if (!folder || folder[0] != '/') return std::string();
  const std::filesystem::path path = std::filesystem::path(folder) / "bus";
  std::error_code error;
  if (!std::filesystem::is_socket(path, error)) return std::string();
  char *escaped = g_dbus_address_escape_value(path.c_str());
  std::string address = std::string("unix:path=") + escaped;
  g_free(escaped);
  return address;
}

/// Runs the context until `isDone` or the deadline.
void runContext(GMainContext *context, const Deadline &deadline, const std::function<bool()> &isDone) {
  // It wakes the context, which has no time limit of its own.
  GSource *const alarm = g_timeout_source_new(
      static_cast<guint>(std::min(deadline.isNever() ? INT_MAX : deadline.remainingMilliseconds(), INT_MAX)));
  g_source_set_callback(
      alarm, [](void *) -> gboolean { return G_SOURCE_REMOVE; }, nullptr, nullptr);
  g_source_attach(alarm, context);
  while (!isDone() && !deadline.isOver()) g_main_context_iteration(context, TRUE);
  g_source_destroy(alarm);
  g_source_unref(alarm);
}

/// What came of connecting.
struct Connecting {
  GDBusConnection *connection = nullptr;
  bool isOver = false;

  static void finish(GObject *, GAsyncResult *result, void *connecting) {
    auto &self = *static_cast<Connecting *>(connecting);
    self.connection = g_dbus_connection_new_for_address_finish(result, nullptr);
    self.isOver = true;
  }
  /// Waits for the end in a thread of its own: the bus's greeting cannot be cancelled.
  static void abandon(GMainContext *context, std::shared_ptr<Connecting> connecting) {
    g_main_context_ref(context);
    std::thread([context, connecting = std::move(connecting)] {
      while (!connecting->isOver) g_main_context_iteration(context, TRUE);
      if (connecting->connection) g_object_unref(connecting->connection);
      g_main_context_unref(context);
    }).detach();
  }
};

}  // namespace

SessionBus::SessionBus() : context_(g_main_context_new()) {
  const std::string address = busAddress();
  if (address.empty()) return;
  const auto connecting = std::make_shared<Connecting>();
  GCancellable *const cancellable = g_cancellable_new();
  g_main_context_push_thread_default(context_);
  g_dbus_connection_new_for_address(
      address.c_str(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, cancellable, &Connecting::finish, connecting.get());
  runContext(context_, Deadline::after(kConnectSeconds), [&] { return connecting->isOver; });
  g_main_context_pop_thread_default(context_);
  g_cancellable_cancel(cancellable);
  g_object_unref(cancellable);
  connection_ = connecting->connection;
  if (!connecting->isOver) Connecting::abandon(context_, connecting);
}

SessionBus::~SessionBus() {
  if (connection_) {
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    g_object_unref(connection_);
  }
  g_main_context_unref(context_);
}

Variant SessionBus::call(const BusService &service, const char *method, GVariant *parameters) const {
  return Variant(g_dbus_connection_call_sync(connection_, service.name, service.path, service.interface, method,
                                             parameters, nullptr, G_DBUS_CALL_FLAGS_NONE, kCallMilliseconds,
                                             nullptr, nullptr));
}

void SessionBus::receive(GDBusConnection *, const char *, const char *, const char *, const char *name,
                         GVariant *parameters, void *bus) {
  static_cast<SessionBus *>(bus)->handler_(name, parameters);
}

void SessionBus::subscribe(const BusService &service, SignalHandler handler) {
  handler_ = std::move(handler);
  g_main_context_push_thread_default(context_);
  g_dbus_connection_signal_subscribe(connection_, service.name, service.interface, nullptr, service.path,
                                     nullptr, G_DBUS_SIGNAL_FLAGS_NONE, &SessionBus::receive, this, nullptr);
  g_dbus_connection_signal_subscribe(connection_, "org.freedesktop.DBus", "org.freedesktop.DBus",
                                     "NameOwnerChanged", "/org/freedesktop/DBus", service.name,
                                     G_DBUS_SIGNAL_FLAGS_NONE, &SessionBus::receive, this, nullptr);
  g_main_context_pop_thread_default(context_);
}

void SessionBus::wait(const Deadline &deadline, const std::function<bool()> &isDone) const {
  runContext(context_, deadline, [&] { return isDone() || g_dbus_connection_is_closed(connection_); });
}

}  // namespace nimbo::detail
