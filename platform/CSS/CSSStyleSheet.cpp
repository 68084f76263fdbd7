// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSStyleSheet.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "platform/CSS/CSSComponents.hpp"
#include "platform/CSS/CSSDeclarationReader.hpp"
#include "platform/CSS/CSSMediumReader.hpp"
#include "platform/CSS/CSSNameLookup.hpp"
#include "platform/CSS/CSSSelectorReader.hpp"

namespace nimbo {

namespace {

using detail::cssTokens;

constexpr std::uint32_t kRightBrace = cssTokens(CSSTokenType::kRightBrace);

enum class AtRule : std::uint8_t { kCharset, kImport, kNamespace, kMedia, kSupports, kLayer, kContainer };

/// The others have nothing that text shows, or ask for what only a layout knows.
constexpr detail::CSSNameLookup kAtRules(std::to_array<detail::CSSNamedValue<AtRule>>({
    {"charset", AtRule::kCharset},
    {"import", AtRule::kImport},
    {"namespace", AtRule::kNamespace},
    {"media", AtRule::kMedia},
    {"supports", AtRule::kSupports},
    {"layer", AtRule::kLayer},
    {"container", AtRule::kContainer},
}));

}  // namespace

/// Reads the rules of a sheet in one pass.
class CSSSheetReader {
 public:
  CSSSheetReader(CSSStyleSheet &sheet, std::u16string_view text, const CSSSheetReading &reading)
      : sheet_(sheet),
        reading_(reading),
        tokenizer_(text),
        declarations_(reading.selectors.mode, sheet.arena_, sheet.declarations_) {}

  void read() {
    Block top;
    while (readNext(top)) continue;
  }

 private:
  /// What the contents of a block belong to.
  struct Block {
    /// The rule whose declarations stand in the block; null outside rules.
    const CSSStyleRule *rule = nullptr;
    /// Made when the first rule is nested in that one.
    std::optional<detail::CSSNesting> *nesting = nullptr;
    CSSLayerIndex layer = kNoCSSLayer;
    std::uint32_t depth = 0;
    std::uint32_t firstDeclaration = 0;
  };

  /// Reads one rule or declaration of a block, or the token that ends the block; false at the end.
  bool readNext(Block &block) {
    const CSSToken token = tokenizer_.next();
    switch (token.type) {
      case CSSTokenType::kEnd:
        return false;
      case CSSTokenType::kWhiteSpace:
        return true;
      case CSSTokenType::kCDO:
      case CSSTokenType::kCDC:
        if (block.depth == 0) return true;
        break;
      case CSSTokenType::kSemicolon:
        if (block.depth > 0) return true;
        break;
      case CSSTokenType::kRightBrace:
        if (block.depth > 0) return false;
        break;
      case CSSTokenType::kAtKeyword:
        readAtRule(token, block);
        return true;
      case CSSTokenType::kIdent:
        if (block.rule && declarations_.read(tokenizer_, token, kRightBrace) ==
                              detail::CSSDeclarationReader::Outcome::kDeclaration)
          return true;
        break;
      default:
        break;
    }
    mayImport_ = false;
    tokenizer_.setLocation(token.location);
    readStyleRule(block);
    block.firstDeclaration = static_cast<std::uint32_t>(sheet_.declarations_.size());
    return true;
  }

  void readBlock(Block block) {
    if (block.depth > CSSStyleSheet::kMaximumNesting) {
      detail::skipComponents(tokenizer_, kRightBrace);
      return;
    }
    block.firstDeclaration = static_cast<std::uint32_t>(sheet_.declarations_.size());
    while (readNext(block)) continue;
    flush(block);
  }

  /// Makes a rule of the declarations that stand in the block so far.
  void flush(Block &block) {
    const auto end = static_cast<std::uint32_t>(sheet_.declarations_.size());
    if (block.rule && end > block.firstDeclaration) {
      CSSStyleRule rule = *block.rule;
      rule.firstDeclaration = block.firstDeclaration;
      rule.declarationCount = end - block.firstDeclaration;
      rule.layer = block.layer;
      sheet_.rules_.push_back(rule);
    }
    block.firstDeclaration = end;
  }

