// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFReader.hpp"

#include <algorithm>
#include <cstring>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

/// What a byte of the source begins.
enum class ByteClass : std::uint8_t { text, other, lineEnd, backslash, openBrace, closeBrace };

constexpr auto kByteClasses = [] {
  std::array<ByteClass, 256> classes{};
  for (std::size_t byte = 0x80; byte < 256; ++byte) classes[byte] = ByteClass::other;
  classes[0] = ByteClass::lineEnd;
  classes['\r'] = classes['\n'] = ByteClass::lineEnd;
  classes['\\'] = ByteClass::backslash;
  classes['{'] = ByteClass::openBrace;
  classes['}'] = ByteClass::closeBrace;
  return classes;
}();

ByteClass classOf(char c) {
  return kByteClasses[static_cast<std::uint8_t>(c)];
}

/// No word is longer; letters behind that many are text.
constexpr std::ptrdiff_t kMaximumWord = 32;
constexpr std::int64_t kMaximumParameter = std::int64_t{1} << 31;

}  // namespace

RTFReader::RTFReader(std::string_view bytes, const NSFileWrapper &attachments)
    : at_(bytes.data()), end_(bytes.data() + bytes.size()), attachments_(attachments) {
  for (const auto &[name, file] : attachments_.fileWrappers()) attachmentsByName_.emplace(name, file);
  // The text calls them as they were called before they got harmless names of their own.
  for (const auto &[name, file] : attachments_.fileWrappers())
    if (const NSString given = file.preferredFilename()) attachmentsByName_.emplace(given, file);
}

bool RTFReader::isRTF(std::string_view bytes) {
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  while (!bytes.empty() && isASCIIWhiteSpace(bytes[0])) bytes.remove_prefix(1);
  return bytes.starts_with("{\\rtf");
}

NSAttributedString RTFReader::read() {
  at_ = std::find(at_, end_, '{');
  main_.reserve(static_cast<std::size_t>(end_ - at_));
  readTokens();
  endPendingBytes();
  const Group last = group_;
  while (!outerGroups_.empty() || groupsBeyond_ > 0) closeGroup();
  if (isGraphicPending_) appendAttachment(pendingGraphic_);
  if (main_.hasOpenParagraph()) main_.endParagraph(last.characters, last.paragraph, false);
  if (!notes_.text().empty() && !main_.text().empty() && !main_.text().ends_with(u'\n'))
    main_.endParagraph(RTFCharacterState(), RTFParagraphState(), true);
  const auto font = fontWithNumber(defaultFontNumber_);
  if (font) names_.defaultFont = names_.fonts[static_cast<std::size_t>(*font)];
  NSMutableAttributedString text;
  main_.finish(names_, lists_, &text);
  notes_.finish(names_, lists_, &text);
  return std::move(text).attributedString();
}

void RTFReader::readTokens() {
  while (at_ < end_) {
    switch (classOf(*at_)) {
      case ByteClass::text:
        readText();
        break;
      case ByteClass::other:
        readBytes();
        break;
      case ByteClass::lineEnd:
        ++at_;
        break;
      case ByteClass::backslash:
        readControl();
        break;
      case ByteClass::openBrace:
        ++at_;
        openGroup();
        break;
      case ByteClass::closeBrace:
        ++at_;
        if (groupsBeyond_ > 0 || outerGroups_.size() > 1)
          closeGroup();
        else if (isEndOfDocument())
          return;
        break;
    }
  }
}

/// Whether what follows the outermost group is none of the document. Behind a brace too many it goes on.
bool RTFReader::isEndOfDocument() const {
  return std::find(at_, end_, '}') == end_;
}

void RTFReader::readText() {
  const char *start = at_;
  while (at_ < end_ && classOf(*at_) == ByteClass::text) ++at_;
  isStarred_ = false;
  if (charactersToSkip_ > 0) {
    const auto skipped = std::min<std::ptrdiff_t>(charactersToSkip_, at_ - start);
    charactersToSkip_ -= static_cast<std::int32_t>(skipped);
    start += skipped;
  }
  if (endsWithLeadByte_ && start < at_) appendByte(static_cast<std::uint8_t>(*start++));
  if (start < at_) appendASCII({start, static_cast<std::size_t>(at_ - start)});
}

void RTFReader::readBytes() {
  isStarred_ = false;
  const auto byte = static_cast<std::uint8_t>(*at_++);
  if (charactersToSkip_ > 0)
    --charactersToSkip_;
  else if (takesBytes())
    appendByte(byte);
}

void RTFReader::readControl() {
  if (end_ - at_ < 2) {
    at_ = end_;
    return;
  }
  const char c = at_[1];
  if (isASCIILetter(c)) return readWord();
  if (c == '\'') return readHexBytes();
  at_ += 2;
  if (c == '*') {
    isStarred_ = true;
    return;
  }
  isStarred_ = false;
  if (charactersToSkip_ > 0) {
    --charactersToSkip_;
    return;
  }
  switch (c) {
    case '\\':
    case '{':
    case '}':
      if (endsWithLeadByte_) return appendByte(static_cast<std::uint8_t>(c));
      return appendASCII({&c, 1});
    case '~':
      return appendUnit(u'\u00a0');
    case '_':
      return appendUnit(u'\u2011');
    case '-':
      return appendUnit(u'\u00ad');
    case '\t':
      return appendUnit(u'\t');
    case '\r':
    case '\n':
      if (c == '\r' && at_ < end_ && *at_ == '\n') ++at_;
      return takeWord(RTFWord::par_, {}, false);
    default:
      return;
  }
}

