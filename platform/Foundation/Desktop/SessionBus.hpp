// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo::detail {

struct ReleaseVariant {
  void operator()(GVariant *variant) const { g_variant_unref(variant); }
};
/// One reference to a value of a message; null when there is none.
using Variant = std::unique_ptr<GVariant, ReleaseVariant>;

/// A name on the bus with the object and the interface that are asked there.
struct BusService {
  const char *name;
  const char *path;
  const char *interface;
};

/// A connection to the message bus of the user's session, of this thread alone. No bus is started for it, and
/// nothing is waited for longer than a few seconds.
class SessionBus {
 public:
  /// Gets the name of a signal and what it carries.
  using SignalHandler = std::function<void(std::string_view name, GVariant *parameters)>;

  /// Connects, if there is a session with a bus.
  SessionBus();
  SessionBus(const SessionBus &) = delete;
  SessionBus &operator=(const SessionBus &) = delete;
  ~SessionBus();

  /// Whether there is a connection.
  explicit operator bool() const { return connection_ != nullptr; }
  /// Calls a method and waits for its answer; null when there is none. Takes over floating parameters.
  Variant call(const BusService &service, const char *method, GVariant *parameters) const;
  /// From now on, signals of the service are handed over while `wait` runs; "NameOwnerChanged" when it goes or
  /// comes. Called once.
  void subscribe(const BusService &service, SignalHandler handler);
  /// Hands over signals until `isDone` or the deadline, or until the bus has gone.
  void wait(const Deadline &deadline, const std::function<bool()> &isDone) const;

 private:
  static void receive(GDBusConnection *, const char *sender, const char *path, const char *interface,
                      const char *name, GVariant *parameters, void *bus);

  GMainContext *context_;
  GDBusConnection *connection_ = nullptr;
  SignalHandler handler_;
};

}  // namespace nimbo::detail
