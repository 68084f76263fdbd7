// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/Counters.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/WebKit/RichText/CSSTexts.hpp"

namespace nimbo::detail {

namespace {

std::int32_t sum(std::int32_t a, std::int32_t b) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(std::int64_t{a} + b, Limits::min(), Limits::max()));
}

/// Calls `action(name, number)` for each pair of a list, as long as there are some `left`; a number that is not
/// there is `standard`.
template <class Action>
void forEachCounter(const CSSValue &pairs, std::int32_t standard, std::uint32_t *left, Action action) {
  const auto values = valuesOf(pairs);
  for (std::size_t i = 0; i < values.size() && *left > 0; ++i, --*left) {
    const std::u16string name = nameOf(values[i]);
    if (name.empty()) continue;
    std::int32_t number = standard;
    if (i + 1 < values.size() && values[i + 1].kind() == CSSValueKind::kNumber)
      number = integerOf(values[++i].number());
    action(name, number);
  }
}

}  // namespace

std::uint32_t Counters::innermost(std::u16string_view name) const {
  const auto found = names_.find(std::u16string(name));
  return found == names_.end() ? kNone : innermost_[found->second];
}

void Counters::reset(std::u16string_view name, std::int32_t value, std::uint32_t depth) {
  const auto [place, isNew] =
      names_.try_emplace(std::u16string(name), static_cast<std::uint32_t>(innermost_.size()));
  if (isNew) innermost_.push_back(kNone);
  std::uint32_t &top = innermost_[place->second];
  if (top != kNone && instances_[top].depth == depth) {
    // It was made by a sibling, whose counter goes no further.
    instances_[top].value = value;
    return;
  }
  instances_.push_back({place->second, depth, top, value});
  top = static_cast<std::uint32_t>(instances_.size()) - 1;
}

Counters::Instance &Counters::instance(std::u16string_view name, std::uint32_t depth) {
  if (innermost(name) == kNone) reset(name, 0, depth);
  return instances_[innermost(name)];
}

void Counters::increment(std::u16string_view name, std::int32_t step, std::uint32_t depth) {
  Instance &counter = instance(name, depth);
  counter.value = sum(counter.value, step);
}

void Counters::set(std::u16string_view name, std::int32_t value, std::uint32_t depth) {
  instance(name, depth).value = value;
}

void Counters::apply(const CSSValue &resets, const CSSValue &increments, const CSSValue &sets,
                     std::uint32_t depth) {
  std::uint32_t *const left = &changesLeft_;
  if (resets) forEachCounter(resets, 0, left, [&](const auto &name, auto value) { reset(name, value, depth); });
  if (increments)
    forEachCounter(increments, 1, left, [&](const auto &name, auto step) { increment(name, step, depth); });
  if (sets) forEachCounter(sets, 0, left, [&](const auto &name, auto value) { set(name, value, depth); });
}

void Counters::leave(std::uint32_t depth) {
  while (!instances_.empty() && instances_.back().depth > depth) {
    innermost_[instances_.back().name] = instances_.back().outer;
    instances_.pop_back();
  }
}

std::int32_t Counters::value(std::u16string_view name) const {
  const std::uint32_t top = innermost(name);
  return top == kNone ? 0 : instances_[top].value;
}

std::vector<std::int32_t> Counters::values(std::u16string_view name) const {
  std::vector<std::int32_t> values;
  for (std::uint32_t i = innermost(name); i != kNone; i = instances_[i].outer)
    values.push_back(instances_[i].value);
  if (values.empty()) values.push_back(0);
  std::ranges::reverse(values);
  return values;
}

}  // namespace nimbo::detail