void RTFReader::readHexBytes() {
  isStarred_ = false;
  while (end_ - at_ >= 4 && at_[0] == '\\' && at_[1] == '\'' && isASCIIHexDigit(at_[2]) &&
         isASCIIHexDigit(at_[3])) {
    const auto byte = static_cast<std::uint8_t>(hexDigitValue(at_[2]) << 4 | hexDigitValue(at_[3]));
    at_ += 4;
    if (charactersToSkip_ > 0)
      --charactersToSkip_;
    else if (takesBytes())
      appendByte(byte);
    // The most there is of any text is one byte after the other.
    if (end_ - at_ < 4 || at_[0] != '\\' || at_[1] != '\'') return;
  }
  at_ += std::min<std::ptrdiff_t>(2, end_ - at_);
}

void RTFReader::readWord() {
  const char *const name = ++at_;
  while (at_ < end_ && isASCIILetter(*at_) && at_ - name < kMaximumWord) ++at_;
  const RTFWord word = wordNamed({name, static_cast<std::size_t>(at_ - name)});
  Parameter parameter;
  const bool isNegative = at_ + 1 < end_ && *at_ == '-' && isASCIIDigit(at_[1]);
  if (isNegative) ++at_;
  if (at_ < end_ && isASCIIDigit(*at_)) {
    std::int64_t number = 0;
    for (; at_ < end_ && isASCIIDigit(*at_); ++at_)
      number = std::min(number * 10 + static_cast<std::int64_t>(digitValue(*at_)), kMaximumParameter);
    parameter = static_cast<std::int32_t>(isNegative ? -number : std::min<std::int64_t>(number, INT32_MAX));
  }
  if (at_ < end_ && *at_ == ' ') ++at_;
  const bool isStarred = std::exchange(isStarred_, false);
  if (word == RTFWord::bin_) return readBinary(parameter.value_or(0));
  takeWord(word, parameter, isStarred);
}

void RTFReader::readBinary(std::int64_t length) {
  const auto count = static_cast<std::size_t>(std::clamp<std::int64_t>(length, 0, end_ - at_));
  if (charactersToSkip_ > 0)
    --charactersToSkip_;
  else if (group_.destination == Destination::picture && picture_.length() + count <= pictureBytesLeft_)
    picture_.takeBytes({at_, count});
  at_ += count;
}

/// Goes to the brace that ends the innermost group.
void RTFReader::skipGroup() {
  std::size_t depth = 0;
  while (at_ < end_) {
    switch (*at_) {
      case '{':
        ++depth;
        break;
      case '}':
        if (depth == 0) return;
        --depth;
        break;
      case '\\': {
        constexpr std::string_view kBinary = "\\bin";
        const std::string_view rest(at_, static_cast<std::size_t>(end_ - at_));
        if (rest.starts_with(kBinary)) {
          std::int64_t length = 0;
          for (at_ += kBinary.size(); at_ < end_ && isASCIIDigit(*at_); ++at_)
            length = std::min(length * 10 + static_cast<std::int64_t>(digitValue(*at_)), kMaximumParameter);
          if (at_ < end_ && *at_ == ' ') ++at_;
          at_ += std::min<std::int64_t>(length, end_ - at_);
          continue;
        }
        if (rest.size() > 1) ++at_;
        break;
      }
      default:
        break;
    }
    ++at_;
  }
}

void RTFReader::openGroup() {
  endPendingBytes();
  charactersToSkip_ = 0;
  isStarred_ = false;
  if (outerGroups_.size() == kMaximumGroups) {
    ++groupsBeyond_;
    return;
  }
  outerGroups_.push_back(group_);
  group_.isFirst = false;
}

void RTFReader::closeGroup() {
  endPendingBytes();
  charactersToSkip_ = 0;
  isStarred_ = false;
  if (groupsBeyond_ > 0) {
    --groupsBeyond_;
    return;
  }
  if (outerGroups_.empty()) return;
  const Group ended = std::exchange(group_, std::move(outerGroups_.back()));
  outerGroups_.pop_back();
  if (ended.isInNotes && !group_.isInNotes && notes_.hasOpenParagraph())
    notes_.endParagraph(ended.characters, ended.paragraph, true);
  if (!ended.isFirst) return;
  if (ended.destination == Destination::listText && hasListText_ && !flow().text().ends_with(u'\t'))
    flow().append(std::string_view("\t"), ended.characters);
  endDestination(ended.destination);
}

