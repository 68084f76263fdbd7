// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/StoreTagHandlers.hpp"

#include <cstdlib>
#include <string_view>

#include "Classes/Markup/TagHandlers.hpp"
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

void addUnlessEmpty(NSArray &array, std::u16string_view units) {
  if (!units.empty()) array.addObject(NSString::stringWithCharacters(units));
}

void storeRanges(const TagShape &tag, StoreToRangesContext &store) {
  const std::uint32_t textLocation = tag.textLocation();
  if (store.tagRanges) store.tagRanges[store.count] = tag.tagRange();
  if (store.textRanges) store.textRanges[store.count] = {textLocation, tag.tagRange().location - textLocation};
  if (++store.count == store.capacity) {
    const std::size_t bytes = roundUpToMultipleOfPageSize(std::size_t{store.count} * 2 * sizeof(NSRange));
    store.capacity = static_cast<std::uint32_t>(bytes / sizeof(NSRange));
    resize(store.tagRanges, store.capacity);
    resize(store.textRanges, store.capacity);
  }
}

void storeStrings(const TagShape &tag, StoreToArrayContext &store) {
  if (store.wantTags && store.wantContents) {
    NSDictionary entry{{u"Tag"_ns, NSString::stringWithCharacters(tag.tag())}};
    if (!tag.text().empty()) entry.setObject(NSString::stringWithCharacters(tag.text()), u"Content"_ns);
    store.result.addObject(entry);
  } else if (store.wantTags) {
    addUnlessEmpty(store.result, tag.tag());
  } else if (store.wantContents) {
    addUnlessEmpty(store.result, tag.text());
  }
}

}  // namespace

const TagHandler StoreToRangesHandler = tagHandler<storeRanges>;
const TagHandler StoreToArrayHandler = tagHandler<storeStrings>;

}  // namespace nimbo
