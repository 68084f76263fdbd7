// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSBundle.hpp"

#include <sys/stat.h>

#include <filesystem>

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {

NSBundle NSBundle::mainBundle() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return NSBundle(error ? NSString()
                        : NSString::stringWithFileSystemRepresentation(program.parent_path().native()));
}

NSDictionary NSBundle::infoDictionary() const {
  const NSString path = stringByAppendingPathComponent(path_, u"Contents/Info.plist"_ns);
  const auto name = path.fileSystemRepresentation();
  struct stat info = {};
  if (!name || ::stat(name->c_str(), &info) != 0 || info.st_size > kMaximumInfoBytes) return NSDictionary();
  return NSPropertyListSerialization::propertyListFromData(NSData::dataWithContentsOfFile(path)).dictionary();
}

id NSBundle::objectForInfoDictionaryKey(const NSString &key) const {
  return infoDictionary().objectForKey(key);
}

NSString NSBundle::executablePath() const {
  const NSString name = objectForInfoDictionaryKey(u"CFBundleExecutable"_ns).string();
  if (name.length() == 0 || name.view() == u"." || name.view() == u".." ||
      name.view().find(u'/') != std::u16string_view::npos)
    return NSString();
  return stringByAppendingPathComponent(stringByAppendingPathComponent(path_, u"Contents/Linux"_ns), name);
}

}  // namespace nimbo
