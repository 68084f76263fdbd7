// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/NSURLFileTypeMappings.hpp"

#include <gio/gio.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

using Text = std::unique_ptr<char, decltype(&g_free)>;
using Extensions = std::vector<NSString>;

/// The type in small letters, without parameters; empty when it is none, since it becomes a path.
std::string plainMIMEType(const NSString &MIMEType) {
  std::string type = MIMEType.UTF8String();
  type.erase(std::min(type.find(';'), type.size()));
  while (type.ends_with(' ')) type.pop_back();
  std::ranges::transform(type, type.begin(), toASCIILower<char>);
  const auto isAllowed = [](char c) {
    return isASCIIAlphanumeric(c) || std::string_view("!#$&^_.+-/").find(c) != std::string_view::npos;
  };
  const bool isType = std::ranges::all_of(type, isAllowed) && std::ranges::count(type, '/') == 1 &&
                      !type.starts_with('/') && !type.starts_with('.') && !type.ends_with('/') &&
                      type.find("/.") == std::string::npos;
  return isType ? type : std::string();
}

/// Adds the extension that a pattern of file names stands for, if it does for one and nothing else.
void addExtension(Extensions &extensions, std::string_view pattern) {
  if (!pattern.starts_with("*.")) return;
  pattern.remove_prefix(2);
  if (pattern.empty() || pattern.find_first_of(".*?[") != std::string_view::npos) return;
  if (const NSString extension = NSString::stringWithUTF8String(pattern)) extensions.push_back(extension);
}

/// What is read of a description, in which globs follow the type that they belong to.
struct DescribedType {
  const char *type;
  bool isInType = false;
  Extensions extensions = {};

  void startElement(std::string_view element, const gchar **names, const gchar **values) {
    for (; *names; ++names, ++values) {
      if (element == "mime-type" && std::string_view(*names) == "type")
        isInType = std::string_view(*values) == type;
      if (element == "glob" && isInType && std::string_view(*names) == "pattern")
        addExtension(extensions, *values);
    }
  }
};

/// The extensions in the database's description of a type.
Extensions describedExtensions(const char *type, std::string_view description) {
  const auto startElement = [](GMarkupParseContext *, const gchar *element, const gchar **names,
                               const gchar **values, gpointer described, GError **) {
    static_cast<DescribedType *>(described)->startElement(element, names, values);
  };
  const GMarkupParser parser = {.start_element = startElement,
                                .end_element = nullptr,
                                .text = nullptr,
                                .passthrough = nullptr,
                                .error = nullptr};
  DescribedType described = {type};
  const std::unique_ptr<GMarkupParseContext, decltype(&g_markup_parse_context_free)> context(
      g_markup_parse_context_new(&parser, GMarkupParseFlags(), &described, nullptr),
      &g_markup_parse_context_free);
  // What precedes a fault counts.
  g_markup_parse_context_parse(context.get(), description.data(), static_cast<gssize>(description.size()),
                               nullptr);
  return described.extensions;
}

/// Where the database is, the folders that count most first. GIO would tell, and lose what it knows by then.
std::vector<std::string> databaseFolders() {
  std::vector<std::string> folders = {std::string(g_get_user_data_dir()) + "/mime"};
  for (const gchar *const *data = g_get_system_data_dirs(); *data; ++data)
    folders.push_back(std::string(*data) + "/mime");
  return folders;
}

}  // namespace

const NSURLFileTypeMappings &NSURLFileTypeMappings::sharedMappings() {
  static const NSURLFileTypeMappings mappings;
  return mappings;
}

NSString NSURLFileTypeMappings::MIMETypeForExtension(const NSString &extension) const {
  const auto bytes = extension.fileSystemRepresentation();
  if (!bytes || bytes->find('/') != std::string::npos) return NSString();
  const Text type(g_content_type_guess(("file." + *bytes).c_str(), nullptr, 0, nullptr), &g_free);
  if (g_content_type_is_unknown(type.get())) return NSString();
  const Text MIMEType(g_content_type_get_mime_type(type.get()), &g_free);
  return MIMEType ? NSString::stringWithUTF8String(MIMEType.get()) : NSString();
}

Extensions NSURLFileTypeMappings::extensionsForMIMEType(const NSString &MIMEType) const {
  const std::string plainType = plainMIMEType(MIMEType);
  if (plainType.empty()) return {};
  const Text type(g_content_type_from_mime_type(plainType.c_str()), &g_free);
  for (const std::string &folder : databaseFolders()) {
    const NSData description = NSData::dataWithContentsOfFile(
        NSString::stringWithFileSystemRepresentation(folder + "/" + type.get() + ".xml"));
    if (description.length() == 0) continue;
    if (Extensions extensions = describedExtensions(type.get(), description.view()); !extensions.empty())
      return extensions;
  }
  return {};
}

NSString NSURLFileTypeMappings::preferredExtensionForMIMEType(const NSString &MIMEType) const {
  const Extensions extensions = extensionsForMIMEType(MIMEType);
  return extensions.empty() ? NSString() : extensions.front();
}

}  // namespace nimbo
