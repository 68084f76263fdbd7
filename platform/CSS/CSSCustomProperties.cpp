// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSCustomProperties.hpp"

#include <algorithm>
#include <utility>

#include "platform/CSS/CSSComponents.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {

namespace {

/// What a property costs beside its units.
constexpr std::size_t kUnitsOfProperty = 16;
/// The most elements whose properties are looked at for one that is inherited.
constexpr std::uint32_t kMaximumInheritance = 16;

bool mayHaveVariables(std::u16string_view text) {
  return text.find(u'(') != text.npos;
}

/// False when that was too much; then nothing is left.
bool spend(CSSVariableBudget &budget, std::size_t units) {
  if (budget.remaining < units) {
    budget.remaining = 0;
    return false;
  }
  budget.remaining -= units;
  return true;
}

/// Replaces the variables of a text. `ValueOf` answers the value of a variable, or nothing.
template <class ValueOf>
class Replacement {
 public:
  Replacement(CSSVariableBudget &budget, ValueOf valueOf) : budget_(budget), valueOf_(valueOf) {}

  bool append(std::u16string &to, std::u16string_view text, std::size_t depth) {
    if (depth > CSSCustomProperties::kMaximumDepth || text.size() > CSSCustomProperties::kMaximumValueLength)
      return false;
    CSSTokenizer tokenizer(text);
    std::size_t copied = 0;
    for (CSSToken token = tokenizer.next(); token.type != CSSTokenType::kEnd; token = tokenizer.next()) {
      if (token.type != CSSTokenType::kFunction) continue;
      const bool isVariable = equalsASCIINoCase(tokenizer.rawText(token), "var");
      if (!isVariable && !equalsASCIINoCase(tokenizer.rawText(token), "env")) continue;
      if (!put(to, text.substr(copied, token.location - copied))) return false;
      if (!appendVariable(to, tokenizer, isVariable, depth)) return false;
      copied = tokenizer.location();
    }
    return put(to, text.substr(copied));
  }

 private:
  static constexpr std::u16string_view kSeparator = u"/**/";

  bool put(std::u16string &to, std::u16string_view text) {
    if (to.size() + text.size() > CSSCustomProperties::kMaximumValueLength) return false;
    to += text;
    return spend(budget_, text.size());
  }

  /// From the arguments on, up to behind the ")".
  bool appendVariable(std::u16string &to, CSSTokenizer &tokenizer, bool isVariable, std::size_t depth) {
    const CSSToken nameToken = detail::nextBesideSpace(tokenizer);
    if (nameToken.type != CSSTokenType::kIdent) return false;
    const std::u16string_view rawName = tokenizer.rawText(nameToken);
    const std::u16string name = nameToken.hasEscapes ? unescapedCSS(rawName) : std::u16string(rawName);
    if (isVariable && !name.starts_with(u"--")) return false;
    CSSToken token = detail::nextBesideSpace(tokenizer);
    const bool hasFallback = token.type == CSSTokenType::kComma;
    const std::size_t fallback = tokenizer.location();
    if (hasFallback)
      token = detail::skipComponents(tokenizer, detail::cssTokens(CSSTokenType::kRightParenthesis));
    if (token.type != CSSTokenType::kRightParenthesis && token.type != CSSTokenType::kEnd) return false;
    // What stands on both sides must not become one token with it.
    if (!put(to, kSeparator)) return false;
    if (isVariable) {
      if (const std::optional<std::u16string_view> value = valueOf_(name))
        return put(to, *value) && put(to, kSeparator);
    } else if (startsWithASCIINoCase(std::u16string_view(name), "safe-area-inset-")) {
      return put(to, u"0px/**/");
    }
    const std::u16string_view rest = tokenizer.source().substr(fallback, token.location - fallback);
    return hasFallback && append(to, trimmed(rest, isASCIIWhiteSpace<unichar>), depth + 1) &&
           put(to, kSeparator);
  }

  CSSVariableBudget &budget_;
  ValueOf valueOf_;
};

}  // namespace

/// Replaces the variables of an element's own properties by each other.
class CSSVariableReplacement {
 public:
  CSSVariableReplacement(const CSSCustomProperties *inherited, std::span<const CSSDeclaration> declarations,
                         CSSVariableBudget &budget)
      : inherited_(inherited), budget_(budget) {
    for (const CSSDeclaration &declaration : declarations)
      if (declaration.property == CSSProperty::kCustom)
        own_.push_back({declaration.customName, declaration.value});
    std::ranges::stable_sort(own_, {}, &Own::name);
    // The last of those with one name counts.
    std::size_t kept = 0;
    for (std::size_t i = 0; i < own_.size(); ++i)
      if (i + 1 == own_.size() || own_[i + 1].name != own_[i].name) std::swap(own_[kept++], own_[i]);
    own_.resize(kept);
  }

  std::vector<CSSCustomProperties::Property> resolved() {
    std::vector<CSSCustomProperties::Property> properties;
    for (std::size_t i = 0; i < own_.size(); ++i) resolve(i, 0);
    for (Own &own : own_) {
      if (own.isInherited) continue;
      properties.push_back({NSString::stringWithCharacters(own.name), std::move(own.resolved)});
    }
    return properties;
  }

