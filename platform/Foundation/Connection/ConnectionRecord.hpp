// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "platform/Foundation/Connection/ConnectionMessage.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a process that serves a name does at the moment. It stands in a file beside the socket, for others to
/// read while the process is too busy to answer, or to learn what it did last. It is a plain value; any thread
/// may read a file's, and one writes it at a time.
///
///     const auto record = readConnectionRecord(openConnectionRecord(name));
///     if (record && record->isWorking) NSLog(record->input);
///     if (record) NSLog(u"%d requests waited.", record->waiting.size());
struct ConnectionRecord {
  /// The number of the process.
  int process = 0;
  /// What it tells its clients of itself.
  ConnectionGreeting server = {};
  /// Whether a request is under way: the one below. Else that is the last one, if there was any.
  bool isWorking = false;
  /// The request's full selector; nil when there was none yet.
  NSString selector = {};
  /// Its first argument that is a text, as the file that it is about; nil when there is none.
  NSString input = {};
  /// The process that asked.
  int client = 0;
  /// When the work on the request began.
  NSDate begun = {};
  /// The processes whose requests waited when this one began.
  std::vector<int> waiting = {};
};

/// Writes the record in place. What fails is left: nobody depends on a record.
void writeConnectionRecord(const FileDescriptor &file, const ConnectionRecord &record);
/// Notes that the request of the record is done, in one small write.
void writeConnectionRecordIsIdle(const FileDescriptor &file);

/// Nothing when there is no file, or no whole record in it.
std::optional<ConnectionRecord> readConnectionRecord(const FileDescriptor &file);

}  // namespace nimbo
