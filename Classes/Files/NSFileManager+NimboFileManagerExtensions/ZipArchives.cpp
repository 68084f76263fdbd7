// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ZipArchives.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSTask.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

constexpr std::string_view kNoPath = "no file is named";
constexpr char kDitto[] = "/usr/bin/ditto", kOwnProgram[] = "quiverleaf-archive";

bool fail(NSError *error, ErrorCode code, std::string_view reason) {
  setError(error, code, reason);
  return false;
}

/// Runs a program that says nothing when all is well; what else it says is the reason of its failure.
bool runTask(NSTask task, NSError *error) {
  task.standardOutput = NSTask::Output::collected;
  const auto result = task.run(error);
  if (!result || result->terminationStatus == 0) return result.has_value();
  std::istringstream said(std::string(result->standardError.view()).append(result->standardOutput.view()));
  std::string reason = task.launchPath.UTF8String() + ":";
  for (std::string word; said >> word;) reason.append(1, ' ').append(word);
  return fail(error, ErrorCode::other, reason);
}

/// This process's environment without what zip would take for more options.
std::vector<std::pair<NSString, NSString>> environmentOfZip() {
  std::vector<std::pair<NSString, NSString>> variables;
  for (char **entry = environ; *entry; ++entry) {
    const std::string_view text = *entry;
    const std::size_t equals = text.find('=');
    const std::string_view name = text.substr(0, equals);
    if (equals == text.npos || name == "ZIPOPT" || name == "ZIP") continue;
    variables.emplace_back(NSString::stringWithFileSystemRepresentation(std::string(name)),
                           NSString::stringWithFileSystemRepresentation(std::string(text.substr(equals + 1))));
  }
  return variables;
}

/// The path from the root, also of what is not there.
NSString absolutePath(const NSString &path) {
  std::error_code error;
  const auto name = path.fileSystemRepresentation();
  const auto absolute = name ? std::filesystem::absolute(*name, error) : std::filesystem::path();
  return absolute.empty() ? NSString() : NSString::stringWithFileSystemRepresentation(absolute.native());
}

/// The name as an argument that is no option, and not "@", which stands for names from standard input.
NSString nameArgument(const NSString &name) {
  if (!name.view().starts_with(u'-') && name.view() != u"@") return name;
  return NSString::stringWithCharacters(std::u16string(u"./").append(name.view()));
}

/// The path under which the program writes an archive: it appends an extension to one without any.
NSString zipPath(const NSString &path) {
  const bool hasExtension =
      path.view().substr(path.view().rfind(u'/') + 1).find(u'.') != std::u16string_view::npos;
  return hasExtension ? path : stringByAppendingPathExtension(path, u"zip"_ns);
}

bool removeFile(const NSString &path, NSError *error) {
  if (::unlink(path.fileSystemRepresentation().value_or("").c_str()) == 0 || errno == ENOENT) return true;
  if (error) *error = NSError::errorWithFileWritingErrno(errno);
  return false;
}

}  // namespace

bool compressFileAtPath(const NSString &path, const NSString &toPath, Flag keepParent, NSError *error) {
  const NSString source = absolutePath(path), destination = absolutePath(toPath);
  if (!source || !destination) return fail(error, ErrorCode::other, kNoPath);
  if (!NSFileManager::fileExistsAtPath(source))
    return fail(error, ErrorCode::noSuchFile, "there is no such file");
  const std::string program = isProgram(kDitto) ? kDitto : installedProgram(kOwnProgram);
  NSTask task{.launchPath = NSString::stringWithFileSystemRepresentation(program),
              .arguments = {u"-c"_ns, u"-k"_ns, u"--sequesterRsrc"_ns}};
  if (keepParent) task.arguments.push_back(u"--keepParent"_ns);
  task.arguments.insert(task.arguments.end(), {source, destination});
  return runTask(std::move(task), error);
}

bool compressFiles(std::span<const NSString> files, const NSString &inDirectory, const NSString &toPath,
                   Flag append, NSError *error) {
  const NSString archive = zipPath(absolutePath(toPath));
  const auto isNoName = [](const NSString &name) { return !name.fileSystemRepresentation(); };
  if (files.empty() || !archive || std::ranges::any_of(files, isNoName))
    return fail(error, ErrorCode::other, kNoPath);
  bool isDirectory = false;
  if (!NSFileManager::fileExistsAtPath(inDirectory, &isDirectory) || !isDirectory)
    return fail(error, ErrorCode::noSuchFile, "there is no such folder");
  if (!append && !removeFile(archive, error)) return false;
  NSTask task{.launchPath = u"/usr/bin/zip"_ns,
              .arguments = {u"-r"_ns, u"-q"_ns, archive},
              .environment = environmentOfZip(),
              .currentDirectoryPath = inDirectory};
  std::ranges::transform(files, std::back_inserter(task.arguments), nameArgument);
  return runTask(std::move(task), error);
}

bool compressFiles(std::initializer_list<NSString> files, const NSString &inDirectory, const NSString &toPath,
                   Flag append, NSError *error) {
  return compressFiles(std::span(files.begin(), files.size()), inDirectory, toPath, append, error);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
