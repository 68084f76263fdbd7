// SPDX-License-Identifier: Apache-2.0
//
// What PDFDocument costs beyond MuPDF, and attributed text beyond plain text: opens every PDF of a folder that
// has text and takes the text of its pages, twice through PDFDocument and once by MuPDF's own calls with the
// same settings, a context for each document. PDFDocument must find the same text twice. Documents where MuPDF
// finds other words (it takes text beyond the page, and lines from right to left as they are seen) are named
// and left out.
//
//   bench-pdf-text FOLDER [ROUNDS]

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/PDFKit/PDFDocument.hpp"

namespace {

using namespace nimbo;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kStoreBytes = std::size_t{16} << 20;
constexpr rlim_t kAddressSpaceBytes = rlim_t{1} << 30;

void writePageByMuPDF(fz_context *context, pdf_document *document, int index, fz_output *output) {
  pdf_page *page = nullptr;
  fz_stext_page *found = nullptr;
  fz_device *device = nullptr;
  fz_var(page);
  fz_var(found);
  fz_var(device);
  fz_try(context) {
    page = pdf_load_page(context, document, index);
    found = fz_new_stext_page(context, pdf_bound_page(context, page));
    device = fz_new_stext_device(context, found, nullptr);
    pdf_run_page(context, page, device, fz_identity, nullptr);
    fz_close_device(context, device);
    fz_print_stext_page_as_text(context, output, found);
  }
  fz_always(context) {
    fz_drop_device(context, device);
    fz_drop_stext_page(context, found);
    if (page) fz_drop_page(context, &page->super);
  }
  fz_catch(context) {
    // The page contributes nothing.
  }
}

void appendTextByMuPDF(fz_context *context, const NSData &data, std::string *text) {
  pdf_document *document = nullptr;
  fz_buffer *buffer = nullptr;
  fz_output *output = nullptr;
  fz_var(document);
  fz_var(buffer);
  fz_var(output);
  fz_try(context) {
    fz_stream *stream = fz_open_memory(context, data.bytes(), data.length());
    fz_try(context) document = pdf_open_document_with_stream(context, stream);
    fz_always(context) fz_drop_stream(context, stream);
    fz_catch(context) fz_rethrow(context);
    buffer = fz_new_buffer(context, 4096);
    output = fz_new_output_with_buffer(context, buffer);
    const int pages = pdf_needs_password(context, document) ? 0 : pdf_count_pages(context, document);
    for (int index = 0; index < pages; ++index) writePageByMuPDF(context, document, index, output);
    fz_close_output(context, output);
  }
  fz_always(context) fz_drop_output(context, output);
  fz_catch(context) {
    // The document contributes nothing.
  }
  if (buffer) text->append(reinterpret_cast<const char *>(buffer->data), buffer->len);
  fz_drop_buffer(context, buffer);
  pdf_drop_document(context, document);
}

std::string textByMuPDF(const NSData &data) {
  std::string text;
  fz_context *context = fz_new_context(nullptr, nullptr, kStoreBytes);
  fz_set_warning_callback(
      context, [](void *, const char *) {}, nullptr);
  fz_set_error_callback(
      context, [](void *, const char *) {}, nullptr);
  appendTextByMuPDF(context, data, &text);
  fz_drop_context(context);
  return text;
}

std::vector<NSString> textByPDFDocument(const NSData &data) {
  std::vector<NSString> text;
  const auto document = PDFDocument::documentWithData(data);
  const std::uint32_t pages = document && !document->isLocked() ? document->pageCount() : 0;
  for (std::uint32_t index = 0; index < pages; ++index) text.push_back(document->pageAtIndex(index).string());
  return text;
}

std::vector<NSAttributedString> attributedTextByPDFDocument(const NSData &data) {
  std::vector<NSAttributedString> text;
  const auto document = PDFDocument::documentWithData(data);
  const std::uint32_t pages = document && !document->isLocked() ? document->pageCount() : 0;
  for (std::uint32_t index = 0; index < pages; ++index)
    text.push_back(document->pageAtIndex(index).attributedString());
  return text;
}

/// Whether both are the same text, and all of the attributed one has attributes.
bool isSameText(const std::vector<NSAttributedString> &attributed, const std::vector<NSString> &plain) {
  return std::equal(attributed.begin(), attributed.end(), plain.begin(), plain.end(),
                    [](const NSAttributedString &a, const NSString &b) {
                      return a.string() == b && (a.length() == 0 || a.runs().back().end == a.length());
                    });
}

/// The words, each followed by a blank; what stands for an unknown glyph is a blank too.
std::u16string wordsOfString(std::u16string_view string) {
  std::u16string words;
  for (const char16_t unit : string) {
    const bool blank = unit <= u' ' || (unit >= 0x7f && unit <= 0x9f) || unit == 0xfffd;
    if (!blank)
      words.push_back(unit);
    else if (!words.empty() && words.back() != u' ')
      words.push_back(u' ');
  }
  if (!words.empty() && words.back() != u' ') words.push_back(u' ');
  return words;
}

std::u16string wordsByPDFDocument(const NSData &data) {
  std::u16string words;
  for (const NSString &page : textByPDFDocument(data)) words += wordsOfString(page.view());
  return words;
}

template <class Function>
double secondsFor(const std::vector<NSData> &documents, Function function) {
  const Clock::time_point start = Clock::now();
  for (const NSData &data : documents) function(data);
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) return std::fputs("usage: bench-pdf-text FOLDER [ROUNDS]\n", stderr), 1;
  // MuPDF by itself would take gigabytes and minutes for a bomb.
  const rlimit limit = {kAddressSpaceBytes, kAddressSpaceBytes};
  setrlimit(RLIMIT_AS, &limit);
  const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 9;
  std::vector<NSData> documents;
  int different = 0;
  for (const auto &entry : std::filesystem::directory_iterator(argv[1])) {
    if (entry.path().extension() != ".pdf") continue;
    const NSData data =
        NSData::dataWithContentsOfFile(NSString::stringWithFileSystemRepresentation(entry.path().native()));
    if (!data) continue;
    const std::u16string words = wordsByPDFDocument(data);
    if (words.empty()) continue;
    if (!isSameText(attributedTextByPDFDocument(data), textByPDFDocument(data))) ++different;
    if (words == wordsOfString(NSString::stringWithLossyUTF8String(textByMuPDF(data)).view()))
      documents.push_back(data);
    else
      std::printf("left out: %s\n", entry.path().filename().c_str());
  }
  if (documents.empty() || different) return std::fputs("nothing to compare\n", stderr), 1;

  std::vector<double> adapter, engine, attributed;
  for (int round = 0; round < rounds; ++round) {
    adapter.push_back(secondsFor(documents, textByPDFDocument));
    engine.push_back(secondsFor(documents, textByMuPDF));
    attributed.push_back(secondsFor(documents, attributedTextByPDFDocument));
  }
  std::printf("%zu documents, median of %d rounds: PDFDocument %.1f ms, MuPDF %.1f ms, ratio %.3f\n",
              documents.size(), rounds, median(adapter) * 1e3, median(engine) * 1e3,
              median(adapter) / median(engine));
  std::printf("attributed text %.1f ms, ratio to plain text %.3f\n", median(attributed) * 1e3,
              median(attributed) / median(adapter));
  return 0;
}
