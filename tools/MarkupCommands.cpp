// SPDX-License-Identifier: Apache-2.0
#include "tools/MarkupCommands.hpp"

#include <algorithm>
#include <string_view>

#include "Classes/Markup/ScanTags.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/id.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/LongResult.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

struct StripOptions : CommonOptions {
  std::optional<std::string> tag;
  std::optional<std::string> attributes;
  std::vector<std::string> bodies;
  std::vector<std::string> except;
  bool objects = false;
};

/// A call of the scanner; the name may be null.
NSDictionary valueOfTag(const TagShape &tag) {
  const id name = tag.name().empty() ? id(NSNull()) : NSString::stringWithCharacters(tag.name());
  return {{u"kind"_ns, static_cast<int>(tag.kind())},
          {u"name"_ns, name},
          {u"tag"_ns, NSArray{tag.tagRange().location, tag.tagRange().length}},
          {u"text"_ns, NSArray{tag.textLocation(), static_cast<std::uint32_t>(tag.text().size())}}};
}

int runTags(const CommonOptions &options, const Operands &operands) {
  const NSString string = textOfInput(operands.front(), options.timeoutSeconds);
  LongResult result(options);
  result.beginList();
  scanTags(string, [&](const TagShape &tag) { result.addObject(valueOfTag(tag)); });
  result.endList();
  result.end();
  return kExitAnswered;
}

UsageError noTagName(const char *option, const std::string &name) {
  return UsageError("'" + name + "' is no name of a tag for --" + option);
}

std::string upperCaseName(const char *option, std::string name) {
  const auto isPrintable = [](char c) { return c > ' ' && c < '\x7f'; };
  if (name.empty() || !std::ranges::all_of(name, isPrintable)) throw noTagName(option, name);
  std::ranges::transform(name, name.begin(), toASCIIUpper<char>);
  return name;
}

/// The names that an option was given, and those behind the file, "page.html --bodies div p", each with the "<"
/// that the library wants. None when the option is not given.
std::vector<NSString> startsOfTags(const char *option, std::vector<std::string> names,
                                   const Operands &operands) {
  std::vector<NSString> starts;
  if (names.empty()) return starts;
  names.insert(names.end(), operands.begin() + 1, operands.end());
  for (const std::string &name : names) {
    const std::string start = name.starts_with('<') ? name : "<" + name;
    if (start == "<") throw noTagName(option, name);
    starts.push_back(NSString::stringWithLossyUTF8String(start));
  }
  return starts;
}

int runStrip(const StripOptions &options, const Operands &operands) {
  const std::string tag = options.tag ? upperCaseName("tag", *options.tag) : "";
  const std::string attributes = options.attributes ? upperCaseName("attributes", *options.attributes) : "";
  const std::vector<NSString> bodies = startsOfTags("bodies", options.bodies, operands);
  const std::vector<NSString> except = startsOfTags("except", options.except, operands);
  if (!tag.empty() + !attributes.empty() + !bodies.empty() + !except.empty() + options.objects > 1)
    throw UsageError("--tag, --attributes, --bodies, --except and --objects cannot be joined");

  if (operands.size() > 1 && bodies.empty() && except.empty())
    throw UsageError("'" + operands[1] + "' is too much for strip");

  const NSString string = textOfInput(operands.front(), options.timeoutSeconds);
  NSString result;
  if (options.tag)
    result = stripTag(string, tag.c_str());
  else if (options.attributes)
    result = stripAttributesOfTag(string, attributes.c_str());
  else if (!bodies.empty())
    result = stripTagBodies(string, bodies);
  else if (!except.empty())
    result = stripTagBodiesExcept(string, except);
  else
    result = options.objects ? stripObjects(string) : stripTags(string);
  if (!result) {
    writeMessage(nameOfInput(operands.front()) + ": has no such element");
    return kExitNil;
  }
  writeText(result);
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &markupCommands() {
  static const std::vector<Command> commands = {
      {{.name = "strip",
        .operands = "FILE [NAME...]",
        .summary = "markup without its tags, or without some of it",
        .description = R"(
Prints the text of markup without its tags, entities as they are; with an option the markup without
what the option names. FILE "-" is standard input. The options cannot be joined; --bodies and
--except may be given more than once, or with several names behind FILE, which also stand for longer
ones: "h" for "h1". A script or style that --bodies removes takes all behind it away, because it is
one tag for the scanner, its end included.)",
        .minimumOperands = 1,
        .maximumOperands = kAnyNumberOfOperands,
        .fileOperands = 1,
        .asksHelper = false,
        .printsValue = false},
       runStrip,
       {{"tag", &StripOptions::tag, "NAME", "remove only the tags of this name"},
        {"attributes", &StripOptions::attributes, "NAME",
         "remove the attributes of tags, but for a link or source"},
        {"bodies", &StripOptions::bodies, "NAME", "remove the elements with all that is in them"},
        {"except", &StripOptions::except, "NAME", "keep nothing but the elements"},
        {"objects", &StripOptions::objects, nullptr, "put the text of images, films ... in their place"}}},
      {{.name = "tags",
        .operands = "FILE",
        .summary = "what the markup scanner finds",
        .description = R"(
Prints an array of what the scanner meets: "kind" (1 tag, 2 comment, 3 marked section), "name"
(null when there is none), "tag" and "text" (the tag, and the text in front of it: location and
length in UTF-16 units). The last entry stands for the end, with kind 0, and has the text behind the
last tag; of an empty file there is none. FILE "-" is standard input.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .asksHelper = false},
       runTags},
  };
  return commands;
}

}  // namespace nimbo