bool RTFReader::takesBytes() const {
  switch (group_.destination) {
    case Destination::ignored:
    case Destination::plainTwin:
    case Destination::colorTable:
    case Destination::expandedColors:
    case Destination::lists:
    case Destination::oldList:
    case Destination::info:
    case Destination::date:
    case Destination::picture:
    case Destination::pictureProperty:
      return false;
    default:
      return true;
  }
}

RTFDecoder &RTFReader::decoder() {
  const bool isOfTable = group_.destination == Destination::fontTable;
  if (decoder_ && decoderFont_ == group_.characters.font && !isOfTable && !decoderIsOfTable_) return *decoder_;
  decoderFont_ = group_.characters.font;
  decoderIsOfTable_ = isOfTable;
  const auto number = decoderFont_ >= 0 ? decoderFont_ : fontWithNumber(defaultFontNumber_).value_or(-1);
  CFStringEncoding encoding = kCFStringEncodingInvalidId;
  if (isOfTable)
    encoding = newFont_.encoding;
  else if (number >= 0)
    encoding = fonts_[static_cast<std::size_t>(number)].encoding;
  decoder_ = decoders_.decoder(encoding == kCFStringEncodingInvalidId ? documentEncoding_ : encoding);
  return *decoder_;
}

void RTFReader::appendByte(std::uint8_t byte) {
  RTFDecoder &bytes = decoder();
  if (const char16_t *const units = bytes.singleBytes()) {
    const std::int32_t font = group_.characters.font;
    if (byte >= 0x80 && font >= 0 && fonts_[static_cast<std::size_t>(font)].isSymbol) {
      // The two marks that documents take from fonts of symbols.
      if (byte == 0xb7) return appendUnit(u'\u2022');
      if (byte == 0xa7) return appendUnit(u'\u25aa');
    }
    return appendUnit(units[byte]);
  }
  endsWithLeadByte_ = !endsWithLeadByte_ && bytes.isLeadByte(byte);
  pendingBytes_.push_back(static_cast<char>(byte));
}

void RTFReader::endPendingBytes() {
  if (pendingBytes_.empty()) return;
  std::u16string units;
  decoder().decode(pendingBytes_, &units);
  pendingBytes_.clear();
  endsWithLeadByte_ = false;
  appendUnits(units);
}

void RTFReader::appendUnits(std::u16string_view units) {
  endPendingBytes();
  if (!isBody()) return takeNameUnits(units);
  if (units.empty()) return;
  if (group_.characters.isHidden) {
    isGraphicPending_ = false;
    return;
  }
  if (isGraphicPending_) {
    appendAttachment(pendingGraphic_);
    units.remove_prefix(1);
    if (units.empty()) return;
  }
  if (group_.destination == Destination::listText && !std::exchange(hasListText_, true) && units[0] != u'\t')
    flow().append(std::string_view("\t"), group_.characters);
  flow().append(units, group_.characters);
}

void RTFReader::appendASCII(std::string_view units) {
  if (group_.destination == Destination::picture) {
    if (picture_.length() + units.size() / 2 <= pictureBytesLeft_) picture_.takeDigits(units);
    return;
  }
  endPendingBytes();
  if (group_.destination == Destination::body && !isGraphicPending_) {
    if (!group_.characters.isHidden) flow().append(units, group_.characters);
    return;
  }
  appendUnits(std::u16string(units.begin(), units.end()));
}

void RTFReader::appendAttachment(const NSTextAttachment &attachment) {
  isGraphicPending_ = false;
  if (!attachment) return;
  RTFCharacterState state = group_.characters;
  if (!names_.attachments.empty() && names_.attachments.back() == attachment) {
    state.attachment = static_cast<std::int32_t>(names_.attachments.size() - 1);
  } else {
    state.attachment = static_cast<std::int32_t>(names_.attachments.size());
    names_.attachments.push_back(attachment);
  }
  flow().append(std::u16string_view(&NSAttachmentCharacter, 1), state);
}

/// Takes text that is none of the document.
void RTFReader::takeNameUnits(std::u16string_view units) {
  switch (group_.destination) {
    case Destination::fontTable:
      for (const char16_t unit : units)
        if (unit == u';')
          endFont();
        else if (newFontName_.size() < kMaximumCapture)
          newFontName_ += unit;
      return;
    case Destination::colorTable:
      for (const char16_t unit : units)
        if (unit == u';') endColor();
      return;
    case Destination::expandedColors:
      expandedColor_ += static_cast<std::size_t>(std::count(units.begin(), units.end(), u';'));
      return;
    case Destination::levelText:
    case Destination::levelMarker:
    case Destination::infoText:
    case Destination::instruction:
    case Destination::propertyName:
    case Destination::propertyValue:
      capture_.append(units.substr(0, kMaximumCapture - std::min(capture_.size(), kMaximumCapture)));
      return;
    case Destination::graphic:
      graphicName_.append(units.substr(0, kMaximumCapture - std::min(graphicName_.size(), kMaximumCapture)));
      return;
    case Destination::alternativeText:
      alternativeText_.append(
          units.substr(0, kMaximumCapture - std::min(alternativeText_.size(), kMaximumCapture)));
      return;
    default:
      return;
  }
}

}  // namespace nimbo
