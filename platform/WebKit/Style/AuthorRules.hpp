// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <span>

#include "platform/CSS/CSSRuleIndex.hpp"
#include "platform/CSS/CSSStyleSheet.hpp"
#include "platform/WebKit/Style/StyleResolver.hpp"

namespace nimbo::detail {

/// The rules of a page's own sheets, with those that they import in front of theirs.
class AuthorRules {
 public:
  /// Reads the sheets whose conditions hold.
  AuthorRules(std::span<const AuthorSheet> sheets, const CSSSheetReading &reading);
  AuthorRules(const AuthorRules &) = delete;
  AuthorRules &operator=(const AuthorRules &) = delete;

  /// The rules.
  const CSSRuleIndex &index() const NIMBO_LIFETIMEBOUND { return index_; }

 private:
  void add(const AuthorSheet &sheet, const CSSSheetReading &reading, CSSRuleIndex::Layer around,
           std::uint32_t depth);

  /// The index points to them.
  std::deque<CSSStyleSheet> sheets_;
  CSSRuleIndex index_;
};

}  // namespace nimbo::detail
