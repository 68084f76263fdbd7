// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFDocument.hpp"

#include <algorithm>
#include <array>
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

/// The text of an entry, owned by MuPDF; null when it is missing or no text.
const char *textForKey(fz_context *context, pdf_obj *dictionary, const char *key) {
  pdf_obj *const value = pdf_dict_gets(context, dictionary, key);
  return pdf_is_string(context, value) ? pdf_to_text_string(context, value) : nullptr;
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

/// "pages 3 to 5 are left out: ", where `first` counts from 0 and `end` is behind the last one.
std::string leftOutPages(std::uint32_t first, std::uint32_t end) {
  const std::string last = std::to_string(end);
  return first + 1 == end ? "page " + last + " is left out: "
                          : "pages " + std::to_string(first + 1) + " to " + last + " are left out: ";
}

/// Does `work` and answers the error of what it raises, else nil.
template <class Work>
NSError errorOf(const Work &work) {
  try {
    work();
    return {};
  } catch (const std::exception &exception) {
    return NSError::errorWithException(exception);
  }
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

NSDictionary PDFDocument::documentAttributes(NSError *error) const {
  NSDictionary attributes;
  if (isLocked()) return attributes;
  static constexpr std::array<const char *, 8> kKeys = {"Title",   "Author",   "Subject",      "Keywords",
                                                        "Creator", "Producer", "CreationDate", "ModDate"};
  std::array<const char *, kKeys.size()> texts = {};
  bool isMissing = false;
  try {
    engine_->run([&](fz_context *context) {
      pdf_obj *const information =
          pdf_dict_get(context, pdf_trailer(context, engine_->document()), PDF_NAME(Info));
      isMissing = pdf_is_indirect(context, information) && !pdf_is_dict(context, information);
      for (std::size_t i = 0; i < kKeys.size(); ++i) texts[i] = textForKey(context, information, kKeys[i]);
    });
    if (isMissing) setError(error, ErrorCode::damaged, "the PDF is damaged: its attributes are missing");
  } catch (const detail::PDFFailure &failure) {
    // Those that were found stay.
    if (error) *error = failure.error;
  }
  for (std::size_t i = 0; i < kKeys.size(); ++i) {
    if (!texts[i] || !*texts[i]) continue;
    const std::string_view key = kKeys[i];
    const NSString text = NSString::stringWithLossyUTF8String(texts[i]);
    id value = text;
    if (key == "Keywords") {
      value = keywordsOfString(text);
    } else if (key.ends_with("Date")) {
      const auto date = dateWithPDFDateString(text);
      value = date ? id(*date) : id();
    }
    attributes.setObject(value, NSString::stringWithUTF8String(key));
  }
  return attributes;
}

bool PDFDocument::isEncrypted() const {
  return engine_->document()->crypt != nullptr;
}

bool PDFDocument::isLocked(NSError *error) const {
  if (engine_->isLocked()) setError(error, ErrorCode::locked, "the PDF is locked; its text needs a password");
  return engine_->isLocked();
}

bool PDFDocument::unlockWithPassword(const NSString &password, NSError *error) {
  const std::string bytes = password.UTF8String();
  try {
    engine_->unlock(bytes.c_str());
    if (engine_->isLocked()) setError(error, ErrorCode::locked, "the PDF is locked by another password");
  } catch (const detail::PDFFailure &failure) {
    if (error) *error = failure.error;
  }
  return !engine_->isLocked();
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

template <class Read, class Use>
void PDFDocument::readEachPage(const NSRange &range, const Deadline &deadline, Read read, const Use &use,
                               NSError *error) const {
  const std::uint32_t pages = pageCount();
  const std::uint32_t first = std::min(range.location, pages);
  const std::uint32_t end = first + std::min(range.length, pages - first);
  const Deadline lastMoment = earliest(deadline, engine_->limits().deadline);
  NSError firstFailure;
  std::uint32_t failures = 0;
  bool isEnough = false;
  bool isLate = false;
  bool hasText = false;
  std::uint32_t tried = first;
  for (; tried < end && !isEnough && !isLate; ++tried) {
    const auto start = Deadline::Clock::now();
    decltype((pageAtIndex(tried).*read)(nullptr)) text;
    NSError failure;
    const NSError raised = errorOf([&] { text = (pageAtIndex(tried).*read)(&failure); });
    const NSError raisedInUse = errorOf([&] { isEnough = !use(text); });
    for (const NSError &one : {raised, raisedInUse})
      if (one) failure = one;
    if (failure && failures++ == 0) firstFailure = failure;
    hasText = hasText || text.length() > 0;
    // The forecast for the next page: as long as this one took.
    isLate = lastMoment.remaining() <= std::chrono::duration<double>(Deadline::Clock::now() - start).count();
  }
  if (tried < end) {
    setError(
        error, isEnough ? ErrorCode::incomplete : ErrorCode::timeLimit,
        leftOutPages(tried, end) + (isEnough ? "there is too much text" : "reading them would take too long"));
    return;
  }
  if (failures > 0) {
    setError(error, firstFailure.errorCode(),
             std::to_string(failures) + " of " + std::to_string(end - first) +
                 " pages cannot be read in full; the first of them: " +
                 firstFailure.localizedFailureReason.UTF8String());
    return;
  }
  engine_->checkWhole(error);
  if (!hasText && first < end && error && !*error)
    setError(error, ErrorCode::incomplete,
             end - first == pages ? "the PDF has no text layer" : "the pages asked for have no text layer");
}

void PDFDocument::readPages(const Deadline &deadline, const std::function<bool(const NSString &text)> &use,
                            NSError *error) const {
  const auto useText = [&use](const NSString &text) { return text.length() == 0 || use(text); };
  readEachPage({0, pageCount()}, deadline, &PDFPage::string, useText, error);
}

void PDFDocument::readPages(const NSRange &pages, const Deadline &deadline,
                            const std::function<bool(const NSString &text)> &use, NSError *error) const {
  readEachPage(pages, deadline, &PDFPage::string, use, error);
}

void PDFDocument::readAttributedPages(const NSRange &pages, const Deadline &deadline,
                                      const std::function<bool(const NSAttributedString &text)> &use,
                                      NSError *error) const {
  readEachPage(pages, deadline, &PDFPage::attributedString, use, error);
}

NSAttributedString PDFSelection::attributedString(const Deadline &deadline, NSError *error) const {
  NSMutableAttributedString string;
  const auto append = [&string](const NSAttributedString &page) {
    if (page.length() == 0) return true;
    string.append(page);
    string.append(u'\n', page.runs().back().attributes);
    return true;
  };
  document_->readAttributedPages(pages_, deadline, append, error);
  return document_->pageCount() > 0 ? std::move(string).attributedString() : NSAttributedString();
}

}  // namespace nimbo
