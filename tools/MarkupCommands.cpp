// SPDX-License-Identifier: Apache-2.0
#include "tools/MarkupCommands.hpp"

#include <algorithm>
#include <string_view>

#include "Classes/Markup/TagScan.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/id.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

using Operands = std::vector<std::string>;

/// How much of a long list is gathered before it is written.
constexpr std::size_t kWrittenBytes = 64u << 10;

/// A call of the scanner; the name is null when the tag has none.
NSDictionary valueOfTag(const NSString &string, const ScannedTag &tag) {
  const id name =
      tag.nameLength == 0 ? id(NSNull()) : string.substringWithRange({tag.nameLocation, tag.nameLength});
  const std::uint32_t textLength = tag.tagLocation - std::min(tag.textLocation, tag.tagLocation);
  return {{u"kind"_ns, tag.kind},
          {u"name"_ns, name},
          {u"tag"_ns, NSArray{tag.tagLocation, tag.tagLength}},
          {u"text"_ns, NSArray{tag.textLocation, textLength}}};
}

int runTags(const CommandOptions &options, const Operands &operands) {
  const NSString string = textOfInput(operands.front());
  const auto forEachTag = [&string](auto handle) {
    if (string.length() == 0) return;
    scanTags(string.characters(), string.length(), [&](const ScannedTag &tag) {
      handle(valueOfTag(string, tag));
      return false;
    });
  };
  if (options.pretty || options.propertyList) {
    NSArray tags = NSArray::array();
    forEachTag([&](const NSDictionary &tag) { tags.addObject(tag); });
    writeResult(tags, options);
    return kExitAnswered;
  }
  // There may be millions: they are written as they come.
  std::string text = "[";
  std::string_view separator;
  forEachTag([&](const NSDictionary &tag) {
    text.append(separator) += JSONFromValue(tag, false);
    separator = ",";
    if (text.size() < kWrittenBytes) return;
    writeOutput(text);
    text.clear();
  });
  writeOutput(text + "]\n");
  return kExitAnswered;
}

std::string upperCaseName(const char *option, std::string name) {
  const auto isPrintable = [](char c) { return c > ' ' && c < '\x7f'; };
  if (name.empty() || !std::ranges::all_of(name, isPrintable))
    throw UsageError("'" + name + "' is no name of a tag for --" + option);
  std::ranges::transform(name, name.begin(), toASCIIUpper<char>);
  return name;
}

/// Names with the "<" that the library wants.
std::vector<NSString> startsOfTags(const std::vector<std::string> &names) {
  std::vector<NSString> starts;
  starts.reserve(names.size());
  for (const std::string &name : names)
    starts.push_back(NSString::stringWithLossyUTF8String(name.starts_with('<') ? name : "<" + name));
  return starts;
}

/// The names that an option was given, and those behind the file: "page.html --bodies div p".
std::vector<NSString> startsOfTags(std::vector<std::string> names, const Operands &operands) {
  names.insert(names.end(), operands.begin() + 1, operands.end());
  return startsOfTags(names);
}

int runStrip(const CommandOptions &options, const Operands &operands) {
  const std::string tag = options.tag ? upperCaseName("tag", *options.tag) : "";
  const std::string attributes = options.attributes ? upperCaseName("attributes", *options.attributes) : "";
  if (!tag.empty() + !attributes.empty() + !options.bodies.empty() + !options.except.empty() + options.objects >
      1)
    throw UsageError("--tag, --attributes, --bodies, --except and --objects cannot be joined");

  if (operands.size() > 1 && options.bodies.empty() && options.except.empty())
    throw UsageError("'" + operands[1] + "' is too much for strip");

  const NSString string = textOfInput(operands.front());
  NSString result;
  if (options.tag)
    result = stripTag(string, tag.c_str());
  else if (options.attributes)
    result = stripAttributesOfTag(string, attributes.c_str());
  else if (!options.bodies.empty())
    result = stripTagBodies(string, startsOfTags(options.bodies, operands));
  else if (!options.except.empty())
    result = stripTagBodiesExcept(string, startsOfTags(options.except, operands));
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
      {"strip",
       "FILE [NAME...]",
       "markup without its tags, or without some of it",
       "Prints the text of markup without its tags, entities as they are; with an option the markup without\n"
       "what the option names. FILE \"-\" is standard input. The options cannot be joined; --bodies and\n"
       "--except may be given more than once, or with several names behind FILE, which also stand for longer\n"
       "ones: \"h\" for \"h1\". A script or style that --bodies removes takes all behind it away, because it "
       "is\n"
       "one tag for the scanner, its end included.",
       {{"tag", &CommandOptions::tag, "NAME", "remove only the tags of this name"},
        {"attributes", &CommandOptions::attributes, "NAME",
         "remove the attributes of tags, but for a link or source"},
        {"bodies", &CommandOptions::bodies, "NAME", "remove the elements with all that is in them"},
        {"except", &CommandOptions::except, "NAME", "keep nothing but the elements"},
        {"objects", &CommandOptions::objects, nullptr, "put the text of images, films ... in their place"}},
       1,
       kAnyNumberOfOperands,
       runStrip},
      {"tags",
       "FILE",
       "what the markup scanner finds",
       "Prints an array of what the scanner meets: \"kind\" (1 tag, 2 comment, 3 marked section), \"name\"\n"
       "(null when there is none), \"tag\" and \"text\" (the tag, and the text in front of it: location and\n"
       "length in UTF-16 units). The last entry stands for the end, with kind 0, and has the text behind the\n"
       "last tag. FILE \"-\" is standard input.",
       {},
       1,
       1,
       runTags},
  };
  return commands;
}

}  // namespace nimbo
