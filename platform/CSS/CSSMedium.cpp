// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSMedium.hpp"

#include <optional>
#include <string>
#include <vector>

#include "platform/CSS/CSSMediumReader.hpp"
#include "platform/CSS/CSSNameLookup.hpp"
#include "platform/CSS/CSSValueReader.hpp"

namespace nimbo {

namespace detail {

namespace {

/// A condition that cannot be read is neither true nor false, nor is its negation.
enum class Truth : std::uint8_t { kFalse, kTrue, kUnknown };

Truth truthOf(bool holds) {
  return holds ? Truth::kTrue : Truth::kFalse;
}

Truth negated(Truth truth) {
  return truth == Truth::kUnknown ? truth : truthOf(truth == Truth::kFalse);
}

Truth conjunction(Truth a, Truth b) {
  if (a == Truth::kFalse || b == Truth::kFalse) return Truth::kFalse;
  return a == Truth::kTrue ? b : a;
}

Truth disjunction(Truth a, Truth b) {
  return negated(conjunction(negated(a), negated(b)));
}

enum class Feature : std::uint8_t { kWidth, kHeight, kAspectRatio, kResolution, kNumber, kKeyword };

struct FeatureMeaning {
  Feature kind;
  /// Of a number: the value.
  double value = 0;
  /// Of a keyword: the one that holds, in lower case; "none" and "0" are what a feature without a value is not.
  std::string_view keyword = {};
};

constexpr CSSNameLookup kFeatures(std::to_array<CSSNamedValue<FeatureMeaning>>({
    {"width", {Feature::kWidth}},
    {"device-width", {Feature::kWidth}},
    {"height", {Feature::kHeight}},
    {"device-height", {Feature::kHeight}},
    {"aspect-ratio", {Feature::kAspectRatio}},
    {"device-aspect-ratio", {Feature::kAspectRatio}},
    {"resolution", {Feature::kResolution, 1}},
    {"-webkit-device-pixel-ratio", {Feature::kNumber, 1}},
    {"color", {Feature::kNumber, 8}},
    {"color-index", {Feature::kNumber, 0}},
    {"monochrome", {Feature::kNumber, 0}},
    {"grid", {Feature::kNumber, 0}},
    {"-webkit-transform-3d", {Feature::kNumber, 1}},
    {"horizontal-viewport-segments", {Feature::kNumber, 1}},
    {"vertical-viewport-segments", {Feature::kNumber, 1}},
    {"orientation", {Feature::kKeyword}},
    {"any-hover", {.kind = Feature::kKeyword, .keyword = "hover"}},
    {"any-pointer", {.kind = Feature::kKeyword, .keyword = "fine"}},
    {"color-gamut", {.kind = Feature::kKeyword, .keyword = "srgb"}},
    {"display-mode", {.kind = Feature::kKeyword, .keyword = "browser"}},
    {"dynamic-range", {.kind = Feature::kKeyword, .keyword = "standard"}},
    {"forced-colors", {.kind = Feature::kKeyword, .keyword = "none"}},
    {"hover", {.kind = Feature::kKeyword, .keyword = "hover"}},
    {"inverted-colors", {.kind = Feature::kKeyword, .keyword = "none"}},
    {"overflow-block", {.kind = Feature::kKeyword, .keyword = "scroll"}},
    {"overflow-inline", {.kind = Feature::kKeyword, .keyword = "scroll"}},
    {"pointer", {.kind = Feature::kKeyword, .keyword = "fine"}},
    {"prefers-color-scheme", {.kind = Feature::kKeyword, .keyword = "light"}},
    {"prefers-contrast", {.kind = Feature::kKeyword, .keyword = "no-preference"}},
    {"prefers-reduced-data", {.kind = Feature::kKeyword, .keyword = "no-preference"}},
    {"prefers-reduced-motion", {.kind = Feature::kKeyword, .keyword = "no-preference"}},
    {"prefers-reduced-transparency", {.kind = Feature::kKeyword, .keyword = "no-preference"}},
    {"scan", {.kind = Feature::kKeyword, .keyword = "progressive"}},
    {"scripting", {.kind = Feature::kKeyword, .keyword = "none"}},
    {"update", {.kind = Feature::kKeyword, .keyword = "fast"}},
    {"video-dynamic-range", {.kind = Feature::kKeyword, .keyword = "standard"}},
}));

/// Pixels of a dot a unit of resolution.
constexpr CSSNameLookup kResolutions(std::to_array<CSSNamedValue<double>>({
    {"dpi", 1.0 / 96},
    {"dpcm", 2.54 / 96},
    {"dppx", 1},
    {"x", 1},
}));

enum class Comparison : std::uint8_t { kEqual, kLess, kLessOrEqual, kGreater, kGreaterOrEqual };

bool holds(double a, Comparison comparison, double b) {
  switch (comparison) {
    case Comparison::kEqual:
      return a == b;
    case Comparison::kLess:
      return a < b;
    case Comparison::kLessOrEqual:
      return a <= b;
    case Comparison::kGreater:
      return a > b;
    case Comparison::kGreaterOrEqual:
      return a >= b;
  }
  return false;
}

class MediaQueryReader {
 public:
  MediaQueryReader(CSSValueReader &reader, const CSSMedium &medium) : reader_(reader), medium_(medium) {}

