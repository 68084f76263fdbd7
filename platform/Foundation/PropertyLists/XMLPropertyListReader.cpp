// SPDX-License-Identifier: Apache-2.0
#include <glib.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"
#include "platform/Foundation/PropertyLists/XMLPropertyList.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {
namespace {

bool isWhiteSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

[[noreturn]] void fail(const NSData &data, std::ptrdiff_t offset, const std::string &reason) {
  if (offset < 0) throw PropertyListError{reason};
  const std::string_view before = data.view().substr(0, static_cast<std::size_t>(offset));
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  throw PropertyListError{"line " + std::to_string(line) + ": " + reason};
}

/// The digits of `text` at `location` as a number, or -1.
int digits(std::string_view text, std::size_t location, std::size_t count) {
  int value = 0;
  const char *first = text.data() + location;
  const auto [end, status] = std::from_chars(first, first + count, value);
  return status == std::errc() && end == first + count && *first != '-' ? value : -1;
}

/// "2001-01-01T00:00:00Z", with a fraction of a second or without. False when it is none.
bool readDate(std::string_view text, NSDate *date) {
  constexpr std::string_view kPattern = "dddd-dd-ddTdd:dd:dd";
  if (text.size() <= kPattern.size() || text.back() != 'Z') return false;
  for (std::size_t i = 0; i < kPattern.size(); ++i)
    if (kPattern[i] != 'd' && text[i] != kPattern[i]) return false;
  const int year = digits(text, 0, 4), month = digits(text, 5, 2), day = digits(text, 8, 2);
  const int hour = digits(text, 11, 2), minute = digits(text, 14, 2), second = digits(text, 17, 2);
  const std::chrono::year_month_day calendar(std::chrono::year(year),
                                             std::chrono::month(static_cast<unsigned>(month)),
                                             std::chrono::day(static_cast<unsigned>(day)));
  if (year < 0 || month < 0 || day < 0 || !calendar.ok()) return false;
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 60) return false;
  double fraction = 0;
  if (std::string_view rest = text.substr(kPattern.size(), text.size() - kPattern.size() - 1); !rest.empty()) {
    if (rest[0] != '.' || rest.size() == 1 || rest.find_first_not_of("0123456789", 1) != std::string_view::npos)
      return false;
    fraction = g_ascii_strtod(std::string(rest).c_str(), nullptr);
  }
  *date = NSDate::dateWithUTC(year, month, day, hour, minute, second + fraction);
  return true;
}

/// A decimal or hexadecimal number with an optional sign; `*outOfRange` tells why it is none.
bool readInteger(std::string_view text, std::int64_t *value, bool *outOfRange) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  std::uint64_t magnitude = 0;
  const char *end = text.data() + text.size();
  const auto [parsed, status] = std::from_chars(text.data(), end, magnitude, hexadecimal ? 16 : 10);
  if (text.empty() || parsed != end || status == std::errc::invalid_argument) return false;
  constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
  *outOfRange = status == std::errc::result_out_of_range || magnitude > kLargest + (negative ? 1 : 0);
  *value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
  return !*outOfRange;
}

/// Nil when it is no base64.
NSData readBase64(const std::string &text) {
  constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
  bool allowed[256] = {};
  for (const char c : kBase64) allowed[static_cast<unsigned char>(c)] = true;
  std::size_t characters = 0;
  for (const char c : text) {
    if (allowed[static_cast<unsigned char>(c)])
      ++characters;
    else if (!isWhiteSpace(c))
      return NSData();
  }
  const std::size_t end = text.find('=');
  const std::string_view tail =
      end == std::string::npos ? std::string_view() : std::string_view(text).substr(end);
  if (characters % 4 != 0 || std::count(tail.begin(), tail.end(), '=') > 2 ||
      tail.find_first_not_of("= \t\r\n") != std::string_view::npos)
    return NSData();
  if (characters == 0) return NSData::data();
  std::unique_ptr<void, decltype(&std::free)> bytes(std::malloc(characters / 4 * 3), &std::free);
  if (!bytes) throw std::bad_alloc();
  int state = 0;
  guint saved = 0;
  const std::size_t length =
      g_base64_decode_step(text.data(), text.size(), static_cast<guchar *>(bytes.get()), &state, &saved);
  return NSData::dataWithMallocedBytes(bytes.release(), length);
}

class Reader {
 public:
  explicit Reader(const NSData &data) : data_(data) {}

