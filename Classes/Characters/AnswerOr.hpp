// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <new>
#include <stdexcept>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The answer of `work()`, or `otherwise` when there is no memory for it or the result would be longer than a
/// string may be: what functions on strings do instead of raising. Other exceptions pass through. Any thread
/// may call it; `work` is done on that thread.
///
///     NSString twice(const NSString &text) {
///       return answerOr(text, [&] { return stringByConcatenating(text, text); });
///     }
template <class Answer, class Work>
Answer answerOr(Answer otherwise, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc &) {
  } catch (const std::length_error &) {
  }
  return otherwise;
}

}  // namespace nimbo
