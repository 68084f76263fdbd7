// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Markup/TagAttributes.hpp"
#include "tests/support/StringSamples.hpp"

namespace {

using namespace nimbo;

void requireIn(const NSString &value, const NSString &tag) {
  if (value && (value.length() == 0 || tag.view().find(value.view()) == std::u16string_view::npos))
    std::abort();
}

void readAttributes(const NSString &tag) {
  for (const char *name : {"CONTENT", "a", "HREF"})
    for (const bool isTolerant : {false, true})
      requireIn(_attributeOfTagCharactersWithName(tag.characters(), 0, tag.length(), name, isTolerant), tag);
  for (const NSString &name : {u"content"_ns, u"B"_ns}) {
    requireIn(attributeOfTagWithName(tag, name), tag);
    requireIn(attributeOfStyleWithName(tag, name), tag);
    requireIn(attributeOfTagInRange(tag, {1, tag.length()}, name), tag);
    requireIn(attributeOfStyleInRange(tag, {tag.length() / 2, tag.length() - tag.length() / 2}, name), tag);
  }
  for (const unichar quote : {u'\'', u'"'}) requireIn(headerFieldNamed(tag, u"B"_ns, quote), tag);
  requireIn(headerCharset(tag), tag);
  requireIn(headerRefresh(tag), tag);
}

}  // namespace

/// Values of attributes are parts of their tag, and never empty. The whole text is read as a tag too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto string = NSString::stringWithLossyUTF8String({reinterpret_cast<const char *>(data), size});
  readAttributes(exactString(string.view()));
  GetTagsOfString(
      string,
      [](const NSString &whole, const unichar *, std::uint32_t, std::uint32_t, std::uint32_t location,
         std::uint32_t length, std::uint32_t, int, void *) {
        readAttributes(exactString(whole.view().substr(location, length)));
        return false;
      },
      nullptr, false);
  return 0;
}
