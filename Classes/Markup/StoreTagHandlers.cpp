// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/StoreTagHandlers.hpp"

#include <cstdlib>

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/System/PageSize.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

/// Gives the array, when there is one, room for `capacity` ranges; frees it when there is no memory.
void resize(NSRange *&ranges, std::uint32_t capacity) {
  if (!ranges) return;
  void *const larger = std::realloc(ranges, std::size_t{capacity} * sizeof(NSRange));
  if (!larger) std::free(ranges);
  ranges = static_cast<NSRange *>(larger);
}

/// The units of a range that may begin or end behind the string.
NSString substring(const NSString &string, std::uint32_t start, std::uint32_t end) {
  return start < end ? string.substringWithRange({start, end - start}) : NSString::string();
}

void addUnlessEmpty(NSArray &array, const NSString &string) {
  if (string.length() > 0) array.addObject(string);
}

}  // namespace

bool StoreToRangesHandler(const NSString &, const unichar *, std::uint32_t, std::uint32_t,
                          std::uint32_t tagLocation, std::uint32_t tagLength, std::uint32_t textLocation, int,
                          void *context) {
  auto &store = *static_cast<StoreToRangesContext *>(context);
  if (store.tagRanges) store.tagRanges[store.count] = {tagLocation, tagLength};
  if (store.textRanges) store.textRanges[store.count] = {textLocation, tagLocation - textLocation};
  if (++store.count == store.capacity) {
    const std::size_t bytes = roundUpToMultipleOfPageSize(std::size_t{store.count} * 2 * sizeof(NSRange));
    store.capacity = static_cast<std::uint32_t>(bytes / sizeof(NSRange));
    resize(store.tagRanges, store.capacity);
    resize(store.textRanges, store.capacity);
  }
  return false;
}

bool StoreToArrayHandler(const NSString &string, const unichar *, std::uint32_t, std::uint32_t,
                         std::uint32_t tagLocation, std::uint32_t tagLength, std::uint32_t textLocation, int,
                         void *context) {
  auto &store = *static_cast<StoreToArrayContext *>(context);
  const auto tag = [&] { return substring(string, tagLocation, tagLocation + tagLength); };
  const auto content = [&] { return substring(string, textLocation, tagLocation); };
  if (store.wantTags && store.wantContents) {
    NSDictionary entry{{u"Tag"_ns, tag()}};
    if (const NSString text = content(); text.length() > 0) entry.setObject(text, u"Content"_ns);
    store.result.addObject(entry);
  } else if (store.wantTags) {
    addUnlessEmpty(store.result, tag());
  } else if (store.wantContents) {
    addUnlessEmpty(store.result, content());
  }
  return false;
}

}  // namespace nimbo
