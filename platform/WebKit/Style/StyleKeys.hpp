// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"

namespace nimbo::detail {

/// What a style depends on, or what depends on it, as words: things with equal keys are the same.
class StyleKey {
 public:
  /// Begins anew.
  void clear() { words_.clear(); }
  void add(std::uint64_t word) { words_.push_back(word); }
  void add(const void *pointer) { add(reinterpret_cast<std::uintptr_t>(pointer)); }
  /// Adds a value by what it points to, not by what stands there.
  void add(const CSSValue &value);
  /// Adds the declarations themselves.
  void add(std::span<const CSSDeclaration> declarations);
  /// Adds what children and pseudo-elements take from a style.
  void addInheritance(const ComputedStyle &style);

  /// The words.
  const std::vector<std::uint64_t> &words() const NIMBO_LIFETIMEBOUND { return words_; }

 private:
  void add(double number);
  void add(CSSColor color);
  void add(const DecorationLine &line);

  std::vector<std::uint64_t> words_;
};

}  // namespace nimbo::detail
