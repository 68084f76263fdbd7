// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFDocument.hpp"

#include <algorithm>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/System/RegularFile.hpp"
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
  } catch (const detail::PDFFailure &) {
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

/// "pages 3 to 5 are left out: ", where `first` counts from 0.
std::string leftOutPages(std::uint32_t first, std::uint32_t count) {
  const std::string last = std::to_string(count);
  return first + 1 == count ? "page " + last + " is left out: "
                            : "pages " + std::to_string(first + 1) + " to " + last + " are left out: ";
}

}  // namespace

PDFDocument::PDFDocument(std::unique_ptr<detail::PDFEngine> engine) : engine_(std::move(engine)) {}

PDFDocument::~PDFDocument() = default;

std::unique_ptr<PDFDocument> PDFDocument::documentWithInput(detail::PDFInput input, const PDFLimits &limits,
                                                            NSError *error) {
  try {
    return std::unique_ptr<PDFDocument>(
        new PDFDocument(std::make_unique<detail::PDFEngine>(std::move(input), limits)));
  } catch (const detail::PDFFailure &failure) {
    if (error) *error = failure.error;
    return nullptr;
  }
}

std::unique_ptr<PDFDocument> PDFDocument::documentWithData(const NSData &data, const PDFLimits &limits,
                                                           NSError *error) {
  if (data.length() > 0) return documentWithInput({data, nullptr}, limits, error);
  setError(error, ErrorCode::incomplete, "the file is empty");
  return nullptr;
}

std::unique_ptr<PDFDocument> PDFDocument::documentWithContentsOfFile(const NSString &path,
                                                                     const PDFLimits &limits, NSError *error) {
  std::uint64_t size = 0;
  FileDescriptor file = openRegularFile(path, &size, error);
  if (!file) return nullptr;
  if (size == 0) return documentWithData(NSData::data(), limits, error);
  detail::PDFInput input;
  input.file.reset(::fdopen(file.get(), "rb"));
  if (!input.file) throw std::bad_alloc();
  static_cast<void>(file.release());
  return documentWithInput(std::move(input), limits, error);
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

bool PDFDocument::isLocked(NSError *error) const {
  if (engine_->isLocked()) setError(error, ErrorCode::locked, "the PDF is locked; its text needs a password");
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

void PDFDocument::readPages(const Deadline &deadline, const std::function<bool(const NSString &text)> &use,
                            NSError *error) const {
  const std::uint32_t pages = pageCount();
  NSError firstFailure;
  std::uint32_t failures = 0;
  bool isEnough = false;
  bool isLate = false;
  std::uint32_t tried = 0;
  for (; tried < pages && !isEnough && !isLate; ++tried) {
    const auto start = Deadline::Clock::now();
    NSError failure;
    try {
      const NSString text = pageAtIndex(tried).string(&failure);
      isEnough = text.length() > 0 && !use(text);
    } catch (const std::exception &exception) {
      failure = NSError::errorWithException(exception);
    }
    if (failure && failures++ == 0) firstFailure = failure;
    // The forecast for the next page: as long as this one took.
    isLate = deadline.remaining() <= std::chrono::duration<double>(Deadline::Clock::now() - start).count();
  }
  if (tried < pages)
    setError(error, isEnough ? ErrorCode::incomplete : ErrorCode::timeLimit,
             leftOutPages(tried, pages) +
                 (isEnough ? "there is too much text" : "reading them would take too long"));
  else if (failures > 0)
    setError(
        error, firstFailure.errorCode(),
        std::to_string(failures) + " of " + std::to_string(pages) +
            " pages cannot be read; the first of them: " + firstFailure.localizedFailureReason.UTF8String());
}

}  // namespace nimbo
