// SPDX-License-Identifier: Apache-2.0
//
// The tokens of style sheets, by CSS Syntax Level 3. A token is a range of the text; nothing is copied but a
// name or a string with escapes, when somebody asks for it.
//
//     CSSTokenizer tokenizer(u"color: red");
//     for (CSSToken token = tokenizer.next(); token.type != CSSTokenType::kEnd; token = tokenizer.next())
//       use(token.type, tokenizer.rawText(token));
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/CSS/CSSArena.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The kinds of tokens. Comments are none; "<!--" and "-->" are.
enum class CSSTokenType : std::uint8_t {
  kEnd,
  kIdent,
  kFunction,   ///< A name and its "(".
  kAtKeyword,  ///< "@" and a name.
  kHash,       ///< "#" and a name.
  kString,     ///< In quotes; one that the text's end cuts off, too.
  kBadString,  ///< Cut off by a line break.
  kURL,        ///< "url(" without quotes, and its ")".
  kBadURL,
  kDelim,  ///< A single unit that means nothing by itself.
  kNumber,
  kPercentage,
  kDimension,
  kWhiteSpace,
  kCDO,
  kCDC,
  kColon,
  kSemicolon,
  kComma,
  kLeftSquare,
  kRightSquare,
  kLeftParenthesis,
  kRightParenthesis,
  kLeftBrace,
  kRightBrace,
};

/// A token: where it stands in the text.
struct CSSToken {
  /// Its kind.
  CSSTokenType type = CSSTokenType::kEnd;
  /// Whether the content has escapes or U+0000, so that `text` differs from `rawText`.
  bool hasEscapes = false;
  /// Of a hash: whether it is a name that an id may have. Of a number or dimension: whether it is an integer.
  bool flag = false;
  /// Whether a number begins with "+" or "-".
  bool hasSign = false;
  /// Where the token begins.
  std::uint32_t location = 0;
  /// Where the token ends.
  std::uint32_t end = 0;
  /// The content: a name without "@", "#" or "(", a string without quotes, a URL, a dimension's unit.
  std::uint32_t contentLocation = 0;
  /// Where the content ends.
  std::uint32_t contentEnd = 0;
};

/// Reads tokens off a text, which must outlive it and have fewer than 2^32 units. Copies go on independently.
class CSSTokenizer {
 public:
  /// Begins at the text's first unit.
  explicit CSSTokenizer(std::u16string_view source) : source_(source) {}

  /// The next token; `kEnd` at the end, as often as one asks.
  CSSToken next();
  /// Where the next token begins, or a comment in front of it.
  std::uint32_t location() const { return location_; }
  /// Goes on at a location where a token begins.
  void setLocation(std::uint32_t location) { location_ = location; }
  /// The whole text.
  std::u16string_view source() const { return source_; }

  /// A token's content as it stands in the text.
  std::u16string_view rawText(const CSSToken &token) const {
    return source_.substr(token.contentLocation, token.contentEnd - token.contentLocation);
  }
  /// A token's content; it lies in the text or, when it has escapes, in the arena.
  std::u16string_view text(const CSSToken &token, CSSArena &arena) const;
  /// The single unit of a `kDelim`.
  unichar delimiter(const CSSToken &token) const { return source_[token.location]; }
  /// Whether it is a `kDelim` of that unit.
  bool isDelimiter(const CSSToken &token, unichar c) const {
    return token.type == CSSTokenType::kDelim && source_[token.location] == c;
  }
  /// The value of a number, percentage or dimension; finite.
  double number(const CSSToken &token) const;

 private:
  unichar at(std::size_t location) const { return location < source_.size() ? source_[location] : u'\0'; }
  bool isValidEscape(std::size_t location) const;
  bool startsIdentifier(std::size_t location) const;
  bool startsNumber(std::size_t location) const;
  bool skipComments();
  CSSTokenType read(CSSToken &token);
  void readName(CSSToken &token);
  void readEscape();
  CSSTokenType readString(CSSToken &token, unichar quote);
  CSSTokenType readNumeric(CSSToken &token);
  CSSTokenType readIdentLike(CSSToken &token);
  CSSTokenType readURL(CSSToken &token);
  CSSTokenType readBadURL(CSSToken &token);

  std::u16string_view source_;
  std::uint32_t location_ = 0;
};

/// A name or string without its escapes: each becomes its character, an escaped line break nothing, U+0000 and
/// what is no character U+FFFD.
std::u16string unescapedCSS(std::u16string_view raw);

}  // namespace nimbo