  /// A list of queries, of which one holds.
  bool list() {
    if (reader_.isAtEnd()) return true;
    bool hasMatch = false;
    do {
      Truth truth = query();
      if (!reader_.isAtEnd() && reader_.peek().type != CSSTokenType::kComma) {
        truth = Truth::kUnknown;
        skipToComma();
      }
      hasMatch = hasMatch || truth == Truth::kTrue;
    } while (reader_.take(CSSTokenType::kComma));
    return hasMatch;
  }

 private:
  bool takeWord(std::string_view lower) {
    if (reader_.peek().type != CSSTokenType::kIdent || !equalsASCIINoCase(reader_.text(reader_.peek()), lower))
      return false;
    reader_.advance();
    return true;
  }

  void skipToComma() {
    while (!reader_.isAtEnd() && reader_.peek().type != CSSTokenType::kComma) {
      if (!reader_.block()) reader_.advance();
    }
  }

  Truth query() {
    const std::size_t start = reader_.position();
    const bool isNegated = takeWord("not");
    if (!isNegated) takeWord("only");
    const CSSToken &type = reader_.peek();
    if (type.type != CSSTokenType::kIdent) {
      reader_.setPosition(start);
      return condition(true);
    }
    const std::u16string_view name = reader_.text(type);
    if (equalsOneOfASCIINoCase(name, {"not", "only", "and", "or", "layer"})) return Truth::kUnknown;
    Truth truth = truthOf(equalsOneOfASCIINoCase(name, {"all", "screen"}));
    reader_.advance();
    if (takeWord("and")) truth = conjunction(truth, condition(false));
    return isNegated ? negated(truth) : truth;
  }

  Truth condition(bool mayHaveOr) {
    if (takeWord("not")) return negated(inParentheses());
    Truth truth = inParentheses();
    const bool isOr = mayHaveOr && takeWord("or");
    const std::string_view word = isOr ? "or" : "and";
    if (isOr || takeWord("and")) {
      do truth = isOr ? disjunction(truth, inParentheses()) : conjunction(truth, inParentheses());
      while (takeWord(word));
    }
    return truth;
  }

  Truth inParentheses() {
    const bool isGroup = reader_.peek().type == CSSTokenType::kLeftParenthesis;
    std::optional<CSSValueReader> content = reader_.block();
    if (!content || !isGroup) return Truth::kUnknown;
    MediaQueryReader inner(*content, medium_);
    const CSSToken &first = content->peek();
    const bool isCondition =
        first.type == CSSTokenType::kLeftParenthesis ||
        (first.type == CSSTokenType::kIdent && equalsASCIINoCase(content->text(first), "not"));
    const Truth truth = isCondition ? inner.condition(true) : inner.feature();
    return content->isAtEnd() ? truth : Truth::kUnknown;
  }

  std::optional<Comparison> takeComparison() {
    const bool isLess = reader_.takeDelimiter(u'<');
    if (!isLess && !reader_.takeDelimiter(u'>'))
      return reader_.takeDelimiter(u'=') ? std::optional(Comparison::kEqual) : std::nullopt;
    const bool hasEqual = reader_.takeDelimiter(u'=');
    if (isLess) return hasEqual ? Comparison::kLessOrEqual : Comparison::kLess;
    return hasEqual ? Comparison::kGreaterOrEqual : Comparison::kGreater;
  }

  /// A length in pixels, a number, a ratio or a resolution.
  std::optional<double> value(const FeatureMeaning &feature) {
    CSSLengthContext context;
    context.viewportWidth = medium_.widthInPixels;
    context.viewportHeight = medium_.heightInPixels;
    if (feature.kind == Feature::kWidth || feature.kind == Feature::kHeight)
      return resolvedNumber(reader_.numeric({.takesLengths = true}), context);
    if (feature.kind == Feature::kResolution) {
      if (reader_.peek().type != CSSTokenType::kDimension) return std::nullopt;
      const double *const factor = kResolutions.find(reader_.text(reader_.peek()));
      if (!factor) return std::nullopt;
      return reader_.takeDimension() * *factor;
    }
    const std::optional<double> number = resolvedNumber(reader_.number(), context);
    if (feature.kind != Feature::kAspectRatio || !number || !reader_.takeDelimiter(u'/')) return number;
    const std::optional<double> divisor = resolvedNumber(reader_.number(), context);
    return divisor ? std::optional(*number / *divisor) : std::nullopt;
  }

