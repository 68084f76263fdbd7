// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSBundle.hpp"

#include <dlfcn.h>
#include <glib.h>

#include <filesystem>
#include <string_view>

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {

namespace {

constexpr const char *kProgram = "/proc/self/exe";

NSBundle bundleAt(const std::filesystem::path &path) {
  return NSBundle(NSString::stringWithFileSystemRepresentation(path.native()));
}

}  // namespace

NSBundle NSBundle::mainBundle() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink(kProgram, error);
  return error ? NSBundle(NSString()) : bundleAt(program.parent_path());
}

NSBundle NSBundle::bundleForAddress(const void *address) {
  Dl_info found = {};
  if (::dladdr(address, &found) == 0 || !found.dli_fname) return mainBundle();
  std::error_code error;
  const std::filesystem::path file = std::filesystem::canonical(found.dli_fname, error);
  // The program's own name may be relative to a folder that is no longer the current one.
  if (error || std::filesystem::equivalent(file, kProgram, error)) return mainBundle();
  const std::filesystem::path folder = file.parent_path();
  const bool isInBundle = folder.filename() == "Linux" && folder.parent_path().filename() == "Contents";
  return bundleAt(isInBundle ? folder.parent_path().parent_path() : folder);
}

NSDictionary NSBundle::infoDictionary(NSError *error) const {
  return infoDictionaryOfFile(stringByAppendingPathComponent(path_, u"Contents/Info.plist"_ns), error);
}

NSDictionary NSBundle::infoDictionaryOfFile(const NSString &path, NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, error);
  if (!file) return NSDictionary();
  // One byte more than may be, by which a file is known that is too large or has grown.
  const NSData data = readData(file.get(), size, kMaximumInfoBytes + 1, error);
  if (!data) return NSDictionary();
  if (data.length() > kMaximumInfoBytes) {
    setError(error, ErrorCode::tooLarge, "the information file is too large");
    return NSDictionary();
  }
  const id list = NSPropertyListSerialization::propertyListFromData(data, nullptr, error);
  if (list && !list.dictionary()) setError(error, ErrorCode::damaged, "the information file is no dictionary");
  return list.dictionary();
}

id NSBundle::objectForInfoDictionaryKey(const NSString &key) const {
  return infoDictionary().objectForKey(key);
}

NSString NSBundle::executablePath() const {
  const NSString name = executableName(infoDictionary());
  if (!name) return NSString();
  return stringByAppendingPathComponent(stringByAppendingPathComponent(path_, u"Contents/Linux"_ns), name);
}

NSString NSBundle::executableName(const NSDictionary &info) {
  NSString name = info.objectForKey(u"CFBundleExecutable"_ns).string();
  if (name.length() == 0 || name.view() == u"." || name.view() == u".." ||
      name.view().find(u'/') != std::u16string_view::npos)
    return NSString();
  return name;
}

std::vector<NSString> NSBundle::preferredLocalizations() const {
  std::vector<NSString> names;
  for (const char *const *name = g_get_language_names(); *name; ++name) {
    const std::string_view language = *name;
    const bool hasCharset = language.find('.') != language.npos;
    if (!hasCharset && language != "C" && language != "POSIX")
      names.push_back(NSString::stringWithLossyUTF8String(language));
  }
  return names;
}

}  // namespace nimbo
