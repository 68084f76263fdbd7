// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Entities/EntityTable.hpp"

namespace nimbo {

/// `convertEntities2Characters` as its rules say it, one after the other and without regard to speed.
class PlainEntityDecoder {
 public:
  PlainEntityDecoder(std::u16string_view text, bool standard, bool onlyNumeric, bool nonUmlauted)
      : text_(text), standard_(standard), onlyNumeric_(onlyNumeric), nonUmlauted_(nonUmlauted) {}

  std::u16string decoded() {
    while (at_ < text_.size())
      if (!decodeReference()) put(text_[at_++]);
    return output_;
  }

 private:
  void put(unichar c) { output_ += nonUmlauted_ ? umlautsToAscii(c) : c; }

  bool decodeReference() {
    if (text_[at_] != u'&' || at_ + 1 == text_.size()) return false;
    const std::size_t following = text_.size() - at_ - 1;
    if (following >= 4 && takeFixed(u"nbsp", u'\u00a0')) return true;
    if (following >= 4 && takeFixed(u"apos", u'\'')) return true;
    if (standard_ && (takeFixed(u"quot", u'"') || takeFixed(u"amp", u'&') || takeFixed(u"lt", u'<') ||
                      takeFixed(u"gt", u'>')))
      return true;
    const bool isNumeric = text_[at_ + 1] == u'#';
    return (isNumeric || !onlyNumeric_) && decodeRun(isNumeric);
  }

  bool takeFixed(std::u16string_view name, unichar character) {
    if (text_.substr(at_ + 1, name.size()) != name) return false;
    at_ += 1 + name.size();
    if (at_ < text_.size() && text_[at_] == u';') ++at_;
    output_ += character;
    return true;
  }

  bool decodeRun(bool isNumeric) {
    const std::size_t q = at_ + 1;
    const bool isHexadecimal = isNumeric && q + 1 < text_.size() && (text_[q + 1] | 0x20) == u'x';
    const std::size_t start = isHexadecimal ? q + 2 : isNumeric ? q + 1 : q;
    std::size_t terminator = start;
    while (terminator < text_.size() && isOfRun(text_[terminator], isNumeric, isHexadecimal)) ++terminator;
    if (terminator == text_.size()) --terminator;
    const std::size_t n = terminator + 1 - q;
    if (n > 7 || n == 1) return false;
    const std::u16string_view run =
        start < terminator ? text_.substr(start, terminator - start) : std::u16string_view();
    const std::optional<unichar> value = isNumeric ? valueOfNumber(run, isHexadecimal) : valueOfName(run);
    if (!value) return false;
    if (!standard_ && std::u16string_view(u"<>&\"").find(*value) != std::u16string_view::npos) return false;
    put(*value);
    at_ = text_[terminator] == u';' ? terminator + 1 : terminator;
    return true;
  }

  static bool isOfRun(unichar c, bool isNumeric, bool isHexadecimal) {
    if (!isNumeric) return alphaNumCharacterSetRep()->contains(c);
    return c < 128 && std::strchr(isHexadecimal ? "0123456789abcdefABCDEF" : "0123456789", c) && c != 0;
  }

  static unichar valueOfNumber(std::u16string_view digits, bool isHexadecimal) {
    const std::string text(digits.begin(), digits.end());
    return static_cast<unichar>(text.empty() ? 0 : std::stoul(text, nullptr, isHexadecimal ? 16 : 10));
  }

  static std::optional<unichar> valueOfName(std::u16string_view run) {
    std::string name;
    for (const unichar c : run) name += static_cast<char>(c);
    for (std::size_t i = 0; entityStrings[i]; ++i)
      if (name == entityStrings[i]) return entityCharacters[i];
    return std::nullopt;
  }

  std::u16string_view text_;
  bool standard_, onlyNumeric_, nonUmlauted_;
  std::size_t at_ = 0;
  std::u16string output_;
};

inline std::u16string plainlyDecoded(std::u16string_view text, bool standard, bool onlyNumeric,
                                     bool nonUmlauted) {
  return PlainEntityDecoder(text, standard, onlyNumeric, nonUmlauted).decoded();
}

}  // namespace nimbo
