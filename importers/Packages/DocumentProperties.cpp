// SPDX-License-Identifier: Apache-2.0
#include "importers/Packages/DocumentProperties.hpp"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace nimbo {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\r\f\v";

void setText(Attributes &attributes, const char *name, const std::string &text) {
  if (!text.empty()) attributes.set(name, NSString::stringWithLossyUTF8String(text));
}

void setList(Attributes &attributes, const char *name, const std::vector<std::string> &texts) {
  if (texts.empty()) return;
  NSArray list;
  for (const std::string &text : texts) list.addObject(NSString::stringWithLossyUTF8String(text));
  attributes.set(name, list);
}

std::vector<std::string> listOfOne(const std::string &text) {
  return text.empty() ? std::vector<std::string>() : std::vector{text};
}

int daysOfMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays[month - 1] + (month == 2 && isLeap ? 1 : 0);
}

}  // namespace

void DocumentProperties::setAttributes(Attributes &attributes) const {
  setText(attributes, "kMDItemTitle", title);
  setText(attributes, "kMDItemSubject", subject);
  setText(attributes, "kMDItemDescription", description);
  setText(attributes, "kMDItemCreator", application);
  setList(attributes, "kMDItemLanguages", listOfOne(language));
  setList(attributes, "kMDItemOrganizations", listOfOne(organization));
  setList(attributes, "kMDItemAuthors", authors);
  setList(attributes, "kMDItemKeywords", keywords);
  if (created) attributes.set("kMDItemContentCreationDate", *created);
  if (modified) attributes.set("kMDItemContentModificationDate", *modified);
  if (pages) attributes.set("kMDItemNumberOfPages", *pages);
  if (words) attributes.set("kMDItemWordCount", *words);
}

void setDocument(Attributes &attributes, const DocumentProperties &properties, const NSString &text,
                 DocumentBudget &budget) {
  properties.setAttributes(attributes);
  attributes.set("kMDItemTextContent", text);
  if (!text) budget.fail(ErrorCode::incomplete, "the document holds no text");
  attributes.setReason(budget.error());
}

std::vector<std::string> listOfText(std::string_view text, std::string_view separators) {
  std::vector<std::string> list;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(separators);
    if (std::string part = simplifiedText(text.substr(0, end)); !part.empty()) list.push_back(std::move(part));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
  }
  return list;
}

std::string simplifiedText(std::string_view text) {
  std::string simplified;
  for (const char c : text) {
    const bool isWhite = kWhiteSpace.find(c) != kWhiteSpace.npos;
    if (!isWhite)
      simplified += c;
    else if (!simplified.empty() && simplified.back() != ' ')
      simplified += ' ';
  }
  if (simplified.ends_with(' ')) simplified.pop_back();
  return simplified;
}

std::optional<NSDate> dateWithISO8601(std::string_view text) {
  const std::string date = simplifiedText(text);
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, read = 0;
  if (std::sscanf(date.c_str(), "%4d-%2d-%2d%n", &year, &month, &day, &read) < 3) return std::nullopt;
  std::string_view rest = std::string_view(date).substr(static_cast<std::size_t>(read));
  if (rest.starts_with('T')) {
    if (std::sscanf(rest.data(), "T%2d:%2d%n", &hour, &minute, &read) < 2) return std::nullopt;
    rest.remove_prefix(static_cast<std::size_t>(read));
    if (std::sscanf(rest.data(), ":%2d%n", &second, &read) == 1)
      rest.remove_prefix(static_cast<std::size_t>(read));
    // Nobody asks for fractions of a second.
    if (rest.starts_with('.'))
      rest.remove_prefix(std::min(rest.find_first_not_of("0123456789", 1), rest.size()));
  }
  int zoneHour = 0, zoneMinute = 0;
  const bool isEast = rest.starts_with('+'), isWest = rest.starts_with('-');
  if ((isEast || isWest) && std::sscanf(rest.data() + 1, "%2d:%2d", &zoneHour, &zoneMinute) < 2)
    return std::nullopt;
  const bool isInRange = year > 0 && month >= 1 && month <= 12 && day >= 1 && day <= daysOfMonth(year, month) &&
                         hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 61;
  if (!isInRange) return std::nullopt;
  NSDate moment = NSDate::dateWithUTC(year, month, day, hour, minute, second);
  moment.timeIntervalSinceReferenceDate -= (isWest ? -1 : 1) * (zoneHour * 3600 + zoneMinute * 60);
  return moment;
}

}  // namespace nimbo
