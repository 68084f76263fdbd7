// SPDX-License-Identifier: Apache-2.0
#include "tools/Output.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <nlohmann/json.hpp>
#include <system_error>

#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/DataWriting.hpp"

namespace nimbo {

namespace {

using JSON = nlohmann::ordered_json;

std::string base64(std::span<const std::uint8_t> bytes) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) group = group << 8 | (k < count ? bytes[i + k] : 0u);
    for (std::size_t k = 0; k < 4; ++k) text += k <= count ? kDigits[group >> (18 - 6 * k) & 63] : '=';
  }
  return text;
}

JSON convert(const id &value);

struct Converter {
  JSON operator()(std::monostate) const { return nullptr; }
  JSON operator()(NSNull) const { return nullptr; }
  JSON operator()(const SharedPointer<NSObject> &) const { return nullptr; }
  JSON operator()(bool value) const { return value; }
  JSON operator()(std::int64_t value) const { return value; }
  JSON operator()(double value) const { return value; }
  JSON operator()(const NSDate &value) const {
    const auto text = value.ISO8601String();
    return text ? JSON(*text) : JSON(nullptr);
  }
  JSON operator()(const NSString &value) const { return value.UTF8String(); }
  JSON operator()(const NSData &value) const { return base64(value.span()); }
  JSON operator()(const NSArray &value) const {
    JSON array = JSON::array();
    for (const id &element : value) array.push_back(convert(element));
    return array;
  }
  JSON operator()(const NSDictionary &value) const {
    JSON object = JSON::object();
    for (const auto &[key, element] : value) object[key.UTF8String()] = convert(element);
    return object;
  }
};

JSON convert(const id &value) {
  return value.visit(Converter());
}

}  // namespace

std::string JSONFromValue(const id &value, bool pretty) {
  return convert(value).dump(pretty ? 2 : -1);
}

void prepareStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
    if (::fcntl(descriptor, F_GETFD) < 0) ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

void writeOutput(std::string_view text) {
  if (writeAll(STDOUT_FILENO, text)) return;
  const int number = errno;
  const std::string message = "cannot write to standard output: " + std::generic_category().message(number);
  if (number == EPIPE) throw OutputClosed(message);
  throw OutputError(message);
}

void writeText(const NSString &text) {
  writeOutput(text.UTF8String() + '\n');
}

void writeResult(const id &value, const CommonOptions &options) {
  if (!options.propertyList) return writeOutput(JSONFromValue(value, options.pretty) + "\n");
  NSError error;
  const NSData list =
      NSPropertyListSerialization::dataWithPropertyList(value, NSPropertyListFormat::xml, &error);
  if (!list)
    throw OutputError("the result cannot be written as a property list: " +
                      error.localizedFailureReason.UTF8String());
  writeOutput(list.view());
  if (!list.view().ends_with('\n')) writeOutput("\n");
}

void writeMessage(std::string_view message) {
  std::string line = "quiverleaf: ";
  for (const char character : message) {
    const auto byte = static_cast<unsigned char>(character);
    line += byte < 0x20 || byte == 0x7f ? '?' : character;
  }
  line += '\n';
  // When that fails, there is nowhere left to tell it.
  static_cast<void>(writeAll(STDERR_FILENO, line));
}

}  // namespace nimbo
