// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/UnicharSearches.hpp"

#include "Classes/Characters/FoldCandidates.hpp"

namespace nimbo {

namespace {

using detail::UnicharChoice;

std::uint32_t find(const unichar *units, std::uint32_t length, const UnicharChoice &choice) {
  if (choice.count == 0) return NSNotFound;
  const std::size_t index = detail::findOneOfChoice(units, length, choice);
  return index < length ? static_cast<std::uint32_t>(index) : NSNotFound;
}

std::uint32_t findLast(const unichar *units, std::uint32_t length, const UnicharChoice &choice) {
  if (choice.count == 0) return NSNotFound;
  const std::size_t index = detail::findLastOneOfChoice(units, length, choice);
  return index < length ? static_cast<std::uint32_t>(index) : NSNotFound;
}

std::uint32_t count(const unichar *units, std::uint32_t length, const UnicharChoice &choice) {
  return choice.count == 0 ? 0 : static_cast<std::uint32_t>(detail::countOneOfChoice(units, length, choice));
}

}  // namespace

std::uint32_t findUnichar(const unichar *units, std::uint32_t length, unichar c) {
  return find(units, length, UnicharChoice::only(c));
}

std::uint32_t findLastUnichar(const unichar *units, std::uint32_t length, unichar c) {
  return findLast(units, length, UnicharChoice::only(c));
}

std::uint32_t countUnichar(const unichar *units, std::uint32_t length, unichar c) {
  return count(units, length, UnicharChoice::only(c));
}

std::uint32_t findUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper) {
  return find(units, length, detail::foldCandidates(upper));
}

std::uint32_t findLastUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper) {
  return findLast(units, length, detail::foldCandidates(upper));
}

std::uint32_t countUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper) {
  return count(units, length, detail::foldCandidates(upper));
}

bool isAsciiUnichars(const unichar *units, std::uint32_t length) {
  return detail::areAllUnicharsAscii(units, length);
}

UnicharCounts countUnichars(const unichar *units, std::uint32_t length, unichar first, unichar second) {
  std::size_t firstCount = 0, secondCount = 0;
  detail::countTwoUnichars(units, length, first, second, &firstCount, &secondCount);
  return {static_cast<std::uint32_t>(firstCount), static_cast<std::uint32_t>(secondCount)};
}

}  // namespace nimbo
