// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFEngine.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/CoreServices/ContentTypes.hpp"

namespace nimbo::detail {

namespace {

PDFFailure failure(ErrorCode code, const std::string &reason) {
  return {NSError::errorWithCode(code, reason)};
}

/// Where a document says how many pages it has.
constexpr const char *kPageCount = "Root/Pages/Count";

/// Whether neither streams nor strings are encrypted, only files that are attached to the document.
bool encryptsAttachmentsAlone(fz_context *context, pdf_document *document, pdf_obj *encryption) {
  // Earlier versions have one method for all.
  if (pdf_crypt_version(context, document->crypt) < 4) return false;
  for (pdf_obj *const key : {PDF_NAME(StmF), PDF_NAME(StrF)}) {
    pdf_obj *const filter = pdf_dict_get(context, encryption, key);
    if (filter && !pdf_name_eq(context, filter, PDF_NAME(Identity))) return false;
  }
  return true;
}

/// Whether the key that MuPDF has derived from the owner's password last is the right one: it reads the copy of
/// the permissions, which has a mark.
bool hasRightKey(fz_context *context, pdf_document *document, pdf_obj *encryption) {
  constexpr char kMark[] = {'a', 'd', 'b'};
  constexpr std::size_t kMarkPlace = 9;
  constexpr std::size_t kBlockBytes = 16;
  if (pdf_crypt_revision(context, document->crypt) < 5) return false;
  std::size_t length = 0;
  const char *const permissions = pdf_dict_get_string(context, encryption, PDF_NAME(Perms), &length);
  fz_aes aes;
  if (length < kBlockBytes || fz_aes_setkey_dec(&aes, pdf_crypt_key(context, document->crypt), 256) != 0)
    return false;
  unsigned char bytes[kBlockBytes] = {};
  unsigned char chain[kBlockBytes] = {};
  std::memcpy(bytes, permissions, kBlockBytes);
  fz_aes_crypt_cbc(&aes, FZ_AES_DECRYPT, kBlockBytes, chain, bytes, bytes);
  return std::memcmp(bytes + kMarkPlace, kMark, sizeof kMark) == 0;
}

/// Whether the text cannot be read without a password. MuPDF tries the empty one, but as the owner's it does
/// not take it where the user's is another one, although it opens the document.
bool needsPassword(fz_context *context, pdf_document *document) {
  if (!pdf_needs_password(context, document)) return false;
  pdf_obj *const encryption = pdf_dict_get(context, pdf_trailer(context, document), PDF_NAME(Encrypt));
  return !encryptsAttachmentsAlone(context, document, encryption) &&
         !hasRightKey(context, document, encryption);
}

/// Makes each block that is read of a file a unit of work: a search for objects asks for no memory, however
/// long the file is.
void countBlocks(fz_stream *stream) {
  static fz_stream_next_fn *const readBlock = stream->next;
  stream->next = [](fz_context *context, fz_stream *file, std::size_t wanted) {
    PDFBudget *const budget = PDFBudget::ofContext(context);
    budget->spend(1);
    if (budget->isOver()) fz_throw(context, FZ_ERROR_GENERIC, "the step is over its limits");
    return readBlock(context, file, wanted);
  };
}

/// The bytes at a place of a file, at most so many as are searched; none where it cannot be read.
std::string bytesAt(std::FILE *file, off_t place) {
  std::string bytes(PDFInput::kSearchBytes, '\0');
  const ssize_t got = ::pread(::fileno(file), bytes.data(), bytes.size(), place);
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  return bytes;
}

}  // namespace

std::string PDFInput::firstBytes() const {
  return file ? bytesAt(file.get(), 0) : std::string(data.view().substr(0, kSearchBytes));
}

std::string PDFInput::lastBytes() const {
  if (!file) {
    const std::string_view all = data.view();
    return std::string(all.substr(all.size() - std::min(all.size(), kSearchBytes)));
  }
  struct stat status = {};
  ::fstat(::fileno(file.get()), &status);
  return bytesAt(file.get(), std::max<off_t>(status.st_size - static_cast<off_t>(kSearchBytes), 0));
}

PDFEngine::PDFEngine(PDFInput input, const PDFLimits &limits)
    : limits_(limits), input_(std::move(input)), budget_(limits.memoryBytes) {
  context_ = fz_new_context(budget_.functions(), nullptr, kStoreBytes);
  if (!context_) throw failure(ErrorCode::memoryLimit, "there is not enough memory for a PDF");
  losses_.watch(context_);
  try {
    open();
  } catch (...) {
    close();
    throw;
  }
}

PDFEngine::~PDFEngine() {
  close();
}

void PDFEngine::open() {
  run([this](fz_context *context) {
    // The reader of PDF alone: the general one would take pictures, books and web pages too.
    fz_stream *stream = input_.file ? fz_open_file_ptr_no_close(context, input_.file.get())
                                    : fz_open_memory(context, input_.data.bytes(), input_.data.length());
    if (input_.file) countBlocks(stream);
    fz_try(context) document_ = pdf_open_document_with_stream(context, stream);
    fz_always(context) fz_drop_stream(context, stream);
    fz_catch(context) fz_rethrow(context);
    locked_ = needsPassword(context, document_);
    version_ = pdf_version(context, document_);
    findPages(context);
  });
}

void PDFEngine::findPages(fz_context *context) {
  pages_.setDocument(context, document_);
  claimedPages_ = pdf_count_pages(context, document_);
  const std::uint32_t limit = std::min<std::uint32_t>(limits_.pages, NSNotFound);
  // Most documents tell the truth; going through the tree of a long one takes a while.
  // The first entry of the table is no object.
  const bool mayBeTrue = claimedPages_ > 0 && claimedPages_ < pdf_xref_len(context, document_);
  pageCount_ = mayBeTrue ? std::min(static_cast<std::uint32_t>(claimedPages_), limit)
                         : pages_.countPages(context, limit);
}

void PDFEngine::unlock(const char *password) {
  run([this, password](fz_context *context) {
    if (!locked_ || !pdf_authenticate_password(context, document_, password)) return;
    locked_ = false;
    // What has been loaded by now was decrypted with a wrong key.
    pdf_clear_xref(context, document_);
    findPages(context);
  });
}

void PDFEngine::checkWhole(NSError *error) {
  bool hasMore = false;
  bool hasPageTree = false;
  try {
    run([&](fz_context *context) {
      hasPageTree = pdf_is_int(context, pdf_dict_getp(context, pdf_trailer(context, document_), kPageCount));
      hasMore = pages_.pageAtIndex(context, pageCount_) != nullptr;
    });
  } catch (const PDFFailure &) {
    // What has been read by now is all that can be said.
  }
  const bool isRepaired = pdf_was_repaired(context_, document_) != 0;
  const std::string end = input_.lastBytes();
  const std::size_t mark = end.rfind("%%EOF");
  const std::string pages = std::to_string(pageCount_);
  if (hasMore && pageCount_ == limits_.pages)
    setError(error, ErrorCode::incomplete, "only the first " + pages + " pages are read");
  else if (hasMore || claimedPages_ != static_cast<int>(pageCount_))
    setError(error, ErrorCode::damaged,
             "the PDF is damaged: its page count is " + std::to_string(claimedPages_) + ", but it has " +
                 (hasMore ? "more" : pages));
  else if (pageCount_ == 0 && (isRepaired || !hasPageTree))
    setError(error, ErrorCode::damaged, "the PDF is damaged: its pages are missing");
  else if (pageCount_ == 0)
    setError(error, ErrorCode::incomplete, "the PDF has no pages");
  // An object behind the mark belongs to a change of the document that has a mark of its own.
  else if (mark == std::string::npos ? isRepaired : end.find(" obj", mark) != std::string::npos)
    setError(error, ErrorCode::incomplete, "the end of the PDF is missing");
}

NSError PDFEngine::loss() const {
  if (!*losses_.reason()) return {};
  return NSError::errorWithCode(ErrorCode::damaged, std::string("the PDF is damaged: ") + losses_.reason());
}

void PDFEngine::close() {
  pages_.setDocument(context_, nullptr);
  pdf_drop_document(context_, document_);
  fz_drop_context(context_);
}

void PDFEngine::raise(PDFBudget::Excess excess) const {
  if (!document_ && !beginsLikePDF(input_.firstBytes()))
    throw failure(ErrorCode::unsupportedType, "the file is no PDF");
  if (excess == PDFBudget::Excess::time) throw failure(ErrorCode::timeLimit, "reading the PDF takes too long");
  if (excess == PDFBudget::Excess::work)
    throw failure(ErrorCode::timeLimit, "reading the PDF takes too much work");
  if (fz_caught(context_) == FZ_ERROR_MEMORY)
    throw failure(ErrorCode::memoryLimit, "the PDF needs too much memory");
  throw failure(ErrorCode::damaged, std::string("the PDF is damaged: ") + fz_caught_message(context_));
}

}  // namespace nimbo::detail
