// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/SharedPointer.hpp"

namespace NIMBO_PUBLIC nimbo {

class CSSVariableReplacement;

/// What replacing variables may cost a page, in code units; then values with variables are invalid.
struct CSSVariableBudget {
  /// What is left.
  std::size_t remaining = std::size_t{1} << 26;
};

/// The custom properties of an element with the variables in their values replaced, and those that it inherits.
/// Immutable, shared by the elements that have the same.
class CSSCustomProperties : public ReferenceCounted {
 public:
  /// The most units that a value grows to; it is invalid when it grows more.
  static constexpr std::size_t kMaximumValueLength = 1 << 16;
  /// How deep variables may stand in values and fallbacks of variables.
  static constexpr std::size_t kMaximumDepth = 64;

  /// The properties of an element whose parent has `inherited`, which may be null, and which declares these,
  /// the later ones winning. "unset" and "inherit" leave what is inherited, "initial" leaves nothing.
  /// Properties that depend on themselves, or whose variables cannot be replaced, have no value. Without
  /// declarations it is `inherited` itself. Raises `std::bad_alloc`.
  static SharedPointer<CSSCustomProperties> make(SharedPointer<CSSCustomProperties> inherited,
                                                 std::span<const CSSDeclaration> declarations,
                                                 CSSVariableBudget &budget);

  /// The value of a custom property, "--" included in its name; nothing when it has none.
  std::optional<std::u16string_view> value(std::u16string_view name) const;

 private:
  friend class CSSVariableReplacement;
  friend SharedPointer<CSSCustomProperties> makeShared<CSSCustomProperties>();

  struct Property {
    NSString name;
    /// Nil where the element has no value though it would inherit one.
    NSString value;
  };

  CSSCustomProperties() = default;
  const Property *find(std::u16string_view name) const;
  void flatten(CSSVariableBudget &budget);

  std::vector<Property> own_;
  SharedPointer<CSSCustomProperties> inherited_;
  std::uint32_t depth_ = 0;
};

/// The tokens of a value with its variables replaced by those of the element, which may be null. Nothing when a
/// variable has neither a value nor a fallback, when the text grows too long, and when the budget is used up.
/// Values that are read from the text point into it, so that it belongs into the arena of the values.
std::optional<std::u16string> replacedVariables(std::u16string_view tokens,
                                                const CSSCustomProperties *properties,
                                                CSSVariableBudget &budget);

}  // namespace nimbo
