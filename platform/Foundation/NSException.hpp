// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What platform adapters and importers raise: a name that programs test and a reason that people read.
/// It never changes, and any thread may copy and read it.
///
///     try {
///       throw NSException(u"NSInvalidArgumentException"_ns, u"there is no such page"_ns);
///     } catch (const NSException &exception) {
///       logException("pageAtIndex:", "Document", exception);
///     }
class NSException : public std::exception {
 public:
  /// An exception of this name and reason.
  NSException(NSString name, NSString reason);
  ~NSException() override;

  /// The name, for programs.
  const NSString &name() const noexcept NIMBO_LIFETIMEBOUND { return name_; }
  /// The reason, for people.
  const NSString &reason() const noexcept NIMBO_LIFETIMEBOUND { return reason_; }
  /// "name: reason" in UTF-8.
  const char *what() const noexcept NIMBO_LIFETIMEBOUND override { return what_.c_str(); }

 private:
  NSString name_;
  NSString reason_;
  std::string what_;
};

/// Writes the exception that a method of a class has caught to the log: "method (class):", its name and its
/// reason, a line each.
void logException(std::string_view method, std::string_view className, const NSException &exception);

}  // namespace nimbo
