// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSRunLoop.hpp"

#include <glib.h>

#include <algorithm>
#include <cmath>

namespace nimbo {

NSRunLoop &NSRunLoop::currentRunLoop() {
  static thread_local NSRunLoop loop;
  return loop;
}

void NSRunLoop::run() {
  for (;;) g_main_context_iteration(g_main_context_get_thread_default(), TRUE);
}

void NSRunLoop::runUntilDate(NSDate limitDate) {
  constexpr double kLongestMilliseconds = G_MAXUINT;
  const double seconds =
      limitDate.timeIntervalSinceReferenceDate - NSDate::date().timeIntervalSinceReferenceDate;
  const double milliseconds = std::clamp(std::ceil(seconds * 1000), 0.0, kLongestMilliseconds);
  GMainContext *context = g_main_context_get_thread_default();
  bool isOver = false;
  GSource *timer = g_timeout_source_new(static_cast<guint>(milliseconds));
  const auto end = [](gpointer flag) -> gboolean {
    *static_cast<bool *>(flag) = true;
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(timer, end, &isOver, nullptr);
  g_source_attach(timer, context);
  while (!isOver) g_main_context_iteration(context, TRUE);
  g_source_unref(timer);
}

}  // namespace nimbo
