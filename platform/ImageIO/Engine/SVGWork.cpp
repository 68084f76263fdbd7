// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/SVGWork.hpp"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace nimbo::detail {
namespace {

/// In elements to be drawn: what every file may ask for, and more for each element that it has.
constexpr std::uint64_t kAllowedWork = 100'000;
constexpr std::uint64_t kAllowedWorkForEach = 8;
/// What one octave of noise counts for.
constexpr std::uint64_t kWorkOfOctave = 1000;
/// Of elements in each other, references included; deeper files count as too much.
constexpr std::size_t kMaximumDepth = 1000;
/// Sums go no further, and stay far below what a number holds.
constexpr std::uint64_t kEndlessWork = std::uint64_t{1} << 40;

/// An element, or the part of the file that a reference repeats.
struct Element {
  std::uint64_t work = 0;
  std::vector<std::size_t> children = {};
  std::vector<std::string> references = {};
  enum class State : std::uint8_t { unknown, underWay, known } state = State::unknown;
};

/// What describes colours and texts draws nothing.
bool isDrawn(std::string_view name) {
  constexpr std::string_view kOthers[] = {"linearGradient", "radialGradient", "stop",  "title", "desc",
                                          "metadata",       "defs",           "style", "tspan"};
  return std::ranges::find(kOthers, name) == std::end(kOthers);
}

class WorkCount {
 public:
  void start(std::string_view name, const XML_Char **attributes) {
    name.remove_prefix(name.find(':') + 1);
    Element element{.work = isDrawn(name) ? 1u : 0u};
    const std::size_t number = elements_.size();
    for (; attributes[0] != nullptr; attributes += 2) {
      const std::string_view key = attributes[0];
      const std::string_view value = attributes[1];
      if (key == "id") elementsByName_.emplace(value, number);
      if (key == "numOctaves" && name == "feTurbulence")
        element.work +=
            kWorkOfOctave * std::min<std::uint64_t>(std::strtoull(attributes[1], nullptr, 10), kAllowedWork);
      if ((key == "href" || key.ends_with(":href")) && value.starts_with('#'))
        element.references.emplace_back(value.substr(1));
      addReferencesByURL(value, element);
    }
    if (!open_.empty()) elements_[open_.back()].children.push_back(number);
    elements_.push_back(std::move(element));
    open_.push_back(number);
  }
  void end() { open_.pop_back(); }
  std::size_t depth() const { return open_.size(); }

  bool isTooMuch() {
    return !elements_.empty() && workOf(0, 0) > kAllowedWork + kAllowedWorkForEach * elements_.size();
  }

 private:
  static void addReferencesByURL(std::string_view value, Element &element) {
    constexpr std::string_view kStart = "url(#";
    for (std::size_t place = 0; (place = value.find(kStart, place)) != value.npos;) {
      place += kStart.size();
      element.references.emplace_back(value.substr(place, value.find(')', place) - place));
    }
  }

  /// With all below it and all that it refers to; who refers to himself is drawn by nobody.
  std::uint64_t workOf(std::size_t number, std::size_t depth) {
    Element &element = elements_[number];
    if (element.state == Element::State::known) return element.work;
    if (element.state == Element::State::underWay) return 0;
    if (depth > kMaximumDepth) return kEndlessWork;
    element.state = Element::State::underWay;
    std::uint64_t work = element.work;
    const auto add = [&](std::size_t other) { work = std::min(work + workOf(other, depth + 1), kEndlessWork); };
    std::ranges::for_each(element.children, add);
    for (const std::string &name : element.references)
      if (const auto found = elementsByName_.find(name); found != elementsByName_.end()) add(found->second);
    element.state = Element::State::known;
    return element.work = work;
  }

  std::vector<Element> elements_;
  std::vector<std::size_t> open_;
  std::unordered_map<std::string, std::size_t> elementsByName_;
};

struct FreeParser {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

}  // namespace

bool drawsTooMuch(std::string_view markup) {
  WorkCount count;
  const std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser(XML_ParserCreate(nullptr));
  if (!parser) return true;
  struct Run {
    WorkCount *count;
    XML_Parser parser;
  } run = {&count, parser.get()};
  XML_SetUserData(parser.get(), &run);
  XML_SetElementHandler(
      parser.get(),
      [](void *data, const XML_Char *name, const XML_Char **attributes) {
        const Run &self = *static_cast<Run *>(data);
        self.count->start(name, attributes);
        if (self.count->depth() > kMaximumDepth) XML_StopParser(self.parser, XML_FALSE);
      },
      [](void *data, const XML_Char *) { static_cast<Run *>(data)->count->end(); });
  const bool isTooLong = markup.size() > INT_MAX;
  const bool isRead = !isTooLong && XML_Parse(parser.get(), markup.data(), static_cast<int>(markup.size()),
                                              XML_TRUE) != XML_STATUS_ERROR;
  const bool isTooDeep = !isRead && XML_GetErrorCode(parser.get()) == XML_ERROR_ABORTED;
  return isTooLong || isTooDeep || count.isTooMuch();
}

}  // namespace nimbo::detail
