// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Desktop/DesktopServices.hpp"
#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace nimbo {

/// What an update check is about and whom it asks.
struct UpdateCheck {
  /// A larger list of updates is none.
  static constexpr std::uint32_t kMaximumListBytes = 1 << 20;

  /// The program.
  NSBundle application;
  /// Where the texts are looked up.
  NSBundle library;
  /// Where the list of updates is; nil when there is none.
  NSURL list;
  /// How long the list is waited for.
  double timeLimitSeconds = 0;
  /// Who tells the user.
  DesktopServices &desktop;

  /// As `Bundle::checkForNewVersion`.
  bool run() const;
};

/// The list of updates of a host, "HOST" or "HOST:PORT", by HTTPS unless "http://" stands in front; nil when
/// that makes no URL.
NSURL updateListOfHost(const NSString &host);

}  // namespace nimbo
