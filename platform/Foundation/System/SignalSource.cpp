// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/SignalSource.hpp"

#include <glib-unix.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

namespace nimbo {
namespace {

using Function = std::function<void()>;

int signalEvents = -1;

void noteSignal(int) {
  const int error = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = ::write(signalEvents, &one, sizeof one);
  errno = error;
}

gboolean callFunction(gint events, GIOCondition, gpointer function) {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t got = ::read(events, &count, sizeof count);
  (*static_cast<Function *>(function))();
  return G_SOURCE_CONTINUE;
}

}  // namespace

void callOnSignal(int signal, Function function) {
  signalEvents = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  GSource *const source = g_unix_fd_source_new(signalEvents, G_IO_IN);
  g_source_set_callback(source, G_SOURCE_FUNC(callFunction), new Function(std::move(function)),
                        [](gpointer called) { delete static_cast<Function *>(called); });
  // What a signal asks for comes before the work that waits.
  g_source_set_priority(source, G_PRIORITY_HIGH);
  g_source_attach(source, g_main_context_get_thread_default());
  g_source_unref(source);
  struct sigaction action = {};
  action.sa_handler = noteSignal;
  action.sa_flags = SA_RESTART;
  ::sigaction(signal, &action, nullptr);
}

}  // namespace nimbo
