// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Connection/ConnectionRecord.hpp"

#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "platform/Foundation/PropertyLists/BinaryPropertyListReader.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListWriter.hpp"
#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"

namespace nimbo {
namespace {

/// What the file begins with, big-endian as the connection's lengths; a binary property list follows.
struct Header {
  std::array<std::uint8_t, 4> isWorking;
  std::array<std::uint8_t, 4> length;
  /// Of the list. A reader may meet a record that is half written.
  std::array<std::uint8_t, 4> checksum;
};

constexpr std::size_t kMaximumListBytes = 64u << 10;
/// As much of a text as is kept, in code units: a path of the longest kind.
constexpr std::uint32_t kMaximumTextLength = 4096;
constexpr int kReadAttempts = 100;

std::array<std::uint8_t, 4> bigEndian(std::uint32_t number) {
  return {static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
          static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
}

/// FNV-1a of 32 bits (Fowler, Noll, Vo).
std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t sum = 2166136261u;
  for (const char byte : bytes) sum = (sum ^ static_cast<std::uint8_t>(byte)) * 16777619u;
  return sum;
}

NSString cut(const NSString &text) {
  return text.length() > kMaximumTextLength ? text.substringWithRange({0, kMaximumTextLength}) : text;
}

NSDictionary dictionaryOfRecord(const ConnectionRecord &record) {
  NSArray waiting = NSArray::array();
  for (const int process : record.waiting) waiting.addObject(process);
  return {{u"Process"_ns, record.process},
          {u"Version"_ns, record.server.version},
          {u"Path"_ns, record.server.path},
          {u"Since"_ns, record.server.since},
          {u"Selector"_ns, cut(record.selector)},
          {u"Input"_ns, cut(record.input)},
          {u"Client"_ns, record.client},
          {u"Begun"_ns, record.begun},
          {u"Waiting"_ns, waiting}};
}

int integer(const id &value) {
  return static_cast<int>(value.integer().value_or(0));
}

ConnectionRecord recordOfDictionary(const NSDictionary &values) {
  ConnectionRecord record;
  record.process = integer(values.objectForKey(u"Process"_ns));
  record.server = {values.objectForKey(u"Version"_ns).string(), values.objectForKey(u"Path"_ns).string(),
                   values.objectForKey(u"Since"_ns).date().value_or(NSDate())};
  record.selector = values.objectForKey(u"Selector"_ns).string();
  record.input = values.objectForKey(u"Input"_ns).string();
  record.client = integer(values.objectForKey(u"Client"_ns));
  record.begun = values.objectForKey(u"Begun"_ns).date().value_or(NSDate());
  for (const id &process : values.objectForKey(u"Waiting"_ns).array())
    record.waiting.push_back(integer(process));
  return record;
}

std::optional<ConnectionRecord> readOnce(const FileDescriptor &file, std::string &bytes) {
  const ssize_t got = ::pread(file.get(), bytes.data(), bytes.size(), 0);
  Header header;
  if (got < static_cast<ssize_t>(sizeof header)) return std::nullopt;
  std::memcpy(&header, bytes.data(), sizeof header);
  const std::size_t length = decodeMessageLength(header.length.data());
  if (length > static_cast<std::size_t>(got) - sizeof header) return std::nullopt;
  const std::string_view list(bytes.data() + sizeof header, length);
  if (checksum(list) != decodeMessageLength(header.checksum.data())) return std::nullopt;
  try {
    ConnectionRecord record = recordOfDictionary(
        propertyListFromBinaryData(NSData::dataWithBytes(list.data(), list.size())).dictionary());
    record.isWorking = decodeMessageLength(header.isWorking.data()) != 0;
    return record;
  } catch (const PropertyListError &) {
    return std::nullopt;
  }
}

}  // namespace

void writeConnectionRecord(const FileDescriptor &file, const ConnectionRecord &record) {
  if (!file) return;
  std::string bytes(sizeof(Header), '\0');
  for (const NSData &piece : binaryPiecesWithPropertyList(dictionaryOfRecord(record))) bytes += piece.view();
  if (bytes.size() - sizeof(Header) > kMaximumListBytes) return;
  const auto list = std::string_view(bytes).substr(sizeof(Header));
  const Header header = {bigEndian(record.isWorking), bigEndian(static_cast<std::uint32_t>(list.size())),
                         bigEndian(checksum(list))};
  std::memcpy(bytes.data(), &header, sizeof header);
  [[maybe_unused]] const ssize_t written = ::pwrite(file.get(), bytes.data(), bytes.size(), 0);
}

void writeConnectionRecordIsIdle(const FileDescriptor &file) {
  const auto isWorking = bigEndian(0);
  [[maybe_unused]] const ssize_t written = ::pwrite(file.get(), isWorking.data(), isWorking.size(), 0);
}

std::optional<ConnectionRecord> readConnectionRecord(const FileDescriptor &file) {
  std::string bytes(sizeof(Header) + kMaximumListBytes, '\0');
  for (int attempt = 0; file && attempt < kReadAttempts; ++attempt)
    if (auto record = readOnce(file, bytes)) return record;
  return std::nullopt;
}

}  // namespace nimbo
