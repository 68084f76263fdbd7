// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFPageTree.hpp"

#include <algorithm>
#include <exception>

#include "platform/PDFKit/PDFBudget.hpp"

namespace nimbo::detail {
namespace {

/// Calls what may throw as C++ does, and throws as MuPDF does instead.
template <class Work>
void guard(fz_context *context, const Work &work) {
  bool failed = false;
  try {
    work();
  } catch (const std::exception &) {
    failed = true;
  }
  if (failed) fz_throw(context, FZ_ERROR_MEMORY, "out of memory");
}

/// Whether it is a node of the tree and no page. Some nodes do not say so.
bool isNode(fz_context *context, pdf_obj *kid) {
  if (pdf_obj *const type = pdf_dict_get(context, kid, PDF_NAME(Type)); pdf_is_name(context, type))
    return pdf_name_eq(context, type, PDF_NAME(Pages)) != 0;
  return pdf_dict_get(context, kid, PDF_NAME(Kids)) && !pdf_dict_get(context, kid, PDF_NAME(MediaBox));
}

}  // namespace

void PDFPageTree::setDocument(fz_context *context, pdf_document *document) {
  while (!path_.empty()) leave(context);
  for (pdf_obj *page : pages_) pdf_drop_obj(context, page);
  pages_.clear();
  state_ = State::fresh;
  document_ = document;
}

pdf_obj *PDFPageTree::pageAtIndex(fz_context *context, std::uint32_t index) {
  walk(context, std::size_t{index} + 1);
  return index < pages_.size() ? pages_[index] : nullptr;
}

std::uint32_t PDFPageTree::countPages(fz_context *context, std::uint32_t maximum) {
  walk(context, maximum);
  return static_cast<std::uint32_t>(std::min<std::size_t>(pages_.size(), maximum));
}

pdf_page *PDFPageTree::loadPage(fz_context *context, std::uint32_t index) {
  pdf_obj *const object = pageAtIndex(context, index);
  if (!pdf_is_dict(context, object)) return nullptr;
  // To MuPDF the document is one of this page, which spares it the way through the tree. A page that is no
  // object of its own has no number for that.
  int number = pdf_to_num(context, object);
  const bool isObject = number != 0;
  const int place = isObject ? 0 : static_cast<int>(index);
  if (isObject) document_->fwd_page_map = &number;
  document_->map_page_count = 1;
  fz_page *page = nullptr;
  fz_try(context) page = pdf_load_page_imp(context, &document_->super, 0, place);
  fz_always(context) {
    document_->fwd_page_map = nullptr;
    document_->map_page_count = 0;
  }
  fz_catch(context) fz_rethrow(context);
  return pdf_page_from_fz_page(context, page);
}

/// Walks on until so many pages are known or the tree ends.
void PDFPageTree::walk(fz_context *context, std::size_t pages) {
  if (pages_.size() >= pages) return;
  // A tree that took all the work of a step would take that of each.
  if (state_ == State::failed) fz_throw(context, FZ_ERROR_GENERIC, "the page tree cannot be read");
  PDFBudget *const budget = PDFBudget::ofContext(context);
  const bool isFresh = state_ == State::fresh;
  state_ = State::failed;
  if (isFresh) enter(context, pdf_dict_getp(context, pdf_trailer(context, document_), "Root/Pages"));
  while (!path_.empty() && pages_.size() < pages) {
    Node &node = path_.back();
    pdf_obj *const kid = pdf_array_get(context, node.kids, node.next++);
    const bool goesDown = isNode(context, kid);
    // Over the limits everything is missing.
    if (budget && !budget->spend(1)) fz_throw(context, FZ_ERROR_ABORT, "over the limits");
    if (goesDown) {
      enter(context, kid);
    } else if (node.next > pdf_array_len(context, node.kids)) {
      leave(context);
    } else if (pdf_is_indirect(context, kid) || pdf_is_dict(context, kid)) {
      guard(context, [&] { pages_.push_back(kid); });
      pdf_keep_obj(context, kid);
    }
  }
  state_ = State::begun;
}

void PDFPageTree::enter(fz_context *context, pdf_obj *node) {
  pdf_obj *const kids = pdf_dict_get(context, node, PDF_NAME(Kids));
  int number = pdf_to_num(context, node);
  // A node that is no object of its own can come back as a kid of its kids alone.
  if (number == 0) number = pdf_to_num(context, kids);
  if (!pdf_is_array(context, kids) || entered_.contains(number)) return;
  guard(context, [&] { path_.push_back({kids, 0, number}); });
  pdf_keep_obj(context, kids);
  if (number != 0) guard(context, [&] { entered_.insert(number); });
}

void PDFPageTree::leave(fz_context *context) {
  entered_.erase(path_.back().objectNumber);
  pdf_drop_obj(context, path_.back().kids);
  path_.pop_back();
}

}  // namespace nimbo::detail
