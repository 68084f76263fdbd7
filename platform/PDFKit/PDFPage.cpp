// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "platform/PDFKit/PDFEngine.hpp"
#include "platform/PDFKit/PDFFonts.hpp"
#include "platform/PDFKit/PDFTextArea.hpp"
#include "platform/PDFKit/PDFTextBlanks.hpp"
#include "platform/PDFKit/PDFTextLines.hpp"
#include "platform/PDFKit/PDFTextLooks.hpp"
#include "platform/PDFKit/PDFTextOrder.hpp"
#include "platform/PDFKit/PDFTextWalk.hpp"

namespace nimbo {

namespace {

/// What a page without a media box gets: US letter, in points.
constexpr fz_rect kDefaultMediaBox = {0, 0, 612, 792};

/// What MuPDF found on a page; drops it.
struct FoundText {
  fz_context *context;
  fz_stext_page *page = nullptr;
  fz_link *links = nullptr;
  /// Has some of the page's characters.
  detail::PDFTextOrder order{context};

  ~FoundText() {
    fz_drop_stext_page(context, page);
    fz_drop_link(context, links);
  }
};

bool isUsable(const fz_rect &box) {
  return std::isfinite(box.x0) && std::isfinite(box.y0) && std::isfinite(box.x1) && std::isfinite(box.y1) &&
         box.x0 < box.x1 && box.y0 < box.y1;
}

/// The media box as MuPDF places what is on the page, from the upper left corner of what is shown of it. Throws
/// as MuPDF does.
fz_rect placedMediaBox(fz_context *context, pdf_page *page) {
  fz_rect shown;
  fz_matrix place;
  pdf_page_transform(context, page, &shown, &place);
  const fz_rect media = pdf_to_rect(context, pdf_dict_get_inheritable(context, page->obj, PDF_NAME(MediaBox)));
  return fz_transform_rect(isUsable(media) ? media : shown, place);
}

/// Puts the text of a page where `found` says, whole or as much as there is before it fails; answers whether it
/// could be read.
bool readPage(detail::PDFEngine &engine, std::uint32_t index, FoundText *found, NSError *error) {
  if (!engine.triesPages()) {
    setError(error, ErrorCode::damaged, "too many pages before this one cannot be read");
    return false;
  }
  bool isMissing = false;
  try {
    engine.run([&](fz_context *context) {
      pdf_page *page = engine.pages().loadPage(context, index);
      isMissing = !page;
      if (isMissing) return;
      fz_device *device = nullptr;
      fz_var(device);
      fz_try(context) {
        found->links = pdf_load_links(context, page);
        found->page = fz_new_stext_page(context, placedMediaBox(context, page));
        device = fz_new_stext_device(context, found->page, nullptr);
        detail::PDFBudget::ofContext(context)->actualText().beginPage(context, engine.document(), page->obj,
                                                                      index);
        // What annotations and filled forms show is text, too.
        pdf_run_page(context, page, device, fz_identity, nullptr);
        fz_close_device(context, device);
      }
      fz_always(context) {
        detail::PDFBudget::ofContext(context)->actualText().endPage(context);
        fz_drop_device(context, device);
        fz_drop_page(context, &page->super);
      }
      fz_catch(context) fz_rethrow(context);
    });
    if (isMissing)
      setError(error, ErrorCode::damaged, "the PDF is damaged: the page is missing");
    else if (const NSError loss = engine.loss(); loss && error)
      *error = loss;
    return true;
  } catch (const detail::PDFFailure &failure) {
    if (error) *error = failure.error;
    // What MuPDF has found by then is whole: it puts one character after the other behind the last one.
    return false;
  }
}

/// The text that was found, which the listener hears of; nil when there is none.
template <class Listener>
NSString stringOfText(FoundText &found, Listener &listener) {
  if (!found.page) return {};
  detail::PDFBudget::ofContext(found.context)->actualText().dropCovered(found.context, *found.page);
  detail::settleBlanks(found.context, *found.page);
  detail::dropTextOutside(found.context, *found.page);
  detail::joinColumns(*found.page);
  detail::joinDividedWords(found.context, *found.page);
  found.order.putInLogicalOrder(*found.page);
  return detail::PDFTextWalk(listener).stringOfPage(*found.page);
}

}  // namespace

NSString PDFPage::string(NSError *error) const {
  FoundText found{engine_->context()};
  const bool isRead = readPage(*engine_, index_, &found, error);
  detail::PDFTextIgnorer ignorer;
  NSString string = stringOfText(found, ignorer);
  engine_->pageWasRead(isRead || string);
  return string;
}

NSAttributedString PDFPage::attributedString(NSError *error) const {
  const detail::PDFFonts fonts(engine_->context());
  FoundText found{engine_->context()};
  const bool isRead = readPage(*engine_, index_, &found, error);
  detail::PDFTextLooks looks(engine_->context(), found.links, engine_->limits());
  const NSString string = stringOfText(found, looks);
  engine_->pageWasRead(isRead || string);
  if (isRead && looks.loss() && error && !*error) setError(error, ErrorCode::incomplete, looks.loss());
  return looks.attributedString(string, fonts);
}

NSRect PDFPage::boundsForBox(PDFDisplayBox box) const {
  fz_rect bounds = kDefaultMediaBox;
  double pointsPerUnit = 1;
  try {
    engine_->run([&](fz_context *context) {
      pdf_obj *page = engine_->pages().pageAtIndex(context, index_);
      const fz_rect media = pdf_to_rect(context, pdf_dict_get_inheritable(context, page, PDF_NAME(MediaBox)));
      if (isUsable(media)) bounds = media;
      if (box == PDFDisplayBox::cropBox) {
        const fz_rect crop = pdf_to_rect(context, pdf_dict_get_inheritable(context, page, PDF_NAME(CropBox)));
        if (isUsable(crop) && isUsable(fz_intersect_rect(crop, bounds)))
          bounds = fz_intersect_rect(crop, bounds);
      }
      const double unit = pdf_to_real(context, pdf_dict_get(context, page, PDF_NAME(UserUnit)));
      if (std::isfinite(unit) && unit > 0) pointsPerUnit = unit;
    });
  } catch (const detail::PDFFailure &) {
    bounds = kDefaultMediaBox;
  }
  return {{bounds.x0 * pointsPerUnit, bounds.y0 * pointsPerUnit},
          {(double{bounds.x1} - bounds.x0) * pointsPerUnit, (double{bounds.y1} - bounds.y0) * pointsPerUnit}};
}

int PDFPage::rotation() const {
  int degrees = 0;
  try {
    engine_->run([&](fz_context *context) {
      pdf_obj *page = engine_->pages().pageAtIndex(context, index_);
      degrees = pdf_to_int(context, pdf_dict_get_inheritable(context, page, PDF_NAME(Rotate)));
    });
  } catch (const detail::PDFFailure &) {
    return 0;
  }
  // Damaged files name any angle: to the next quarter turn.
  const int turns = static_cast<int>(std::lround(degrees / 90.0)) % 4;
  return (turns < 0 ? turns + 4 : turns) * 90;
}

}  // namespace nimbo
