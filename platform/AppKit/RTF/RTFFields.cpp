// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFFields.hpp"

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

constexpr std::string_view kHyperlink = "hyperlink";

/// The next word of an instruction, or what its quotation marks hold, in which a backslash stands before
/// another one and before such a mark. False at the end.
bool nextArgument(std::u16string_view *rest, std::u16string *argument, bool *isQuoted) {
  while (!rest->empty() && rest->front() <= u' ') rest->remove_prefix(1);
  argument->clear();
  if (rest->empty()) return false;
  *isQuoted = rest->front() == u'"';
  if (*isQuoted) rest->remove_prefix(1);
  std::size_t i = 0;
  for (; i < rest->size(); ++i) {
    const char16_t unit = (*rest)[i];
    if (*isQuoted ? unit == u'"' : unit <= u' ' || unit == u'"') break;
    const bool escapes =
        unit == u'\\' && i + 1 < rest->size() && ((*rest)[i + 1] == u'\\' || (*rest)[i + 1] == u'"');
    *argument += escapes ? (*rest)[++i] : unit;
  }
  if (*isQuoted && i < rest->size()) ++i;
  rest->remove_prefix(i);
  return true;
}

}  // namespace

NSString linkOfInstruction(std::u16string_view instruction) {
  std::u16string argument, link;
  bool isQuoted = false;
  if (!nextArgument(&instruction, &argument, &isQuoted) || isQuoted ||
      !equalsASCIINoCase(std::u16string_view(argument), kHyperlink))
    return {};
  bool hasAddress = false;
  while (nextArgument(&instruction, &argument, &isQuoted)) {
    if (isQuoted || !argument.starts_with(u'\\')) {
      if (!hasAddress) link.insert(0, argument);
      hasAddress = true;
    } else if (argument == u"\\l") {
      if (nextArgument(&instruction, &argument, &isQuoted)) link += u'#' + argument;
    } else if (argument == u"\\o" || argument == u"\\t") {
      (void)nextArgument(&instruction, &argument, &isQuoted);
    }
  }
  return link.empty() ? NSString() : NSString::stringWithCharacters(link);
}

std::u16string instructionOfLink(std::u16string_view link) {
  std::u16string instruction = u"HYPERLINK \"";
  for (const char16_t unit : link) {
    if (unit == u'"' || unit == u'\\') instruction += u'\\';
    instruction += unit;
  }
  return instruction + u'"';
}

}  // namespace nimbo