  void readStyleRule(Block &block) {
    flush(block);
    const std::uint32_t start = tokenizer_.location();
    const detail::CSSNesting *const nesting = nestingOf(block);
    detail::CSSSelectorReader reader(tokenizer_, reading_.selectors, sheet_.arena_, nesting);
    const std::size_t firstSelector = sheet_.selectors_.size();
    const bool isValid = reader.read(sheet_.selectors_);
    if (!isValid) {
      sheet_.selectors_.resize(firstSelector);
      tokenizer_.setLocation(start);
      if (!skipPrelude(block)) return;
    } else if (!reader.hasEndedAtBlock()) {
      return;
    }
    CSSStyleRule rule;
    rule.firstSelector = static_cast<std::uint32_t>(firstSelector);
    rule.selectorCount = static_cast<std::uint32_t>(sheet_.selectors_.size() - firstSelector);
    if (rule.selectorCount == 0) {
      detail::skipComponents(tokenizer_, kRightBrace);
      return;
    }
    std::optional<detail::CSSNesting> ownNesting;
    readBlock({&rule, &ownNesting, block.layer, block.depth + 1});
  }

  const detail::CSSNesting *nestingOf(const Block &block) {
    if (!block.rule) return nullptr;
    std::optional<detail::CSSNesting> &nesting = *block.nesting;
    if (!nesting) nesting = detail::CSSSelectorReader::nesting(sheet_.selectors(*block.rule), sheet_.arena_);
    return &*nesting;
  }

  /// Goes behind the "{" of a rule; false when there is none, in front of the "}" of the block around.
  bool skipPrelude(const Block &block) {
    std::uint32_t ends = cssTokens(CSSTokenType::kLeftBrace);
    if (block.depth > 0) ends |= kRightBrace | cssTokens(CSSTokenType::kSemicolon);
    const CSSToken end = detail::skipComponents(tokenizer_, ends);
    if (end.type == CSSTokenType::kRightBrace) tokenizer_.setLocation(end.location);
    return end.type == CSSTokenType::kLeftBrace;
  }

  void readAtRule(const CSSToken &keyword, Block &block) {
    const std::u16string_view name = tokenizer_.text(keyword, sheet_.arena_);
    const AtRule *const rule = kAtRules.find(name);
    tokens_.clear();
    const std::uint32_t ends =
        cssTokens(CSSTokenType::kSemicolon, CSSTokenType::kLeftBrace) | (block.depth > 0 ? kRightBrace : 0);
    bool isTooLong = false;
    const CSSToken end = detail::walkComponents(tokenizer_, ends, [&](const CSSToken &token) {
      isTooLong = isTooLong || tokens_.size() >= detail::kMaximumValueTokens;
      if (rule && !isTooLong) tokens_.push_back(token);
    });
    if (end.type == CSSTokenType::kRightBrace) tokenizer_.setLocation(end.location);
    const bool hasBlock = end.type == CSSTokenType::kLeftBrace;
    detail::CSSValueReader prelude(tokenizer_, tokens_, reading_.selectors.mode, sheet_.arena_);
    Block inner = block;
    ++inner.depth;
    bool holds = rule && !isTooLong;
    if (holds && !hasBlock) {
      if (*rule == AtRule::kImport && mayImport_) readImport(prelude);
      if (*rule == AtRule::kLayer) readLayers(prelude, block.layer);
    } else if (holds) {
      holds = *rule == AtRule::kMedia       ? detail::matchesMedium(prelude, reading_.medium)
              : *rule == AtRule::kSupports  ? detail::isSupported(prelude)
              : *rule == AtRule::kLayer     ? readLayerOfBlock(prelude, inner.layer)
              : *rule == AtRule::kContainer ? matchesContainer(prelude)
                                            : false;
    }
    const bool isBeforeImports =
        !hasBlock && rule && (*rule == AtRule::kCharset || *rule == AtRule::kImport || *rule == AtRule::kLayer);
    if (!isBeforeImports) mayImport_ = false;
    if (!hasBlock) return;
    if (!holds) {
      detail::skipComponents(tokenizer_, kRightBrace);
      return;
    }
    flush(block);
    readBlock(inner);
    block.firstDeclaration = static_cast<std::uint32_t>(sheet_.declarations_.size());
  }

