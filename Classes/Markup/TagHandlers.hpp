// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <type_traits>

#include "Classes/Markup/TagShape.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

template <class Step>
struct TagStep;

template <class Result, class Context>
struct TagStep<Result (*)(const TagShape &, Context &)> {
  using ContextType = Context;
  static constexpr bool kMayStop = !std::is_void_v<Result>;
};

template <auto step>
bool handleTag(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
               std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
               std::uint32_t textLocation, int kind, void *context) {
  using Step = TagStep<decltype(step)>;
  const TagShape tag({characters, string.length()}, {nameLocation, nameLength}, {tagLocation, tagLength},
                     textLocation, static_cast<TagKind>(kind));
  auto &record = *static_cast<typename Step::ContextType *>(context);
  if constexpr (Step::kMayStop) {
    return step(tag, record);
  } else {
    step(tag, record);
    return false;
  }
}

}  // namespace detail

/// A `TagHandler` made of a function with a context of its own type, which is the scan's context. The function
/// answers whether to stop the scan, or nothing, when it never does. It is called on the thread that scans.
///
///     void countImages(const TagShape &tag, unsigned &images) { images += tag.isNamed("img"); }
///     unsigned images = 0;
///     GetTagsOfString(page, tagHandler<countImages>, &images, false);
template <auto step>
inline constexpr TagHandler tagHandler = detail::handleTag<step>;

}  // namespace nimbo
