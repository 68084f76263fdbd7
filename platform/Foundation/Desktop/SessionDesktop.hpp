// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Desktop/DesktopServices.hpp"

namespace nimbo {

/// The services of the session's desktop over its message bus: notifications, whose actions are the buttons,
/// and the portal for URLs, or a program where there is no portal. Without a bus, or without such a service on
/// it, alerts and addresses go to the standard error.
class SessionDesktop final : public DesktopServices {
 public:
  struct Options {
    /// How long an alert that asks something is waited for.
    double alertSeconds = 0;
    /// The program that opens a URL, by its absolute path.
    NSString browserTool;
  };

  explicit SessionDesktop(Options options) : options_(std::move(options)) {}

  std::optional<std::size_t> runAlert(const DesktopAlert &alert) override;
  bool openURL(const NSURL &url) override;

 private:
  Options options_;
};

}  // namespace nimbo
