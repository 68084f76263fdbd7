// SPDX-License-Identifier: Apache-2.0
#include <glib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"
#include "platform/Foundation/PropertyLists/XMLPropertyList.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kHeader =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view kFooter = "</plist>\n";
constexpr std::string_view kReplacementCharacter = "\xef\xbf\xbd";

/// Lines of base64 end at this column, tabs being 8 wide, but hold at least so many characters.
constexpr std::size_t kBase64Column = 76;
constexpr std::size_t kLeastBase64Line = 16;

/// Writes directly: pugixml's own writer leaves carriage returns as they are, and readers make line feeds of
/// them.
class Writer {
 public:
  NSData write(const id &propertyList) {
    xml_ = kHeader;
    limits_.countValues(1);
    writeObject(propertyList, 0);
    xml_ += kFooter;
    if (xml_.size() > NSNotFound) throw PropertyListError{"larger than data can be", ErrorCode::tooLarge};
    return NSData::dataWithBytes(xml_.data(), xml_.size());
  }

 private:
  /// `depth` is the number of containers around the value.
  void writeObject(const id &value, std::uint32_t depth) {
    xml_.append(depth, '\t');
    value.visit([&](const auto &v) { writeValue(v, depth); });
  }

  [[noreturn]] static void writeValue(std::monostate, std::uint32_t) {
    throw PropertyListError{"nil is no property list", ErrorCode::other};
  }
  [[noreturn]] static void writeValue(const SharedPointer<NSObject> &, std::uint32_t) {
    throw PropertyListError{"an object is no property list", ErrorCode::other};
  }
  [[noreturn]] static void writeValue(NSNull, std::uint32_t) {
    throw PropertyListError{"XML cannot hold null", ErrorCode::other};
  }
  void writeValue(bool boolean, std::uint32_t) { xml_ += boolean ? "<true/>\n" : "<false/>\n"; }
  void writeValue(std::int64_t number, std::uint32_t) { putElement("integer", std::to_string(number)); }
  void writeValue(double number, std::uint32_t) {
    char digits[32];
    const char *end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    // A NaN may have a sign, which nobody reads.
    putElement("real", std::isnan(number) ? "nan" : std::string_view(digits, end));
  }
  void writeValue(NSDate date, std::uint32_t) {
    const auto text = NSDate{std::floor(date.timeIntervalSinceReferenceDate)}.ISO8601String();
    if (!text) throw PropertyListError{"a date outside the years 0 to 9999", ErrorCode::other};
    putElement("date", *text);
  }
  void writeValue(const NSString &string, std::uint32_t) { putElement("string", string.UTF8String()); }
  void writeValue(const NSData &data, std::uint32_t depth) {
    xml_ += "<data>\n";
    const std::size_t indent = 8 * std::size_t(depth);
    const std::size_t column =
        kBase64Column > indent + kLeastBase64Line ? kBase64Column - indent : kLeastBase64Line;
    for (auto rest = data.span(); !rest.empty();) {
      const auto line = rest.first(std::min(rest.size(), column / 4 * 3));
      putBase64(line, depth);
      rest = rest.subspan(line.size());
    }
    putEnd("data", depth);
  }
  void writeValue(const NSArray &array, std::uint32_t depth) {
    const std::uint32_t inside = PropertyListLimits::enterContainer(depth);
    limits_.countValues(array.count());
    if (!putBegin("array", array.count())) return;
    for (const id &element : array) writeObject(element, inside);
    putEnd("array", depth);
  }
  void writeValue(const NSDictionary &dictionary, std::uint32_t depth) {
    const std::uint32_t inside = PropertyListLimits::enterContainer(depth);
    limits_.countValues(2 * std::uint64_t(dictionary.count()));
    if (!putBegin("dict", dictionary.count())) return;
    for (const auto &[key, value] : dictionary) {
      xml_.append(inside, '\t');
      putElement("key", key.UTF8String());
      writeObject(value, inside);
    }
    putEnd("dict", depth);
  }

  /// False when an empty container is already complete.
  bool putBegin(std::string_view element, std::uint32_t count) {
    xml_.append("<").append(element).append(count == 0 ? "/>\n" : ">\n");
    return count != 0;
  }
  void putEnd(std::string_view element, std::uint32_t depth) {
    xml_.append(depth, '\t').append("</").append(element).append(">\n");
  }
  void putElement(std::string_view element, std::string_view text) {
    xml_.append("<").append(element).append(">");
    putText(text);
    xml_.append("</").append(element).append(">\n");
  }

  void putText(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char c = text[i];
      if (c == '&')
        xml_ += "&amp;";
      else if (c == '<')
        xml_ += "&lt;";
      else if (c == '>')
        xml_ += "&gt;";
      else if (c == '\r')
        xml_ += "&#13;";
      else if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n')
        xml_ += kReplacementCharacter;
      else if (const std::string_view three = text.substr(i, 3);
               three == "\xef\xbf\xbe" || three == "\xef\xbf\xbf")
        xml_ += kReplacementCharacter, i += 2;
      else
        xml_ += c;
    }
  }

  void putBase64(std::span<const std::uint8_t> bytes, std::uint32_t depth) {
    char line[kBase64Column + 8];
    int state = 0, saved = 0;
    std::size_t length = g_base64_encode_step(bytes.data(), bytes.size(), FALSE, line, &state, &saved);
    length += g_base64_encode_close(FALSE, line + length, &state, &saved);
    xml_.append(depth, '\t').append(line, length).append("\n");
  }

  std::string xml_;
  PropertyListLimits limits_;
};

}  // namespace

NSData XMLDataWithPropertyList(const id &propertyList) {
  return Writer().write(propertyList);
}

}  // namespace nimbo
