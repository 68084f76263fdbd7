// SPDX-License-Identifier: Apache-2.0
#include "tools/FileFacts.hpp"

#include <filesystem>

#include "platform/CoreServices/ContentTypes.hpp"

namespace nimbo {

NSDictionary factsOfFile(const std::string &file) {
  const auto string = [](const std::filesystem::path &path) {
    return NSString::stringWithFileSystemRepresentation(path.native());
  };
  NSDictionary facts = NSDictionary::dictionary();
  std::error_code error;
  if (const std::filesystem::path path = std::filesystem::absolute(file, error); !error) {
    facts.setObject(string(path), u"kMDItemPath"_ns);
    facts.setObject(string(path.has_filename() ? path.filename() : path.parent_path().filename()),
                    u"kMDItemFSName"_ns);
  }
  if (const NSString type = LSCopyItemContentType(string(file)))
    facts.setObject(type, u"kMDItemContentType"_ns);
  if (const std::uintmax_t size = std::filesystem::file_size(file, error); !error)
    facts.setObject(static_cast<std::int64_t>(size), u"kMDItemFSSize"_ns);
  return facts;
}

}  // namespace nimbo