  id read() {
    if (data_.length() > kMaximumXMLPropertyListBytes)
      throw PropertyListError{"too much XML", ErrorCode::tooLarge};
    // The tree has a node for every tag that opens, so that its size is known to be bounded before it is made.
    const std::string_view text = data_.view();
    if (std::count(text.begin(), text.end(), '<') >
        2 * std::int64_t(NSPropertyListSerialization::kMaximumObjects))
      throw PropertyListError{"too many values", ErrorCode::tooLarge};
    pugi::xml_document document;
    // White space is kept only where it is all that an element holds: a string of blanks stays one.
    const pugi::xml_parse_result result =
        document.load_buffer(data_.bytes(), data_.length(), pugi::parse_default | pugi::parse_ws_pcdata_single);
    if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
    if (!result) fail(data_, result.offset, result.description());
    const pugi::xml_node root = document.document_element();
    if (std::strcmp(root.name(), "plist") != 0) fail(data_, root.offset_debug(), "no plist element");
    const pugi::xml_node top = nextElement(root.first_child());
    if (!top) fail(data_, root.offset_debug(), "an empty plist");
    limits_.countValues(1);
    id propertyList = value(top, 0);
    if (const pugi::xml_node second = nextElement(top.next_sibling()))
      fail(data_, second.offset_debug(), "more than one value");
    return propertyList;
  }

 private:
  [[noreturn]] void failAt(const pugi::xml_node &node, const std::string &reason) const {
    fail(data_, node.offset_debug(), reason);
  }

  /// The first element among `node` and what follows it; text other than white space must not come before it.
  pugi::xml_node nextElement(pugi::xml_node node) const {
    for (; node && node.type() != pugi::node_element; node = node.next_sibling())
      if (!std::ranges::all_of(std::string_view(node.value()), isWhiteSpace))
        failAt(node, "text outside of a value");
    return node;
  }

  std::string text(const pugi::xml_node &element) const {
    std::string result;
    for (const pugi::xml_node &part : element.children()) {
      if (part.type() == pugi::node_element) failAt(part, "an element inside of text");
      result += part.value();
    }
    return result;
  }

  std::string trimmedText(const pugi::xml_node &element) const {
    const std::string whole = text(element);
    return std::string(trimmed(std::string_view(whole), isWhiteSpace));
  }

  NSString string(const pugi::xml_node &element) const {
    NSString result = NSString::stringWithUTF8String(text(element));
    if (!result) failAt(element, "invalid UTF-8");
    return result;
  }

  /// `depth` is the number of containers around the element.
  id value(const pugi::xml_node &element, std::uint32_t depth) {
    const std::string_view name = element.name();
    if (name == "string") return string(element);
    if (name == "dict") return dictionary(element, PropertyListLimits::enterContainer(depth));
    if (name == "array") return array(element, PropertyListLimits::enterContainer(depth));
    if (name == "true") return true;
    if (name == "false") return false;
    if (name == "integer") return integer(element);
    if (name == "real") return real(element);
    if (name == "date") return date(element);
    if (name == "data") return data(element);
    failAt(element, "an unknown element");
  }

  id dictionary(const pugi::xml_node &element, std::uint32_t depth) {
    NSDictionary result = NSDictionary::dictionary();
    for (pugi::xml_node key = nextElement(element.first_child()); key; key = nextElement(key.next_sibling())) {
      if (std::strcmp(key.name(), "key") != 0) failAt(key, "a value without a key");
      const pugi::xml_node object = nextElement(key.next_sibling());
      if (!object) failAt(key, "a key without a value");
      limits_.countValues(2);
      result.setObject(value(object, depth), string(key));
      key = object;
    }
    return result;
  }

  id array(const pugi::xml_node &element, std::uint32_t depth) {
    std::vector<id> elements;
    for (pugi::xml_node node = nextElement(element.first_child()); node;
         node = nextElement(node.next_sibling())) {
      limits_.countValues(1);
      elements.push_back(value(node, depth));
    }
    return NSArray(std::move(elements));
  }

  id integer(const pugi::xml_node &element) const {
    std::int64_t result = 0;
    bool outOfRange = false;
    if (!readInteger(trimmedText(element), &result, &outOfRange))
      failAt(element, outOfRange ? "integer out of range" : "not an integer");
    return result;
  }

  /// Also "nan", "inf" and "infinity".
  id real(const pugi::xml_node &element) const {
    const std::string number = trimmedText(element);
    char *end = nullptr;
    const double result = g_ascii_strtod(number.c_str(), &end);
    if (number.empty() || end != number.c_str() + number.size()) failAt(element, "not a real");
    return result;
  }

  id date(const pugi::xml_node &element) const {
    NSDate result;
    if (!readDate(trimmedText(element), &result)) failAt(element, "not a date");
    return result;
  }

  id data(const pugi::xml_node &element) const {
    NSData result = readBase64(text(element));
    if (!result) failAt(element, "not base64");
    return result;
  }

  const NSData &data_;
  PropertyListLimits limits_;
};

}  // namespace

id propertyListFromXMLData(const NSData &data) {
  return Reader(data).read();
}

}  // namespace nimbo
