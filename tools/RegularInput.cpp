// SPDX-License-Identifier: Apache-2.0
#include "tools/RegularInput.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "tools/InputFile.hpp"

namespace nimbo {

namespace {

/// Containers and families, which name a format less well than most extensions do.
bool isBroadType(const NSString &type) {
  static const NSString broad[] = {u"public.data"_ns,        u"public.item"_ns,       u"public.folder"_ns,
                                   u"public.text"_ns,        u"public.plain-text"_ns, u"public.xml"_ns,
                                   u"public.zip-archive"_ns, u"public.archive"_ns};
  return std::ranges::find(broad, type) != std::end(broad);
}

/// Whether a file begins as texts do, and not as a format that is written as text, but is nothing to read.
bool beginsAsText(const std::string &path) {
  constexpr std::string_view kFormats[] = {"%PDF-", "{\\rtf", "%!PS"};
  // With the ends of lines and pages, the escape of some encodings, and the end of files of DOS.
  constexpr std::string_view kControlsOfText = "\b\t\n\v\f\r\x1a\x1b";
  constexpr std::size_t kHeadBytes = 4096;
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  char head[kHeadBytes];
  const ssize_t count = file ? ::read(file.get(), head, sizeof head) : 0;
  std::string_view bytes(head, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  // A text may be filled up with zeros at its end.
  if (bytes.size() < kHeadBytes) bytes = bytes.substr(0, bytes.find_last_not_of('\0') + 1);
  const auto isOfText = [&](char c) {
    return static_cast<unsigned char>(c) >= ' ' || kControlsOfText.find(c) != kControlsOfText.npos;
  };
  return std::ranges::all_of(bytes, isOfText) &&
         std::ranges::none_of(kFormats, [&](std::string_view start) { return bytes.starts_with(start); });
}

}  // namespace

bool isPageType(const NSString &type) {
  return type == u"public.html"_ns || type == u"public.xhtml"_ns;
}

bool isReadHere(const NSString &type) {
  return isPageType(type) || type == u"public.plain-text"_ns;
}

std::optional<RegularInput> RegularInput::ofStandardInput(const std::string &operand, double patienceSeconds) {
  if (operand != "-") return std::nullopt;
  return std::optional<RegularInput>(std::in_place, operand, patienceSeconds);
}

RegularInput::RegularInput(const std::string &operand, double patienceSeconds)
    : name_(nameOfInput(operand)), path_(NSString::stringWithFileSystemRepresentation(operand)) {
  if (operand != "-" && typeOfPath(path_) != u"public.item"_ns) return;
  const NSData data = readInput(operand, patienceSeconds);
  NSError error;
  folder_ = PrivateFolder::make(&error);
  if (!folder_) throw InputError(name_, error);
  path_ = folder_->pathOf("input");
  if (!writeDataToFile(data, path_, false)) throw InputError(name_, "there is no room for temporary files");
}

std::vector<TypedPath> RegularInput::readings() {
  const TypedPath byName{path_, typeOfPath(path_)};
  const auto file = path_.fileSystemRepresentation();
  const bool isText = beginsAsText(*file);
  if (isText && isReadHere(byName.type)) return {byName};
  if (!folder_) folder_ = PrivateFolder::make();
  if (!folder_) return {byName};
  // The helper, too, goes by names first, and a link may have one that says nothing.
  const NSString link = folder_->pathOf("link");
  const std::unique_ptr<char, decltype(&std::free)> target(::realpath(file->c_str(), nullptr), &std::free);
  if (!target || ::symlink(target.get(), link.fileSystemRepresentation()->c_str()) != 0) return {byName};
  const TypedPath byContent{link, typeOfPath(link)};
  if (isText && byName.type == u"public.data"_ns && byContent.type == byName.type)
    return {{path_, u"public.plain-text"_ns}};
  if (byContent.type == byName.type || byContent.type == u"public.folder"_ns) return {byName};
  if (isText) return {byName, byContent};
  if (isReadHere(byName.type))
    return {byContent.type == u"public.data"_ns || isReadHere(byContent.type) ? byName : byContent};
  return isBroadType(byContent.type) ? std::vector{byName} : std::vector{byContent, byName};
}

NSString RegularInput::typeOfPath(const NSString &path) const {
  NSError error;
  NSString type = LSCopyItemContentType(path, &error);
  if (!type) throw InputError(name_, error);
  return type;
}

}  // namespace nimbo
