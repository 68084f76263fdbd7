// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <memory>
#include <string_view>
#include <type_traits>

#include "Classes/Markup/TagShape.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// A callable that is called with each tag and answers whether to stop the scan.
struct TagVisitor {
  bool (*visit)(const TagShape &tag, void *callable);
  void *callable;
};

void scanTagsWithVisitor(std::u16string_view markup, TagVisitor visitor);
void scanXMLTagsWithVisitor(std::u16string_view markup, TagVisitor visitor);

template <class Callable>
TagVisitor visitorOf(Callable &callable) {
  const auto call = [](const TagShape &tag, void *pointer) -> bool {
    Callable &target = *static_cast<Callable *>(pointer);
    if constexpr (std::is_void_v<std::invoke_result_t<Callable &, const TagShape &>>) {
      target(tag);
      return false;
    } else {
      return target(tag);
    }
  };
  return {call, const_cast<std::remove_const_t<Callable> *>(std::addressof(callable))};
}

}  // namespace detail

/// Walks over the markup once and calls `visit(const TagShape &)` for each tag, comment and marked section,
/// from the first to the last, and once more at the end; `visit` may answer whether to stop. It is
/// `GetTagsOfString` for a lambda:
///
///     std::size_t images = 0;
///     scanTags(page, [&](const TagShape &tag) { images += tag.isNamed("img"); });
///     scanTags(page, [&](const TagShape &tag) { return tag.isNamed("body"); });  // Looks at the head alone.
///
/// The units must live and stay as they are until it returns. Broken markup is never an error. Without units
/// there is no call. Raises what `visit` raises, and `std::bad_alloc` when the marks of odd markup need more
/// memory than there is. Any thread may scan, and `visit` is called on that thread alone.
template <class Visit>
requires std::invocable<Visit &, const TagShape &>
void scanTags(std::u16string_view markup, Visit &&visit) {
  detail::scanTagsWithVisitor(markup, detail::visitorOf(visit));
}

/// The same for a string; nil has no tags.
template <class Visit>
requires std::invocable<Visit &, const TagShape &>
void scanTags(const NSString &string, Visit &&visit) {
  scanTags(string.view(), visit);
}

/// The same for XML: a CDATA section ends at "]]>", whatever stands in it.
template <class Visit>
requires std::invocable<Visit &, const TagShape &>
void scanXMLTags(std::u16string_view markup, Visit &&visit) {
  detail::scanXMLTagsWithVisitor(markup, detail::visitorOf(visit));
}

}  // namespace nimbo
