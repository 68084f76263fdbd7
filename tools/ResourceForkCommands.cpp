// SPDX-License-Identifier: Apache-2.0
#include "tools/ResourceForkCommands.hpp"

#include <charconv>
#include <optional>

#include "Classes/Files/ResourceFork.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

struct ForkOptions : CommonOptions {
  std::optional<TextPair> extract;
  std::optional<std::string> output;
};

/// The four characters of a type without the quotes around them.
NSString nameOfType(OSType type) {
  const NSString quoted = NSFileTypeForHFSTypeCode(type);
  return quoted.substringWithRange({1, quoted.length() - 2});
}

int listResources(const ResourceFork &fork, const ForkOptions &options) {
  NSArray list = NSArray::array();
  for (const Resource &resource : fork.resources()) {
    list.addObject(NSDictionary{{u"Type"_ns, nameOfType(resource.type)},
                                {u"ID"_ns, resource.ID},
                                {u"Name"_ns, resource.name},
                                {u"Size"_ns, resource.data.length()},
                                {u"Attributes"_ns, resource.attributes}});
  }
  writeResult(list, options);
  return kExitAnswered;
}

std::int16_t numberFromText(const std::string &text) {
  std::int16_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size())
    throw UsageError("'" + text + "' is no number of a resource, which is one from -32768 to 32767");
  return number;
}

OSType typeFromText(const std::string &text) {
  const OSType type = OSTypeFromString(NSString::stringWithLossyUTF8String(text));
  if (type == 0) throw UsageError("'" + text + "' is no type of a resource, which is four characters");
  return type;
}

int extractResource(const ResourceFork &fork, OSType type, std::int16_t ID, const std::string &file,
                    const std::string &output) {
  const NSData data = fork.dataForType(type, ID);
  if (!data) throw InputError(file, "the fork has no such resource");
  writeFile(data, output);
  return kExitAnswered;
}

int runFork(const ForkOptions &options, const Operands &operands) {
  const std::string &file = operands.front();
  if (file == "-") throw UsageError("fork needs a file with a name, not standard input");
  if (options.extract.has_value() != options.output.has_value())
    throw UsageError("--extract and --output go together");
  if (options.extract) refuseOptions(options, {"pretty", "plist"}, "--extract");
  const OSType type = options.extract ? typeFromText(options.extract->first) : 0;
  const std::int16_t ID = options.extract ? numberFromText(options.extract->second) : std::int16_t{0};
  const NSString path = NSString::stringWithFileSystemRepresentation(file);
  NSError error;
  const auto fork = ResourceFork::resourceForkForReadingAtPath(path, &error);
  // A file without a fork is there, and can be read.
  if (!fork && error.errorCode() == ErrorCode::noSuchFile && NSFileManager::fileExistsAtPath(path))
    throw InputError(file, error.localizedFailureReason.UTF8String());
  if (!fork) throw InputError(file, error);
  return options.extract ? extractResource(*fork, type, ID, file, *options.output)
                         : listResources(*fork, options);
}

}  // namespace

const std::vector<Command> &resourceForkCommands() {
  static const std::vector<Command> commands = {
      {{.name = "fork",
        .operands = "FILE",
        .summary = "what is in a file's resource fork",
        .description = R"(
Prints a JSON array of the resources: "Type", "ID", "Name" when there is one, "Size" in bytes and
"Attributes". The fork stands in an extended attribute, or beside the file in "._FILE". With --extract,
one resource is written to a file.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .asksHelper = false,
        .takesTime = false},
       runFork,
       {{"extract", &ForkOptions::extract, "TYPE ID", "write this resource to the output"},
        {"output", &ForkOptions::output, "FILE", "where to write it (-o)"}}},
  };
  return commands;
}

}  // namespace nimbo
