// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a person is told, and perhaps asked. It is a plain value.
struct DesktopAlert {
  /// One line.
  NSString title;
  /// More text; nil when the title says all.
  NSString message = {};
  /// The answers to choose from, the first of which is the usual one; none when nothing is asked.
  std::vector<NSString> buttons = {};
  /// The address that the message is about, for people who can press no button; nil when there is none.
  NSURL address = {};
};

/// What a desktop does for programs without windows of their own. One thread uses it at a time.
///
///     DesktopServices &desktop = DesktopServices::shared();
///     const DesktopAlert alert{.title = u"Open the page?"_ns, .buttons = {u"Open"_ns, u"Cancel"_ns}};
///     if (desktop.runAlert(alert) == 0u) desktop.openURL(page);
class DesktopServices {
 public:
  DesktopServices() = default;
  DesktopServices(const DesktopServices &) = delete;
  DesktopServices &operator=(const DesktopServices &) = delete;
  virtual ~DesktopServices();

  /// Shows the alert. One that asks something is waited for: the index of the button that was pressed, or
  /// nothing when none was, or when nobody can press one.
  virtual std::optional<std::size_t> runAlert(const DesktopAlert &alert) = 0;
  /// Has the URL opened by the program that the user likes best for it, as a browser. Whether it was handed on.
  virtual bool openURL(const NSURL &url) = 0;

  /// Those that are in use: of the session's desktop, when it has one, else the standard error. What they do is
  /// configured by the user defaults "AlertTimeLimit" and "BrowserTool".
  static DesktopServices &shared();
  /// Has others used instead, which the caller keeps as long as they are; null brings the standard ones back.
  static void setShared(DesktopServices *services);
};

}  // namespace nimbo
