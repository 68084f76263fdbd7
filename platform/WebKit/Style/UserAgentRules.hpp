// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/CSS/CSSNames.hpp"
#include "platform/CSS/CSSRuleIndex.hpp"
#include "platform/CSS/CSSStyleSheet.hpp"

namespace nimbo::detail {

/// The rules that every page has. They are read once and live as long as the process; any thread may use them.
class UserAgentRules {
 public:
  /// The rules for pages of the mode.
  static const UserAgentRules &rulesOfMode(CSSMode mode);

  /// The names that the rules speak of: the base of a page's own.
  const CSSNames &names() const NIMBO_LIFETIMEBOUND { return names_; }
  /// The rules.
  const CSSRuleIndex &index() const NIMBO_LIFETIMEBOUND { return index_; }

 private:
  explicit UserAgentRules(CSSMode mode);

  CSSNames names_;
  CSSStyleSheet sheet_, quirks_;
  CSSRuleIndex index_;
};

}  // namespace nimbo::detail
