// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSRunLoop.hpp"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

#include "platform/Foundation/NSLog.hpp"

namespace nimbo {
namespace {

using Function = std::function<void()>;

/// Rounded up; not-a-number counts as 0.
guint millisecondsOf(double seconds) {
  constexpr double kLongestMilliseconds = G_MAXUINT;
  return seconds > 0 ? static_cast<guint>(std::min(std::ceil(seconds * 1000), kLongestMilliseconds)) : 0;
}

gboolean callOnce(gpointer function) {
  try {
    (*static_cast<Function *>(function))();
  } catch (const std::exception &exception) {
    NSLog(exception.what());
  } catch (...) {
    NSLog("an exception of an unknown type");
  }
  return G_SOURCE_REMOVE;
}

}  // namespace

NSRunLoop &NSRunLoop::currentRunLoop() {
  static thread_local NSRunLoop loop;
  return loop;
}

void NSRunLoop::run() {
  for (;;) g_main_context_iteration(g_main_context_get_thread_default(), TRUE);
}

void NSRunLoop::runUntilDate(NSDate limitDate) {
  const double seconds =
      limitDate.timeIntervalSinceReferenceDate - NSDate::date().timeIntervalSinceReferenceDate;
  GMainContext *context = g_main_context_get_thread_default();
  bool isOver = false;
  GSource *timer = g_timeout_source_new(millisecondsOf(seconds));
  const auto end = [](gpointer flag) -> gboolean {
    *static_cast<bool *>(flag) = true;
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(timer, end, &isOver, nullptr);
  g_source_attach(timer, context);
  while (!isOver) g_main_context_iteration(context, TRUE);
  g_source_unref(timer);
}

NSRunLoop::Timer NSRunLoop::performAfterDelay(double seconds, std::function<void()> function) {
  GSource *const source = g_timeout_source_new(millisecondsOf(seconds));
  g_source_set_callback(source, callOnce, new Function(std::move(function)),
                        [](gpointer called) { delete static_cast<Function *>(called); });
  const Timer timer = g_source_attach(source, g_main_context_get_thread_default());
  g_source_unref(source);
  return timer;
}

void NSRunLoop::cancel(Timer timer) {
  GSource *const source = g_main_context_find_source_by_id(g_main_context_get_thread_default(), timer);
  if (source) g_source_destroy(source);
}

}  // namespace nimbo
