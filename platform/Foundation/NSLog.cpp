// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSLog.hpp"

#include <syslog.h>
#include <unistd.h>

#include <string>

namespace nimbo {

void NSLog(const NSString &message) {
  NSLog(message.UTF8String());
}

void NSLog(std::string_view message) {
  std::string line(message);
  ::syslog(LOG_USER | LOG_NOTICE, "%s", line.c_str());
  line += '\n';
  // A log line that cannot be written has nobody left to tell.
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace nimbo
