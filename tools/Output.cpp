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
#include "tools/ReadableText.hpp"

namespace nimbo {

namespace {

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

/// Appends values to a text as JSON.
class JSONWriter {
 public:
  JSONWriter(std::string &text, bool isPretty) : text_(text), isPretty_(isPretty) {}

  void write(const id &value) { value.visit(*this); }

  void operator()(std::monostate) { text_ += "null"; }
  void operator()(NSNull) { text_ += "null"; }
  void operator()(const SharedPointer<NSObject> &) { text_ += "null"; }
  void operator()(bool value) { text_ += value ? "true" : "false"; }
  void operator()(std::int64_t value) { text_ += std::to_string(value); }
  void operator()(double value) { text_ += nlohmann::json(value).dump(); }
  void operator()(const NSDate &value) {
    const auto text = value.ISO8601String();
    if (text)
      writeString(*text);
    else
      text_ += "null";
  }
  void operator()(const NSString &value) { writeString(value.UTF8String()); }
  void operator()(const NSData &value) { writeString(base64(value.span())); }
  void operator()(const NSArray &value) {
    writeList('[', ']', value, [this](const id &element) { write(element); });
  }
  void operator()(const NSDictionary &value) {
    writeList('{', '}', value, [this](const NSDictionary::Entry &entry) {
      writeString(entry.first.UTF8String());
      text_ += isPretty_ ? ": " : ":";
      write(entry.second);
    });
  }

 private:
  template <class List, class Write>
  void writeList(char start, char end, const List &list, Write writeElement) {
    text_ += start;
    ++depth_;
    bool isFirst = true;
    for (const auto &element : list) {
      if (!isFirst) text_ += ',';
      isFirst = false;
      breakLine();
      writeElement(element);
    }
    --depth_;
    if (!isFirst) breakLine();
    text_ += end;
  }

  void breakLine() {
    constexpr std::size_t kIndentation = 2;
    if (isPretty_) text_.append(1, '\n').append(kIndentation * depth_, ' ');
  }

  void writeString(std::string_view units) {
    constexpr std::string_view kControls = "\b\t\n\f\r", kLetters = "btnfr", kDigits = "0123456789abcdef";
    text_ += '"';
    std::size_t start = 0;
    for (std::size_t i = 0; i < units.size(); ++i) {
      const char c = units[i];
      if (static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\') continue;
      text_.append(units, start, i - start);
      start = i + 1;
      text_ += '\\';
      if (c == '"' || c == '\\')
        text_ += c;
      else if (const std::size_t control = kControls.find(c); control != kControls.npos)
        text_ += kLetters[control];
      else
        text_.append("u00").append({kDigits[static_cast<unsigned char>(c) >> 4], kDigits[c & 15]});
    }
    text_.append(units, start).append(1, '"');
  }

  std::string &text_;
  const bool isPretty_;
  std::size_t depth_ = 0;
};

/// The value as XML property lists can hold it, which have no null and dates of the years 0 to 9999 alone: an
/// entry of a dictionary without a value is left out, an element of an array is an empty string.
id valueForPropertyList(const id &value, const id &null = NSString::string()) {
  if (const NSArray array = value.array()) {
    NSArray elements = NSArray::array();
    for (const id &element : array) elements.addObject(valueForPropertyList(element));
    return elements;
  }
  if (const NSDictionary dictionary = value.dictionary()) {
    NSDictionary entries = NSDictionary::dictionary();
    for (const auto &[key, entry] : dictionary) entries.setObject(valueForPropertyList(entry, id()), key);
    return entries;
  }
  const auto date = value.date();
  return value.isNull() || (date && !date->ISO8601String()) ? null : value;
}

bool endsLine(const NSString &text) {
  return text.view().ends_with(u'\n') || text.view().ends_with(u'\f');
}

}  // namespace

std::string JSONFromValue(const id &value, bool pretty) {
  std::string text;
  JSONWriter(text, pretty).write(value);
  return text;
}

SignalHandler prepareStandardStreams() {
  const SignalHandler inherited = std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
    if (::fcntl(descriptor, F_GETFD) < 0) ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  return inherited;
}

void writeOutput(std::string_view text) {
  const bool isForTerminal = ::isatty(STDOUT_FILENO) == 1;
  const std::string shown =
      isForTerminal ? textForTerminal(NSString::stringWithLossyUTF8String(text)) : std::string();
  if (writeAll(STDOUT_FILENO, isForTerminal ? shown : text)) return;
  const int number = errno;
  const std::string message = "cannot write to standard output: " + std::generic_category().message(number);
  if (number == EPIPE) throw OutputClosed(message);
  throw OutputError(message);
}

void writeText(const NSString &text) {
  writeOutput(text.UTF8String() + '\n');
}

void writeLines(const NSString &text) {
  const std::string bytes = text.UTF8String();
  writeOutput(endsLine(text) ? bytes : bytes + '\n');
}

void writeResult(const id &value, const CommonOptions &options) {
  if (!options.propertyList) return writeOutput(JSONFromValue(value, options.pretty) + "\n");
  NSError error;
  const NSData list = NSPropertyListSerialization::dataWithPropertyList(valueForPropertyList(value),
                                                                        NSPropertyListFormat::xml, &error);
  if (!list)
    throw OutputError("the result cannot be written as a property list: " +
                      error.localizedFailureReason.UTF8String());
  writeOutput(list.view());
  if (!list.view().ends_with('\n')) writeOutput("\n");
}

std::string messageOfFailedWriting(const std::string &file) {
  return file + ": it cannot be written: " + std::generic_category().message(errno);
}

void writeFile(const NSData &data, const std::string &file) {
  if (!writeDataToFile(data, NSString::stringWithFileSystemRepresentation(file), true))
    throw OutputError(messageOfFailedWriting(file));
}

void writeMessage(std::string_view message) {
  std::string line = "quiverleaf: ";
  for (std::size_t i = 0; i < message.size(); ++i) {
    const auto byte = static_cast<unsigned char>(message[i]);
    const auto next = static_cast<unsigned char>(i + 1 < message.size() ? message[i + 1] : 0);
    const bool isUpperControl = byte == 0xc2 && next >= 0x80 && next < 0xa0;
    line += byte < 0x20 || byte == 0x7f || isUpperControl ? '?' : message[i];
    if (isUpperControl) ++i;
  }
  line += '\n';
  // When that fails, there is nowhere left to tell it.
  static_cast<void>(writeAll(STDERR_FILENO, line));
}

void writeProgress(std::string_view text) {
  if (::isatty(STDERR_FILENO) == 0) return;
  constexpr std::string_view kClearedLine = "\r\x1b[K";
  static_cast<void>(writeAll(STDERR_FILENO, std::string(kClearedLine).append(text)));
}

}  // namespace nimbo
