// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/HTMLTokenizer.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/CharacterReferences.hpp"
#include "platform/WebKit/Parsing/ScriptText.hpp"

namespace nimbo {
namespace {

constexpr StopUnits kMarkupStops({u'<', u'&', u'\0'});
constexpr StopUnits kReferenceStops({u'&', u'\0'});
constexpr StopUnits kNullStop({u'\0'});
constexpr StopUnits kLess({u'<'});
constexpr StopUnits kGreater({u'>'});
constexpr StopUnits kTagNameEnds({u' ', u'\t', u'\n', u'\f', u'/', u'>'});
constexpr StopUnits kAttributeNameEnds({u' ', u'\t', u'\n', u'\f', u'/', u'>', u'='});
constexpr StopUnits kDoubleQuotedStops({u'"', u'&', u'\0'});
constexpr StopUnits kSingleQuotedStops({u'\'', u'&', u'\0'});
constexpr StopUnits kUnquotedStops({u' ', u'\t', u'\n', u'\f', u'>', u'&', u'\0'});

constexpr std::u16string_view kCDATA = u"[CDATA[", kCDATAEnd = u"]]>";
constexpr unichar kReplacement = u'\uFFFD';

bool isBlank(unichar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f';
}

std::uint32_t narrow(std::size_t value) {
  return static_cast<std::uint32_t>(value);
}

}  // namespace

HTMLTokenizer::HTMLTokenizer(HTMLDocument &document, const HTMLLimits &limits)
    : document_(document), source_(document.source()), maximumAttributes_(limits.attributes) {}

void HTMLTokenizer::next(HTMLToken &token) {
  for (;;) {
    if (content_ != Content::markup && position_ >= textEnd_) {
      position_ = nextPosition_;
      content_ = Content::markup;
    }
    if (position_ >= source_.size()) break;
    if (readText(token) || readMarkup(token)) return;
  }
  token = {};
}

/// Whether "<" begins more than text there.
bool HTMLTokenizer::isMarkupAt(std::size_t index) const {
  if (index + 1 >= source_.size()) return false;
  const unichar c = source_[index + 1];
  return isASCIILetter(c) || c == u'!' || c == u'?' || (c == u'/' && index + 2 < source_.size());
}

/// Reads a run of text, a character reference or a null character; nothing at markup.
bool HTMLTokenizer::readText(HTMLToken &token) {
  const std::u16string_view text =
      content_ == Content::markup ? source_ : std::u16string_view(source_.substr(0, textEnd_));
  const StopUnits &stops = content_ == Content::markup               ? kMarkupStops
                           : content_ == Content::textWithReferences ? kReferenceStops
                                                                     : kNullStop;
  std::size_t end = position_;
  for (; (end = stops.find(text, end)) < text.size(); ++end) {
    if (text[end] == u'<' && !isMarkupAt(end)) continue;
    if (end > position_) {
      // Most of these are no references.
      const bool isText = text[end] == u'&' &&
                          (end + 1 >= text.size() || !(isASCIILetter(text[end + 1]) || text[end + 1] == u'#'));
      if (isText) continue;
      break;
    }
    if (text[end] == u'<') return false;
    if (readSpecialUnit(token)) return true;
  }
  token.kind = HTMLTokenKind::characters;
  token.text = {narrow(position_), narrow(end - position_), false};
  position_ = end;
  return true;
}

/// Reads the character reference or null character at the position; nothing when it is "&" alone.
bool HTMLTokenizer::readSpecialUnit(HTMLToken &token) {
  token.kind = HTMLTokenKind::characters;
  if (source_[position_] == u'\0') {
    ++position_;
    if (content_ == Content::markup)
      token.kind = HTMLTokenKind::nullCharacter;
    else
      token.text = ownCopy({&kReplacement, 1});
    return true;
  }
  const std::size_t end = content_ == Content::markup ? source_.size() : textEnd_;
  const CharacterReference reference =
      readCharacterReference(source_.substr(position_, end - position_), false);
  if (reference.length == 0) return false;
  token.text = ownCopy(reference.view());
  position_ += reference.length;
  return true;
}

/// Reads what begins with "<"; nothing when it comes to nothing.
bool HTMLTokenizer::readMarkup(HTMLToken &token) {
  const unichar c = source_[position_ + 1];
  if (c == u'!') return readDeclaration(token);
  if (c == u'?') {
    ++position_;
    readBogusComment(token);
    return true;
  }
  if (c != u'/') {
    ++position_;
    return readTag(token, HTMLTokenKind::startTag);
  }
  position_ += 2;
  if (isASCIILetter(source_[position_])) return readTag(token, HTMLTokenKind::endTag);
  if (source_[position_] == u'>') return ++position_, false;
  readBogusComment(token);
  return true;
}

/// Reads a tag at its name; nothing when the page ends in it.
bool HTMLTokenizer::readTag(HTMLToken &token, HTMLTokenKind kind) {
  const std::size_t end = kTagNameEnds.find(source_, position_);
  token.kind = kind;
  token.isSelfClosing = false;
  token.firstAttribute = narrow(document_.attributes_.size());
  token.attributeCount = 0;
  const std::size_t start = position_;
  position_ = end;
  ++tag_;
  while (readAttribute(token)) continue;
  if (position_ >= source_.size()) {
    document_.attributes_.resize(token.firstAttribute);
    return false;
  }
  ++position_;
  token.name = document_.atoms_.atomOfFolded(source_.substr(start, end - start));
  return true;
}

void HTMLTokenizer::skipBlanks() {
  while (position_ < source_.size() && isBlank(source_[position_])) ++position_;
}

/// Reads the next attribute of a tag; nothing at the end of the tag or of the page.
bool HTMLTokenizer::readAttribute(HTMLToken &token) {
  for (skipBlanks(); isAt(position_, u'/'); skipBlanks())
    if (isAt(++position_, u'>')) token.isSelfClosing = true;
  if (position_ >= source_.size() || source_[position_] == u'>') return false;
  const std::size_t start = position_;
  // A name may begin with "=".
  position_ = kAttributeNameEnds.find(source_, start + 1);
  const std::size_t end = position_;
  skipBlanks();
  HTMLTextRange value;
  if (isAt(position_, u'=')) {
    ++position_;
    skipBlanks();
    value = readAttributeValue();
  }
  if (position_ < source_.size() && token.kind == HTMLTokenKind::startTag)
    addAttribute(token, document_.atoms_.atomOfFolded(source_.substr(start, end - start)), value);
  return true;
}

HTMLTextRange HTMLTokenizer::readAttributeValue() {
  if (isAt(position_, u'"')) return ++position_, readValueUntil(kDoubleQuotedStops, u'"');
  if (isAt(position_, u'\'')) return ++position_, readValueUntil(kSingleQuotedStops, u'\'');
  return readValueUntil(kUnquotedStops, u'\0');
}

/// Reads a value with its character references, and goes over its closing quote when it has one.
HTMLTextRange HTMLTokenizer::readValueUntil(const StopUnits &stops, unichar quote) {
  const std::size_t start = position_;
  std::size_t copied = start, i = start;
  const std::size_t ownStart = document_.ownText_.size();
  bool isOwn = false;
  const auto replace = [&](std::u16string_view units, std::size_t length) {
    document_.ownText_.append(source_.substr(copied, i - copied)).append(units);
    copied = i += length;
    isOwn = true;
  };
  while ((i = stops.find(source_, i)) < source_.size()) {
    if (source_[i] == u'\0') {
      replace({&kReplacement, 1}, 1);
    } else if (source_[i] == u'&') {
      const CharacterReference reference = readCharacterReference(source_.substr(i), true);
      if (reference.length != 0)
        replace(reference.view(), reference.length);
      else
        ++i;
    } else {
      break;
    }
  }
  position_ = i + (quote != u'\0' && i < source_.size() ? 1 : 0);
  if (!isOwn) return {narrow(start), narrow(i - start), false};
  replace({}, 0);
  return {narrow(ownStart), narrow(document_.ownText_.size() - ownStart), true};
}

void HTMLTokenizer::addAttribute(HTMLToken &token, HTMLAtom name, HTMLTextRange value) {
  const auto number = static_cast<std::uint32_t>(name);
  if (number >= tagsOfAttributes_.size()) tagsOfAttributes_.resize(number + document_.atoms_.count());
  if (tagsOfAttributes_[number] == tag_ || token.attributeCount == maximumAttributes_) return;
  tagsOfAttributes_[number] = tag_;
  ++token.attributeCount;
  document_.attributes_.push_back(
      {name, value.start, value.count | (value.isOwn ? HTMLDocument::kOwnUnits : 0)});
}

/// Reads what begins with "<!"; nothing when it is an empty CDATA section.
bool HTMLTokenizer::readDeclaration(HTMLToken &token) {
  position_ += 2;
  const std::u16string_view rest = source_.substr(position_);
  if (rest.starts_with(u"--")) {
    position_ += 2;
    readComment(token);
    return true;
  }
  if (startsWithASCIINoCase(rest, "doctype")) {
    position_ += std::string_view("doctype").size();
    token.kind = HTMLTokenKind::doctype;
    doctype_ = readDoctype(source_, &position_);
    return true;
  }
  if (isForeign_ && rest.starts_with(kCDATA)) {
    position_ += kCDATA.size();
    const std::size_t end = std::min(source_.find(kCDATAEnd, position_), source_.size());
    readTextUntil(end, std::min(end + kCDATAEnd.size(), source_.size()), Content::plainText);
    return false;
  }
  readBogusComment(token);
  return true;
}

/// Reads a comment behind its "<!--".
void HTMLTokenizer::readComment(HTMLToken &token) {
  token.kind = HTMLTokenKind::comment;
  const std::size_t start = position_;
  token.text = {};
  if (isAt(start, u'>')) return void(position_ = start + 1);
  if (isAt(start, u'-') && isAt(start + 1, u'>')) return void(position_ = start + 2);
  for (std::size_t i = start; (i = kGreater.find(source_, i)) < source_.size(); ++i) {
    const std::u16string_view text = source_.substr(start, i - start);
    const std::size_t endLength = text.ends_with(u"--") ? 2 : text.ends_with(u"--!") ? 3 : 0;
    if (endLength == 0) continue;
    token.text = withoutNulls(start, i - endLength);
    position_ = i + 1;
    return;
  }
  // The page ends in the comment, perhaps in the middle of its end.
  const std::u16string_view text = source_.substr(start);
  std::size_t length = text.size();
  if (text.ends_with(u"--!"))
    length -= 3;
  else if (text.ends_with(u"--"))
    length -= 2;
  else if (text.ends_with(u'-'))
    length -= 1;
  token.text = withoutNulls(start, start + length);
  position_ = source_.size();
}

void HTMLTokenizer::readBogusComment(HTMLToken &token) {
  token.kind = HTMLTokenKind::comment;
  const std::size_t end = kGreater.find(source_, position_);
  token.text = withoutNulls(position_, end);
  position_ = std::min(end + 1, source_.size());
}

HTMLTextRange HTMLTokenizer::ownCopy(std::u16string_view units) {
  const std::size_t start = document_.ownText_.size();
  document_.ownText_.append(units);
  return {narrow(start), narrow(units.size()), true};
}

/// A part of the page with U+FFFD for each null character.
HTMLTextRange HTMLTokenizer::withoutNulls(std::size_t start, std::size_t end) {
  const std::u16string_view text = source_.substr(start, end - start);
  const std::size_t null = kNullStop.find(text, 0);
  if (null >= text.size()) return {narrow(start), narrow(text.size()), false};
  const HTMLTextRange copy = ownCopy(text);
  std::replace(document_.ownText_.begin() + copy.start, document_.ownText_.end(), u'\0', kReplacement);
  return copy;
}

/// Whether the end tag of the element stands there.
bool HTMLTokenizer::isEndTagAt(std::size_t index, HTMLAtom element) const {
  const std::string_view name = detail::kHTMLNames[static_cast<std::uint32_t>(element)];
  const std::size_t end = index + 2 + name.size();
  return isAt(index + 1, u'/') && end < source_.size() && kTagNameEnds.contains(source_[end]) &&
         equalsASCIINoCase(source_.substr(index + 2, name.size()), name);
}

void HTMLTokenizer::readTextElement(HTMLAtom element, Content content) {
  std::size_t end = position_;
  while ((end = kLess.find(source_, end)) < source_.size() && !isEndTagAt(end, element)) ++end;
  readTextUntil(end, end, content);
}

void HTMLTokenizer::readTextUntil(std::size_t end, std::size_t next, Content content) {
  textEnd_ = end;
  nextPosition_ = next;
  content_ = content;
}

void HTMLTokenizer::readRCDATA(HTMLAtom element) {
  readTextElement(element, Content::textWithReferences);
}

void HTMLTokenizer::readRawText(HTMLAtom element) {
  readTextElement(element, Content::plainText);
}

void HTMLTokenizer::readScript() {
  const std::size_t end = endOfScriptText(source_, position_);
  readTextUntil(end, end, Content::plainText);
}

void HTMLTokenizer::readPlainText() {
  readTextUntil(source_.size(), source_.size(), Content::plainText);
}

}  // namespace nimbo
