// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/AppKit/RTF/RTFEncodings.hpp"
#include "platform/AppKit/RTF/RTFFlow.hpp"
#include "platform/AppKit/RTF/RTFPicture.hpp"
#include "platform/AppKit/RTF/RTFWords.hpp"

namespace nimbo {

/// Reads one document. It never calls itself, whatever the groups, and takes whatever there is: unknown words
/// and groups are passed over, missing braces are thought to stand at the end.
class RTFReader {
 public:
  /// How deep groups have states of their own; deeper ones share that of the last one that has.
  static constexpr std::size_t kMaximumGroups = 4096;
  /// How many fonts, and how many colours, are kept.
  static constexpr std::size_t kMaximumNames = 1 << 16;
  /// How much text is kept of what is no text of the document, as a title, in units.
  static constexpr std::size_t kMaximumCapture = 1 << 20;
  /// How many bytes pictures may have in all; those beyond are left out.
  static constexpr std::size_t kMaximumPictureBytes = 1 << 28;

  /// A reader of bytes, which must live as long; `attachments` is the folder that they name files of, or nil.
  RTFReader(std::string_view bytes, const NSFileWrapper &attachments);

  /// Whether the bytes begin as RTF does.
  static bool isRTF(std::string_view bytes);
  /// Reads all.
  NSAttributedString read();
  /// What the document says about itself, when it has been read.
  const DocumentAttributes &documentAttributes() const { return document_; }

 private:
  /// What becomes of text.
  enum class Destination : std::uint8_t {
    body,
    listText,   ///< The body, too: a marker.
    ignored,    ///< None, but groups in it may have some.
    plainTwin,  ///< None: what the body has comes in Unicode once more.
    fontTable,
    colorTable,
    expandedColors,
    lists,
    levelText,
    levelMarker,
    oldList,
    info,
    infoText,
    date,
    instruction,
    picture,
    pictureProperty,
    propertyName,
    propertyValue,
    graphic,
    alternativeText,
  };
  struct Group {
    Destination destination = Destination::body;
    /// Whether the destination begins with this group.
    bool isFirst = false;
    bool isInNotes = false;
    /// Whether rows are those of an inner table.
    bool isInnerRow = false;
    std::int32_t skippedByUnicode = 1;
    std::int32_t field = -1;
    RTFCharacterState characters;
    RTFParagraphState paragraph;
  };
  struct Font {
    NSString name;
    CFStringEncoding encoding = kCFStringEncodingInvalidId;
    bool isSymbol = false;
  };
  using Parameter = std::optional<std::int32_t>;

  void readTokens();
  void readText();
  void readBytes();
  void readControl();
  void readWord();
  void readHexBytes();
  void readBinary(std::int64_t length);
  bool isEndOfDocument() const;
  void skipGroup();

  void openGroup();
  void closeGroup();
  void beginDestination(Destination destination);
  void endDestination(Destination destination);
  void endInfoText(const NSString &text);
  void endGraphic();
  void endPicture();

  void takeWord(RTFWord word, Parameter parameter, bool isStarred);
  bool takeDestination(RTFWord word);
  bool takeTableWord(RTFWord word);
  bool takeDocumentWord(RTFWord word, Parameter parameter);
  void takeFontWord(RTFWord word, Parameter parameter);
  void takeColorWord(RTFWord word, std::int32_t number);
  void takeDateWord(RTFWord word, std::int32_t number);
  std::optional<std::int32_t> fontWithNumber(std::int32_t number) const;

  bool takesBytes() const;
  bool isBody() const {
    return group_.destination == Destination::body || group_.destination == Destination::listText;
  }
  RTFFlow &flow() { return group_.isInNotes ? notes_ : main_; }
  void appendUnit(char16_t unit) { appendUnits({&unit, 1}); }
  void appendUnits(std::u16string_view units);
  void appendASCII(std::string_view units);
  void appendByte(std::uint8_t byte);
  void appendAttachment(const NSTextAttachment &attachment);
  void endPendingBytes();
  void takeNameUnits(std::u16string_view units);
  void endFont();
  void endColor();
  RTFDecoder &decoder();

  const char *at_;
  const char *const end_;
  const NSFileWrapper attachments_;
  std::unordered_map<NSString, NSFileWrapper, NSStringHash> attachmentsByName_;

  Group group_;
  std::vector<Group> outerGroups_;
  /// How many groups are open beyond those with states of their own.
  std::size_t groupsBeyond_ = 0;
  bool isStarred_ = false;
  /// How many characters behind "\u" stand for it where it is not understood.
  std::int32_t charactersToSkip_ = 0;

  RTFFlow main_, notes_;
  RTFNames names_;
  RTFLists lists_;
  /// The definitions of rows by the depth of their tables.
  std::vector<RTFRowDefinition> rowDefinitions_;
  DocumentAttributes document_;

  std::vector<Font> fonts_;
  std::unordered_map<std::int32_t, std::int32_t> fontsByNumber_;
  std::int32_t defaultFontNumber_ = 0;
  std::int32_t newFontNumber_ = 0;
  Font newFont_;
  std::u16string newFontName_;
  NSColor newColor_;
  bool hasNewColor_ = false;
  std::size_t expandedColor_ = 0;

  std::u16string capture_;
  RTFWord infoField_ = RTFWord::unknown;
  std::array<std::int32_t, 6> date_{};
  std::vector<std::int32_t> fieldLinks_;
  RTFPicture picture_;
  std::u16string propertyName_;
  std::size_t pictureBytesLeft_ = kMaximumPictureBytes;
  std::uint32_t pictures_ = 0;
  std::optional<NSSize> graphicSize_;
  std::u16string graphicName_, alternativeText_;
  /// What takes the place of the next character; `isGraphicPending_` says whether something does, be it
  /// nothing.
  NSTextAttachment pendingGraphic_;
  bool isGraphicPending_ = false;
  bool hasListText_ = false;

  RTFDecoders decoders_;
  /// The decoder of the font that was last asked for.
  RTFDecoder *decoder_ = nullptr;
  std::int32_t decoderFont_ = -2;
  CFStringEncoding documentEncoding_ = kCFStringEncodingWindowsLatin1;
  /// Bytes of characters that may have several.
  std::string pendingBytes_;
  bool endsWithLeadByte_ = false;
  bool decoderIsOfTable_ = false;
};

}  // namespace nimbo
