// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Markup/TagScanner.hpp"

namespace nimbo::detail {

/// Scans the page with a handler and its context, which keeps what it has when there is no memory for more.
template <class Context>
void scanWithHandler(const NSString &page, TagHandler handler, Context &context, Flag isMutable = false) {
  answerOr(false, [&] { return GetTagsOfString(page, handler, &context, isMutable); });
}

/// What the handler makes of a context that is empty at first.
template <class Context>
Context scannedWithHandler(const NSString &page, TagHandler handler) {
  Context context{};
  scanWithHandler(page, handler, context);
  return context;
}

}  // namespace nimbo::detail
