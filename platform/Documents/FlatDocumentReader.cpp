// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatDocumentReader.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/Documents/FlatDocumentValues.hpp"
#include "platform/Foundation/NSDataBase64.hpp"

namespace nimbo::detail {
namespace {

/// Elements in elements; what stands deeper is left out.
constexpr std::uint32_t kMaximumDepth = 200;
constexpr std::uint32_t kMaximumBlanks = 10'000;
/// Cells that are repeated are read as often, so that the size of the document bounds neither.
constexpr std::uint32_t kMaximumVisits = 20'000'000, kMaximumUnits = 50'000'000;
constexpr std::uint32_t kHeaderLevels = 6;
constexpr unichar kLineBreak = 0x2028, kPageBreak = u'\f', kParagraphEnd = u'\n';

/// Of others that hold no text of the document there is none in a paragraph.
constexpr std::string_view kNoText[] = {"office:forms",
                                        "office:annotation",
                                        "text:tracked-changes",
                                        "text:script",
                                        "text:ruby-text",
                                        "table:shapes",
                                        "table:tracked-changes",
                                        "table:content-validations",
                                        "table:dde-links",
                                        "presentation:notes",
                                        "svg:title",
                                        "svg:desc"};

/// How pictures begin that nobody but LibreOffice reads.
constexpr std::string_view kOfficeMetafile = "VCLMTF";

struct PictureKind {
  std::string_view mimeType, extension;
};

constexpr PictureKind kPictureKinds[] = {
    {"image/png", "png"},   {"image/jpeg", "jpeg"},    {"image/gif", "gif"},     {"image/tiff", "tiff"},
    {"image/bmp", "bmp"},   {"image/webp", "webp"},    {"image/svg+xml", "svg"}, {"image/x-emf", "emf"},
    {"image/x-wmf", "wmf"}, {"application/pdf", "pdf"}};

bool isOneOf(std::string_view name, const auto &names) {
  return std::ranges::find(names, name) != std::end(names);
}

bool isWhiteSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

NSString textOf(const pugi::xml_node &parent, const char *child) {
  const std::string_view text = parent.child_value(child);
  return text.empty() ? NSString() : NSString::stringWithLossyUTF8String(text);
}

/// The picture of a frame; nil when it holds none.
NSTextAttachment pictureOf(const pugi::xml_node &frame, std::uint32_t number) {
  for (const pugi::xml_node &image : frame.children("draw:image")) {
    const NSData bytes = dataWithBase64EncodedString(
        NSString::stringWithLossyUTF8String(image.child_value("office:binary-data")));
    if (bytes.length() == 0 || bytes.view().starts_with(kOfficeMetafile)) continue;
    std::string name = "picture" + std::to_string(number);
    const std::string_view type = image.attribute("draw:mime-type").value();
    const auto kind = std::ranges::find(kPictureKinds, type, &PictureKind::mimeType);
    if (kind != std::end(kPictureKinds)) name.append(".").append(kind->extension);
    std::optional<NSSize> size;
    const auto width = lengthInPoints(frame.attribute("svg:width").value());
    const auto height = lengthInPoints(frame.attribute("svg:height").value());
    if (width && height && *width > 0 && *height > 0) size = NSSize{*width, *height};
    const NSString title = textOf(frame, "svg:title");
    return NSTextAttachment(NSFileWrapper::regularFileWithContents(bytes, NSString::stringWithUTF8String(name)),
                            size, title ? title : textOf(frame, "svg:desc"));
  }
  return NSTextAttachment();
}

/// Counts how deep elements stand.
class Descent {
 public:
  Descent(std::uint32_t *depth, bool *isTooDeep) : depth_(depth) {
    if (++*depth > kMaximumDepth) *isTooDeep = true;
  }
  Descent(const Descent &) = delete;
  Descent &operator=(const Descent &) = delete;
  ~Descent() { --*depth_; }

  bool isAllowed() const { return *depth_ <= kMaximumDepth; }

