// SPDX-License-Identifier: Apache-2.0
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"

#include <optional>
#include <string_view>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Stripping/StripBodiesHandlers.hpp"
#include "Classes/Stripping/StripObjectsHandler.hpp"
#include "Classes/Stripping/StripTagHandlers.hpp"

namespace nimbo {
inline namespace HtmlExtensions {

namespace {

/// What the handler makes of the string; `otherwise` when that is nothing, or too much for the memory.
template <class Context>
NSString stripped(const NSString &string, TagHandler handler, Context context, const NSString &otherwise) {
  return answerOr(otherwise, [&] {
    GetTagsOfString(string, handler, &context, false);
    return context.result ? std::move(*context.result).string() : otherwise;
  });
}

NSString strippedOfTag(const NSString &string, TagHandler handler, const char *name) {
  if (!name || !*name) return string;
  return stripped(string, handler, StripTagContext{{}, name}, string);
}

}  // namespace

NSString stripTags(const NSString &string) {
  if (!string) return string;
  return answerOr(string, [&] {
    NSMutableString text;
    text.reserve(string.length());
    GetTagsOfString(string, StripTagsHandler, &text, false);
    return std::move(text).string();
  });
}

NSString stripTag(const NSString &string, const char *name) {
  return strippedOfTag(string, StripTagHandler, name);
}

NSString stripAttributesOfTag(const NSString &string, const char *name) {
  return strippedOfTag(string, StripTagAttributesHandler, name);
}

NSString stripTagBodies(const NSString &string, const std::vector<NSString> &names) {
  return stripTagBodies(string, names, false);
}

NSString stripTagBodiesExcept(const NSString &string, const std::vector<NSString> &names) {
  return stripTagBodies(string, names, true);
}

NSString stripTagBodies(const NSString &string, const std::vector<NSString> &names, Flag except) {
  NSString otherwise = except ? NSString() : string;
  if (string.length() == 0 || names.empty()) return otherwise;
  return answerOr(otherwise, [&] {
    std::vector<std::u16string_view> prefixes;
    for (const NSString &name : names)
      if (name.length() > 0) prefixes.push_back(name.view());
    StripBodiesContext context;
    context.names = prefixes;
    return stripped(string, except ? StripTagBodiesExceptHandler : StripTagBodiesHandler, std::move(context),
                    otherwise);
  });
}

NSString stripObjects(const NSString &string) {
  return stripped(string, StripObjectsHandler, StripObjectsContext(), string);
}

}  // namespace HtmlExtensions
}  // namespace nimbo