 private:
  enum class State : std::uint8_t { kNew, kOpen, kDone };
  struct Own {
    std::u16string_view name;
    CSSValue value;
    State state = State::kNew;
    bool isInherited = false;
    bool isCyclic = false;
    NSString resolved = {};
  };

  void resolve(std::size_t index, std::size_t depth) {
    Own &own = own_[index];
    if (own.state != State::kNew) return;
    own.state = State::kOpen;
    open_.push_back(index);
    if (own.value.kind() == CSSValueKind::kKeyword) {
      own.isInherited = !own.value.is(CSSKeyword::kInitial);
    } else if (spend(budget_, own.value.text().size() + kUnitsOfProperty)) {
      replace(own, depth);
    }
    open_.pop_back();
    own.state = State::kDone;
  }

  void replace(Own &own, std::size_t depth) {
    const std::u16string_view text = own.value.text();
    if (!mayHaveVariables(text)) {
      if (text.size() <= CSSCustomProperties::kMaximumValueLength)
        own.resolved = NSString::stringWithCharacters(text);
      return;
    }
    const auto valueOf = [&](std::u16string_view name) { return valueOfName(name, depth + 1); };
    std::u16string resolved;
    const bool isValid = Replacement(budget_, valueOf).append(resolved, text, 0);
    if (isValid && !own.isCyclic) own.resolved = NSString::stringWithCharacters(resolved);
  }

  std::optional<std::u16string_view> valueOfName(std::u16string_view name, std::size_t depth) {
    const auto found = std::ranges::lower_bound(own_, name, {}, &Own::name);
    const bool isOwn = found != own_.end() && found->name == name;
    if (isOwn && found->state == State::kOpen) {
      // All that have led back to it depend on themselves.
      const auto index = static_cast<std::size_t>(found - own_.begin());
      for (std::size_t i = open_.size(); i-- > 0;) {
        own_[open_[i]].isCyclic = true;
        if (open_[i] == index) break;
      }
      return std::nullopt;
    }
    if (isOwn) {
      if (depth > CSSCustomProperties::kMaximumDepth) return std::nullopt;
      resolve(static_cast<std::size_t>(found - own_.begin()), depth);
    }
    if (isOwn && !found->isInherited)
      return found->resolved ? std::optional(found->resolved.view()) : std::nullopt;
    return inherited_ ? inherited_->value(name) : std::nullopt;
  }

  const CSSCustomProperties *inherited_;
  CSSVariableBudget &budget_;
  std::vector<Own> own_;
  std::vector<std::size_t> open_;
};

SharedPointer<CSSCustomProperties> CSSCustomProperties::make(SharedPointer<CSSCustomProperties> inherited,
                                                             std::span<const CSSDeclaration> declarations,
                                                             CSSVariableBudget &budget) {
  if (declarations.empty() || budget.remaining == 0) return inherited;
  std::vector<Property> own = CSSVariableReplacement(inherited.get(), declarations, budget).resolved();
  const auto isInherited = [&](const Property &property) {
    const Property *const found = inherited ? inherited->find(property.name.view()) : nullptr;
    return found ? found->value == property.value : !property.value;
  };
  if (std::ranges::all_of(own, isInherited)) return inherited;
  auto properties = makeShared<CSSCustomProperties>();
  properties->own_ = std::move(own);
  properties->depth_ = inherited ? inherited->depth_ + 1 : 0;
  properties->inherited_ = std::move(inherited);
  if (properties->depth_ >= kMaximumInheritance) properties->flatten(budget);
  return properties;
}

/// Takes over what it inherits, so that looking it up does not take longer and longer.
void CSSCustomProperties::flatten(CSSVariableBudget &budget) {
  for (const CSSCustomProperties *from = inherited_.get(); from; from = from->inherited_.get())
    own_.insert(own_.end(), from->own_.begin(), from->own_.end());
  (void)spend(budget, own_.size() * kUnitsOfProperty);
  const auto name = [](const Property &property) { return property.name.view(); };
  std::ranges::stable_sort(own_, {}, name);
  const auto isSame = [](const Property &a, const Property &b) { return a.name == b.name; };
  own_.erase(std::unique(own_.begin(), own_.end(), isSame), own_.end());
  inherited_ = {};
  depth_ = 0;
}

const CSSCustomProperties::Property *CSSCustomProperties::find(std::u16string_view name) const {
  const auto nameOf = [](const Property &property) { return property.name.view(); };
  for (const CSSCustomProperties *from = this; from; from = from->inherited_.get()) {
    const auto found = std::ranges::lower_bound(from->own_, name, {}, nameOf);
    if (found != from->own_.end() && found->name.view() == name) return &*found;
  }
  return nullptr;
}

std::optional<std::u16string_view> CSSCustomProperties::value(std::u16string_view name) const {
  const Property *const property = find(name);
  return property && property->value ? std::optional(property->value.view()) : std::nullopt;
}

std::optional<std::u16string> replacedVariables(std::u16string_view tokens,
                                                const CSSCustomProperties *properties,
                                                CSSVariableBudget &budget) {
  const auto valueOf = [&](std::u16string_view name) {
    return properties ? properties->value(name) : std::nullopt;
  };
  std::u16string text;
  return Replacement(budget, valueOf).append(text, tokens, 0) ? std::optional(text) : std::nullopt;
}

}  // namespace nimbo
