// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Whether there is a newer version of the running program.
///
///     // One thread at a time: people are asked, and are waited for.
///     const bool isOffered = Bundle::checkForNewVersion();
///     if (isOffered) quit();
struct Bundle {
  /// Compares CFBundleVersion of the main bundle with what the maker's list of updates has under its
  /// CFBundleName, and tells the user: that the version is new, with the offer to open the page to download it
  /// in the browser, or that the software is up to date, as it is also when there is no such list. The list is
  /// the property list "/Updates.plist" of the user default "UpdateHost", loaded within the seconds of
  /// "UpdateTimeLimit". The texts stand in the table "Bundle" of the library's own bundle. Whether a newer
  /// version was offered; true without a word to the user when the list has no "Download".
  static bool checkForNewVersion();
};

}  // namespace nimbo