  /// How wide a container is only a layout knows: each is taken to be as wide as the page.
  bool matchesContainer(detail::CSSValueReader &prelude) const {
    const CSSToken &name = prelude.peek();
    if (name.type == CSSTokenType::kIdent && !equalsASCIINoCase(prelude.text(name), "not")) prelude.advance();
    return !prelude.isAtEnd() && detail::matchesMedium(prelude, reading_.medium);
  }

  void readImport(detail::CSSValueReader &prelude) {
    CSSImport import;
    import.precedingLayers = static_cast<std::uint32_t>(sheet_.layers_.size());
    CSSValue url = prelude.url();
    if (!url) url = prelude.string();
    if (!url) return;
    import.url = url.text();
    std::optional<std::optional<detail::CSSValueReader>> layer;
    const CSSToken &next = prelude.peek();
    if (next.type == CSSTokenType::kIdent && equalsASCIINoCase(prelude.text(next), "layer")) {
      prelude.advance();
      layer.emplace();
    } else if (std::optional<detail::CSSValueReader> name = prelude.function("layer")) {
      layer = name;
    }
    if (std::optional<detail::CSSValueReader> condition = prelude.function("supports")) {
      if (!detail::isSupportedDeclarationOrCondition(*condition)) return;
    }
    if (!detail::matchesMedium(prelude, reading_.medium)) return;
    if (layer && !*layer) import.layer = addLayer({}, kNoCSSLayer);
    if (layer && *layer && !(readLayerName(**layer, kNoCSSLayer, import.layer) && (*layer)->isAtEnd())) return;
    sheet_.imports_.push_back(import);
  }

  void readLayers(detail::CSSValueReader &names, CSSLayerIndex around) {
    CSSLayerIndex layer;
    do {
      if (!readLayerName(names, around, layer)) return;
    } while (names.take(CSSTokenType::kComma));
  }

  bool readLayerOfBlock(detail::CSSValueReader &name, CSSLayerIndex &layer) {
    if (name.isAtEnd()) {
      layer = addLayer({}, layer);
      return true;
    }
    return readLayerName(name, layer, layer) && name.isAtEnd();
  }

  /// A name of parts with "." between them.
  bool readLayerName(detail::CSSValueReader &name, CSSLayerIndex around, CSSLayerIndex &layer) {
    CSSLayerIndex parent = around;
    do {
      const CSSValue part = name.identifier();
      if (!part) return false;
      parent = addLayer(part.text(), parent);
    } while (name.takeDelimiter(u'.'));
    layer = parent;
    return true;
  }

  CSSLayerIndex addLayer(std::u16string_view name, CSSLayerIndex parent) {
    const auto next = static_cast<CSSLayerIndex>(sheet_.layers_.size());
    const CSSLayerIndex layer =
        name.empty() ? next : namedLayers_.try_emplace({parent, name}, next).first->second;
    if (layer == next) sheet_.layers_.push_back({name, parent});
    return layer;
  }

  CSSStyleSheet &sheet_;
  const CSSSheetReading &reading_;
  CSSTokenizer tokenizer_;
  detail::CSSDeclarationReader declarations_;
  std::vector<CSSToken> tokens_;
  std::map<std::pair<CSSLayerIndex, std::u16string_view>, CSSLayerIndex> namedLayers_;
  bool mayImport_ = true;
};

CSSStyleSheet::CSSStyleSheet(NSString source, const CSSSheetReading &reading) : source_(std::move(source)) {
  CSSSheetReader(*this, source_.view().substr(0, kMaximumLengthInCodeUnits), reading).read();
}

}  // namespace nimbo
