// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/BaseTag.hpp"

#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/Pages/PageFactTags.hpp"
#include "Classes/Pages/TagTests.hpp"

namespace nimbo {

namespace {

bool findBaseTag(const TagShape &tag, BaseTagContext &context) {
  switch (tag.tagName()) {
    case TagName::kBody:
      return true;
    case TagName::kBase:
      if (detail::linkOfBaseTag(tag).empty()) return false;
      context.baseTagStart = tag.tagRange().location;
      context.baseTagLength = tag.tagRange().length;
      return true;
    case TagName::kHead:
      if (detail::isOpeningTag(tag)) context.headEnd = tag.tagRange().location + tag.tagRange().length;
      return false;
    default:
      return false;
  }
}

}  // namespace

const TagHandler SetBaseURLHandler = tagHandler<findBaseTag>;

}  // namespace nimbo