  double own(const FeatureMeaning &feature) const {
    switch (feature.kind) {
      case Feature::kWidth:
        return medium_.widthInPixels;
      case Feature::kHeight:
        return medium_.heightInPixels;
      case Feature::kAspectRatio:
        return medium_.widthInPixels / medium_.heightInPixels;
      default:
        return feature.value;
    }
  }

  Truth feature() {
    if (reader_.peek().type != CSSTokenType::kIdent) return range();
    // "-webkit-min-device-pixel-ratio" has its "min-" in the middle.
    const std::u16string_view name = reader_.text(reader_.peek());
    constexpr std::string_view kWebkit = "-webkit-", kLeast = "min-", kMost = "max-";
    const bool isWebkits = startsWithASCIINoCase(name, kWebkit);
    const std::u16string_view bare = name.substr(isWebkits ? kWebkit.size() : 0);
    const bool isLeast = startsWithASCIINoCase(bare, kLeast), isMost = startsWithASCIINoCase(bare, kMost);
    const Comparison comparison = isLeast  ? Comparison::kGreaterOrEqual
                                  : isMost ? Comparison::kLessOrEqual
                                           : Comparison::kEqual;
    std::u16string feature(isWebkits ? u"-webkit-" : u"");
    feature += bare.substr(isLeast || isMost ? kLeast.size() : 0);
    const FeatureMeaning *const meaning = kFeatures.find(feature);
    if (!meaning || (comparison != Comparison::kEqual && meaning->kind == Feature::kKeyword))
      return Truth::kUnknown;
    reader_.advance();
    if (reader_.take(CSSTokenType::kColon)) return compared(*meaning, comparison);
    if (comparison != Comparison::kEqual) return Truth::kUnknown;
    if (reader_.isAtEnd()) return truthOf(isPresent(*meaning));
    const std::optional<Comparison> sign = takeComparison();
    return sign && meaning->kind != Feature::kKeyword ? compared(*meaning, *sign) : Truth::kUnknown;
  }

  bool isPresent(const FeatureMeaning &feature) const {
    if (feature.kind == Feature::kKeyword)
      return feature.keyword != "none" && feature.keyword != "no-preference";
    return own(feature) != 0;
  }

  Truth compared(const FeatureMeaning &feature, Comparison comparison) {
    if (feature.kind == Feature::kKeyword) {
      const CSSToken &token = reader_.peek();
      if (token.type != CSSTokenType::kIdent) return Truth::kUnknown;
      const std::u16string_view keyword = reader_.text(token);
      reader_.advance();
      if (!feature.keyword.empty()) return truthOf(equalsASCIINoCase(keyword, feature.keyword));
      const bool isPortrait = medium_.heightInPixels >= medium_.widthInPixels;
      return truthOf(equalsASCIINoCase(keyword, isPortrait ? "portrait" : "landscape"));
    }
    const std::optional<double> asked = value(feature);
    return asked ? truthOf(holds(own(feature), comparison, *asked)) : Truth::kUnknown;
  }

  /// "400px <= width", and with a second comparison behind it.
  Truth range() {
    const std::size_t start = reader_.position();
    // What unit the number has is known when the feature is.
    while (!reader_.isAtEnd() && reader_.peek().type != CSSTokenType::kIdent) {
      if (!reader_.block()) reader_.advance();
    }
    if (reader_.isAtEnd()) return Truth::kUnknown;
    const FeatureMeaning *const meaning = kFeatures.find(reader_.text(reader_.peek()));
    if (!meaning || meaning->kind == Feature::kKeyword) return Truth::kUnknown;
    const std::size_t name = reader_.position();
    reader_.setPosition(start);
    const std::optional<double> left = value(*meaning);
    const std::optional<Comparison> first = takeComparison();
    if (!left || !first || reader_.position() != name) return Truth::kUnknown;
    reader_.advance();
    const Truth truth = truthOf(holds(*left, *first, own(*meaning)));
    if (reader_.isAtEnd()) return truth;
    const std::optional<Comparison> second = takeComparison();
    const auto isDownward = [](Comparison c) {
      return c == Comparison::kGreater || c == Comparison::kGreaterOrEqual;
    };
    if (!second || *first == Comparison::kEqual || *second == Comparison::kEqual ||
        isDownward(*first) != isDownward(*second))
      return Truth::kUnknown;
    return conjunction(truth, compared(*meaning, *second));
  }

  CSSValueReader &reader_;
  const CSSMedium &medium_;
};

}  // namespace

bool matchesMedium(CSSValueReader &queries, const CSSMedium &medium) {
  return MediaQueryReader(queries, medium).list();
}

}  // namespace detail

bool matchesMedium(std::u16string_view queries, const CSSMedium &medium) {
  const CSSTokenizer tokenizer(queries);
  const std::vector<CSSToken> tokens = detail::tokensOf(tokenizer);
  CSSArena arena;
  detail::CSSValueReader reader(tokenizer, tokens, CSSMode::kStandard, arena);
  return detail::matchesMedium(reader, medium);
}

}  // namespace nimbo
