// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSLog.hpp"

#include <syslog.h>
#include <unistd.h>

#include <atomic>
#include <string>

namespace nimbo {
namespace {

void writeToStandardError(std::string_view message) {
  const std::string line = std::string(message) + '\n';
  // A log line that cannot be written has nobody left to tell.
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
}

std::atomic<LogWriter> logWriter = writeToStandardError;

}  // namespace

void NSLog(const NSString &message) {
  NSLog(message.UTF8String());
}

void NSLog(std::string_view message) {
  ::syslog(LOG_USER | LOG_NOTICE, "%s", std::string(message).c_str());
  logWriter.load()(message);
}

void setLogWriter(LogWriter writer) {
  logWriter = writer;
}

}  // namespace nimbo