 private:
  std::uint32_t *depth_;
};

}  // namespace

FlatDocumentReader::FlatDocumentReader(const pugi::xml_node &document)
    : document_(document), styles_(document), lists_(styles_) {}

NSAttributedString FlatDocumentReader::read() {
  for (const pugi::xml_node &content : document_.child("office:body").children()) readBlocks(content);
  readNotes();
  // Paragraphs of cells keep their ends; that of the last other one is the end of the text.
  if (text_.length() > 0 && text_.view().back() == kParagraphEnd &&
      text_.runs().back().attributes->paragraphStyle->textBlocks.empty())
    text_.truncate(text_.length() - 1);
  return std::move(text_).attributedString();
}

void FlatDocumentReader::readBlocks(const pugi::xml_node &parent) {
  const Descent descent(&depth_, &isIncomplete_);
  if (!descent.isAllowed()) return;
  for (const pugi::xml_node &node : parent.children())
    if (node.type() == pugi::node_element) readBlock(node);
}

bool FlatDocumentReader::mayGoOn() {
  const bool isEnough = ++visits_ > kMaximumVisits || text_.length() > kMaximumUnits;
  isIncomplete_ |= isEnough;
  return !isEnough;
}

void FlatDocumentReader::readBlock(const pugi::xml_node &node) {
  if (!mayGoOn()) return;
  const std::string_view name = node.name();
  if (name == "text:p" || name == "text:h") return readParagraph(node);
  if (name == "text:list") return readList(node);
  if (name == "table:table") return readTable(node);
  if (isOneOf(name, kNoText)) return;
  if (name == "text:section" && std::string_view(node.attribute("text:display").value()) == "none") return;
  if (name == "draw:frame" && node.child("draw:image")) {
    // A picture that is anchored at a page, or in a slide, has a paragraph of its own.
    const Look &look = styles_.paragraphLook({});
    paragraphEnd_ = look.text;
    readFrame(node, look);
    if (whiteSpace_ != WhiteSpace::atStart) endParagraph();
  } else {
    readBlocks(node);
  }
  if (name == "draw:page") breaksPage_ = true;
}

void FlatDocumentReader::readParagraph(const pugi::xml_node &paragraph) {
  Look look = styles_.paragraphLook(paragraph.attribute("text:style-name").value());
  const auto level = wholeNumber(paragraph.attribute("text:outline-level").value(), kHeaderLevels);
  if (level) look.paragraph.headerLevel = static_cast<std::uint8_t>(*level);
  if (look.isHidden) return;
  const NSString marker = lists_.takeMarker();
  lists_.apply(look, look.paragraph);
  look.paragraph.textBlocks = cells_;
  look.text.paragraphStyle = Interned<NSParagraphStyle>(look.paragraph);
  paragraphEnd_ = look.text;
  if ((breaksPage_ || look.breaksPageBefore) && text_.length() > 0 && cells_.empty())
    text_.append(kPageBreak, Interned<TextAttributes>(look.text));
  breaksPage_ = look.breaksPageAfter;
  whiteSpace_ = WhiteSpace::atStart;
  if (marker) {
    const Interned<TextAttributes> attributes(look.text);
    text_.append(u'\t', attributes);
    text_.append(marker.view(), attributes);
    text_.append(u'\t', attributes);
  }
  if (noteSign_) {
    TextAttributes sign = look.text;
    sign.superscript = 1;
    text_.append(std::exchange(noteSign_, NSString()).view(), Interned<TextAttributes>(sign));
    text_.append(u' ', Interned<TextAttributes>(look.text));
  }
  readInlines(paragraph, look);
  endParagraph();
  if (!shapes_.empty()) readShapes(std::exchange(shapes_, {}));
}

void FlatDocumentReader::endParagraph() {
  if (whiteSpace_ == WhiteSpace::behindBlank) text_.truncate(text_.length() - 1);
  whiteSpace_ = WhiteSpace::atStart;
  text_.append(kParagraphEnd, Interned<TextAttributes>(paragraphEnd_));
}

void FlatDocumentReader::readShapes(const std::vector<pugi::xml_node> &shapes) {
  FlatDocumentLists::OpenLists around = lists_.moveTo();
  for (const pugi::xml_node &shape : shapes) readBlocks(shape);
  lists_.moveTo(std::move(around));
}

void FlatDocumentReader::readList(const pugi::xml_node &list) {
  lists_.enterList(list);
  for (const pugi::xml_node &item : list.children()) {
    lists_.beginItem(item);
    readBlocks(item);
  }
  lists_.leaveList();
}

void FlatDocumentReader::readTable(const pugi::xml_node &table) {
  const FlatDocumentTable cells(table, ++tables_, styles_, &cellsLeft_);
  isIncomplete_ |= cells.isCut();
  FlatDocumentLists::OpenLists around = lists_.moveTo();
  for (const FlatDocumentTable::Cell &cell : cells.cells()) {
    if (!mayGoOn()) break;
    cells_.push_back(cells.block(cell));
    const std::uint32_t before = text_.length();
    readBlocks(cell.node);
    if (text_.length() == before) {
      Look look = styles_.paragraphLook({});
      look.paragraph.textBlocks = cells_;
      look.text.paragraphStyle = Interned<NSParagraphStyle>(look.paragraph);
      paragraphEnd_ = look.text;
      endParagraph();
    }
    cells_.pop_back();
  }
  lists_.moveTo(std::move(around));
}

void FlatDocumentReader::readInlines(const pugi::xml_node &parent, const Look &look) {
  const Descent descent(&depth_, &isIncomplete_);
  if (!descent.isAllowed()) return;
  for (const pugi::xml_node &node : parent.children()) {
    if (node.type() == pugi::node_element)
      readInline(node, look);
    else if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
      append(node.value(), look);
  }
}

void FlatDocumentReader::readInline(const pugi::xml_node &node, const Look &look) {
  if (!mayGoOn()) return;
  const std::string_view name = node.name();
  if (name == "text:span") {
    Look span = look;
    styles_.applyTextStyle(node.attribute("text:style-name").value(), span);
    if (!span.isHidden) readInlines(node, span);
  } else if (name == "text:a" || name == "draw:a") {
    Look link = look;
    styles_.applyTextStyle(node.attribute("text:style-name").value(), link);
    const std::string_view target = node.attribute("xlink:href").value();
    if (!target.empty()) link.text.link = NSString::stringWithLossyUTF8String(target);
    if (!link.isHidden) readInlines(node, link);
  } else if (name == "text:s") {
    const auto count = wholeNumber(node.attribute("text:c").value(), kMaximumBlanks).value_or(1);
    const std::u16string blanks(count, u' ');
    text_.append(blanks, Interned<TextAttributes>(look.text));
    whiteSpace_ = WhiteSpace::behindText;
  } else if (name == "text:tab") {
    appendUnit(u'\t', look);
  } else if (name == "text:line-break") {
    appendUnit(kLineBreak, look);
  } else if (name == "text:note") {
    readNote(node, look);
  } else if (name == "draw:frame") {
    readFrame(node, look);
  } else if (name.starts_with("draw:")) {
    shapes_.push_back(node);
  } else if (name == "text:hidden-text" || name == "text:hidden-paragraph" || isOneOf(name, kNoText)) {
    return;
  } else {
    readInlines(node, look);
  }
}

void FlatDocumentReader::readNote(const pugi::xml_node &note, const Look &look) {
  Look citation = look;
  citation.text.superscript = 1;
  append(note.child_value("text:note-citation"), citation);
  notes_.push_back(note);
}

/// The notes follow the text, each behind its sign.
void FlatDocumentReader::readNotes() {
  // Notes may have notes in frames.
  for (std::size_t i = 0; i < notes_.size(); ++i) {
    noteSign_ = NSString::stringWithLossyUTF8String(notes_[i].child_value("text:note-citation"));
    readBlocks(notes_[i].child("text:note-body"));
    noteSign_ = NSString();
  }
}

void FlatDocumentReader::readFrame(const pugi::xml_node &frame, const Look &look) {
  if (frame.child("draw:text-box") || frame.child("table:table")) {
    shapes_.push_back(frame);
    return;
  }
  const NSTextAttachment picture = pictureOf(frame, pictures_ + 1);
  if (!picture) return;
  ++pictures_;
  Look shown = look;
  shown.text.attachment = picture;
  appendUnit(NSAttachmentCharacter, shown);
}

void FlatDocumentReader::append(std::string_view utf8, const Look &look) {
  std::string collapsed;
  collapsed.reserve(utf8.size());
  for (const char c : utf8) {
    if (!isWhiteSpace(c)) {
      collapsed += c;
      whiteSpace_ = WhiteSpace::behindText;
    } else if (whiteSpace_ == WhiteSpace::behindText) {
      collapsed += ' ';
      whiteSpace_ = WhiteSpace::behindBlank;
    }
  }
  if (!collapsed.empty())
    text_.append(NSString::stringWithLossyUTF8String(collapsed).view(), Interned<TextAttributes>(look.text));
}

void FlatDocumentReader::appendUnit(unichar unit, const Look &look) {
  text_.append(unit, Interned<TextAttributes>(look.text));
  whiteSpace_ = WhiteSpace::behindText;
}

}  // namespace nimbo::detail
