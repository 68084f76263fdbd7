// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFDocument.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/PDFKit/PDFDate.hpp"
#include "platform/PDFKit/PDFEngine.hpp"

namespace nimbo {

namespace {

/// The text of an entry of the document's information; nil when it is missing, empty or no text.
NSString informationEntry(detail::PDFEngine &engine, const char *key) {
  const char *text = nullptr;
  try {
    engine.run([&](fz_context *context) {
      pdf_obj *information = pdf_dict_get(context, pdf_trailer(context, engine.document()), PDF_NAME(Info));
      pdf_obj *value = pdf_dict_gets(context, information, key);
      if (pdf_is_string(context, value)) text = pdf_to_text_string(context, value);
    });
  } catch (const NSException &) {
    return {};
  }
  return text && *text ? NSString::stringWithLossyUTF8String(text) : NSString();
}

/// The parts between commas and semicolons, trimmed; nil when there are none.
NSArray keywordsOfString(const NSString &string) {
  NSArray keywords;
  for (std::u16string_view rest = string.view(); !rest.empty();) {
    const std::size_t end = std::min(rest.find_first_of(u",;"), rest.size());
    const std::u16string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    const std::size_t first = part.find_first_not_of(u" \t\r\n");
    if (first == part.npos) continue;
    const std::size_t last = part.find_last_not_of(u" \t\r\n");
    keywords.addObject(NSString::stringWithCharacters(part.substr(first, last + 1 - first)));
  }
  return keywords;
}

}  // namespace

PDFDocument::PDFDocument(std::unique_ptr<detail::PDFEngine> engine) : engine_(std::move(engine)) {}

PDFDocument::~PDFDocument() = default;

std::unique_ptr<PDFDocument> PDFDocument::documentWithData(const NSData &data, const PDFLimits &limits) {
  if (data.length() == 0) return nullptr;
  try {
    return std::unique_ptr<PDFDocument>(new PDFDocument(std::make_unique<detail::PDFEngine>(data, limits)));
  } catch (const NSException &) {
    return nullptr;
  }
}

NSDictionary PDFDocument::documentAttributes() const {
  NSDictionary attributes;
  if (isLocked()) return attributes;
  const auto entry = [this](const char *key) { return informationEntry(*engine_, key); };
  attributes.setObject(entry("Title"), u"Title"_ns);
  attributes.setObject(entry("Author"), u"Author"_ns);
  attributes.setObject(entry("Subject"), u"Subject"_ns);
  attributes.setObject(keywordsOfString(entry("Keywords")), u"Keywords"_ns);
  attributes.setObject(entry("Creator"), u"Creator"_ns);
  attributes.setObject(entry("Producer"), u"Producer"_ns);
  if (const auto date = dateWithPDFDateString(entry("CreationDate")))
    attributes.setObject(*date, u"CreationDate"_ns);
  if (const auto date = dateWithPDFDateString(entry("ModDate"))) attributes.setObject(*date, u"ModDate"_ns);
  return attributes;
}

bool PDFDocument::isEncrypted() const {
  return engine_->document()->crypt != nullptr;
}

bool PDFDocument::isLocked() const {
  return engine_->isLocked();
}

int PDFDocument::majorVersion() const {
  return engine_->version() / 10;
}

int PDFDocument::minorVersion() const {
  return engine_->version() % 10;
}

std::uint32_t PDFDocument::pageCount() const {
  return engine_->pageCount();
}

PDFPage PDFDocument::pageAtIndex(std::uint32_t index) const {
  return PDFPage(engine_.get(), index);
}

}  // namespace nimbo
