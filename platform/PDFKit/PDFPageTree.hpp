// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

namespace nimbo::detail {

/// The pages of a document in their order, found in one walk through its tree, which goes as far as the pages
/// that are asked for and on from there. MuPDF goes through the tree for each page, and by what its nodes
/// claim. Its functions throw as MuPDF does, and nothing else.
class PDFPageTree {
 public:
  PDFPageTree() = default;
  PDFPageTree(const PDFPageTree &) = delete;
  PDFPageTree &operator=(const PDFPageTree &) = delete;

  /// Begins with a document, or anew when its objects have changed; null has to come before it is closed.
  void setDocument(fz_context *context, pdf_document *document);
  /// The page's object, a reference to it mostly, borrowed from this one; null when there are not so many
  /// pages.
  pdf_obj *pageAtIndex(fz_context *context, std::uint32_t index);
  /// Loads the page, which the caller drops before another one is loaded; null when it is missing.
  pdf_page *loadPage(fz_context *context, std::uint32_t index);
  /// How many pages there are, at most `maximum`.
  std::uint32_t countPages(fz_context *context, std::uint32_t maximum);

 private:
  /// The kids of a node that is walked through, and which of them comes next.
  struct Node {
    pdf_obj *kids;
    int next;
    /// Of the node, or of its kids; 0 when neither has one.
    int objectNumber;
  };

  void walk(fz_context *context, std::size_t pages);
  void enter(fz_context *context, pdf_obj *node);
  void leave(fz_context *context);

  pdf_document *document_ = nullptr;
  std::vector<Node> path_;
  /// The numbers of the nodes of the path, which cannot be their own kids.
  std::unordered_set<int> entered_;
  std::vector<pdf_obj *> pages_;
  enum class State { fresh, begun, failed } state_ = State::fresh;
};

}  // namespace nimbo::detail
