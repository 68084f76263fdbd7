// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ContentTypes.hpp"

#include <fcntl.h>
#include <gio/gio.h>
#include <magic.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <initializer_list>
#include <memory>
#include <string>

#include "platform/CoreServices/ContainerMIMEType.hpp"
#include "platform/CoreServices/ContentTypeTable.hpp"
#include "platform/CoreServices/MarkupProlog.hpp"
#include "platform/CoreServices/RandomAccessFile.hpp"
#include "platform/CoreServices/Signatures.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kAnyData = "public.data";

struct Parent {
  const char *type;
  std::string_view contentType;
};

/// What a type without an identifier of its own is when it derives from one of these.
constexpr Parent kParents[] = {
    {"text/html", "public.html"},
    {"application/xml", "public.xml"},
    {"application/json", "public.json"},
};

/// What it is, at last, by the first part of its name.
constexpr Parent kFamilies[] = {
    {"image/", "public.image"}, {"audio/", "public.audio"},      {"video/", "public.movie"},
    {"font/", "public.font"},   {"model/", "public.3d-content"}, {"text/", "public.text"},
};

/// What GIO and libmagic answer when they do not know, and what GIO makes of endings that say nothing of the
/// content: unfinished and spare copies, and a number, which it takes for a section of the manual.
constexpr std::string_view kTypesThatSayNothing[] = {
    "",
    "application/octet-stream",
    "application/x-zerosize",
    "inode/x-empty",
    "application/x-partial-download",
    "application/x-trash",
    "application/x-troff-man",
};

bool saysNothing(std::string_view type) {
  return std::ranges::find(kTypesThatSayNothing, type) != std::end(kTypesThatSayNothing);
}

/// What GIO takes many files for that are something more special, or something else.
constexpr std::string_view kBroadTypes[] = {
    "text/plain",    "application/zip", "application/x-ole-storage", "image/heif",
    "text/x-matlab",  // Anything that begins with "%".
};

bool isBroad(std::string_view type) {
  return saysNothing(type) || std::ranges::find(kBroadTypes, type) != std::end(kBroadTypes);
}

/// The identifier for a MIME type, through the types that it derives from if need be; empty when there is none.
std::string_view contentTypeForMIMEType(const std::string &type) {
  if (saysNothing(type)) return std::string_view();
  if (const std::string_view own = contentTypeForKey(type); !own.empty()) return own;
  for (const Parent &parent : kParents)
    if (g_content_type_is_a(type.c_str(), parent.type)) return parent.contentType;
  if (g_content_type_is_a(type.c_str(), "text/plain"))
    return type.starts_with("text/x-") ? "public.source-code" : "public.plain-text";
  for (const Parent &family : kFamilies)
    if (type.starts_with(family.type)) return family.contentType;
  return std::string_view();
}

/// GIO's guess; `name` or `head` may be absent. `*uncertain` gets whether several types fit.
std::string guessType(const char *name, const std::string *head, bool *uncertain = nullptr) {
  gboolean isUncertain = FALSE;
  const auto *bytes = head ? reinterpret_cast<const guchar *>(head->data()) : nullptr;
  const std::unique_ptr<char, decltype(&g_free)> type(
      g_content_type_guess(name, bytes, head ? head->size() : 0, &isUncertain), &g_free);
  if (uncertain) *uncertain = isUncertain;
  return type.get();
}

/// libmagic's guess; empty when it cannot tell or its database cannot be loaded.
std::string magicType(const std::string &head) {
  struct Close {
    void operator()(magic_set *set) const { magic_close(set); }
  };
  // Not compound files: it takes the type of a document that is embedded in them for theirs.
  static const std::unique_ptr<magic_set, Close> database = [] {
    std::unique_ptr<magic_set, Close> set(
        magic_open(MAGIC_MIME_TYPE | MAGIC_NO_CHECK_COMPRESS | MAGIC_NO_CHECK_CDF));
    if (set && magic_load(set.get(), nullptr) != 0) set.reset();
    return set;
  }();
  const char *type = database ? magic_buffer(database.get(), head.data(), head.size()) : nullptr;
  return type ? type : std::string();
}

/// GIO's guess at the content. It looks for "<svg" alone, which also stands inside of pages.
std::string typeOfContent(const std::string &head) {
  std::string type = guessType(nullptr, &head);
  if (type != "image/svg+xml") return type;
  const auto element = firstElementOfMarkup(head);
  if (!element || *element == "svg") return type;
  if (element->empty()) return "text/plain";
  return head.find("<?xml") < head.find("<svg") ? "application/xml" : "text/html";
}

/// GIO's guess at markup once nothing hides its first element; empty when nothing does, or it knows no more
/// then.
std::string typeOfHiddenMarkup(const std::string &head) {
  const std::string markup = unhiddenMarkup(head);
  std::string type = markup.empty() ? std::string() : typeOfContent(markup);
  return isBroad(type) ? std::string() : type;
}

/// The row of the table for the extension of a file's name, or of a folder's.
std::string_view contentTypeForExtension(std::string_view name, bool isFolder) {
  const std::size_t stop = name.rfind('.');
  if (stop == std::string_view::npos || stop == 0) return std::string_view();
  return contentTypeForKey(std::string(name.substr(stop)) + (isFolder ? "/" : ""));
}

/// A regular file, opened; else nothing, as also when it cannot be opened.
struct OpenedFile {
  explicit OpenedFile(const std::string &path)
      // O_NONBLOCK: what is a FIFO by now must not be waited for.
      : descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
    struct stat info = {};
    if (descriptor && ::fstat(descriptor.get(), &info) == 0 && S_ISREG(info.st_mode))
      content = {descriptor.get(), static_cast<std::uint64_t>(info.st_size)};
  }

  FileDescriptor descriptor;
  RandomAccessFile content;
};

std::string_view contentTypeForContent(const RandomAccessFile &file, const char *ambiguousName) {
  const std::string head = file.read(0, kContentTypeHeadBytes);
  if (head.empty()) return std::string_view();
  if (ambiguousName) return contentTypeForMIMEType(guessType(ambiguousName, &head));

  // Before the markup in it is taken for its own.
  if (head.starts_with("bplist"))
    return head.find("WebMainResource") == head.npos ? contentTypeForKey("application/x-bplist")
                                                     : contentTypeForKey(".webarchive");
  std::string type = containerMIMEType(file);
  if (type.empty()) type = typeOfHiddenMarkup(head);
  if (type.empty()) type = typeOfContent(head);
  const std::string_view contentType = contentTypeForMIMEType(type);
  if (!isBroad(type) && !contentType.empty()) return contentType;
  if (beginsLikePDF(head)) return contentTypeForKey("application/pdf");
  if (beginsLikeMail(head)) return contentTypeForKey("message/rfc822");
  if (type == "text/plain" && beginsLikeProse(head)) return contentType;
  // GIO's broad answer stands unless libmagic knows something that has a name of its own.
  const std::string_view special = contentTypeForKey(magicType(head));
  return special.empty() ? contentType : special;
}

}  // namespace

bool beginsLikeNoText(std::string_view head) {
  return std::ranges::any_of(std::initializer_list<std::string_view>{"%PDF-", "PK\3\4", "\x1f\x8b"},
                             [&](std::string_view start) { return head.starts_with(start); });
}

bool beginsLikePDF(std::string_view head) {
  constexpr std::size_t kHeaderBytes = 1024;
  return head.substr(0, kHeaderBytes).find("%PDF-") != std::string_view::npos;
}

NSString LSCopyItemContentType(const NSString &path, NSError *error) {
  const auto bytes = path.fileSystemRepresentation();
  struct stat info = {};
  if (!bytes || ::stat(bytes->c_str(), &info) != 0) {
    if (error) *error = NSError::errorWithFileErrno(bytes ? errno : ENOENT);
    return NSString();
  }
  std::string name = *bytes;
  while (name.size() > 1 && name.ends_with('/')) name.pop_back();
  name.erase(0, name.rfind('/') + 1);

  const auto answer = [](std::string_view contentType) { return NSString::stringWithUTF8String(contentType); };
  const bool isFolder = S_ISDIR(info.st_mode);
  if (!isFolder && !S_ISREG(info.st_mode)) return answer("public.item");
  std::string_view byName = contentTypeForExtension(name, isFolder);
  if (isFolder) return answer(byName.empty() ? "public.folder" : byName);

  bool uncertain = false;
  const std::string type = guessType(name.c_str(), nullptr, &uncertain);
  uncertain = uncertain && byName.empty();
  if (byName.empty()) byName = contentTypeForMIMEType(type);
  const bool isText = type.starts_with("text/");
  if (!byName.empty() && !uncertain && !isText) return answer(byName);
  const OpenedFile file(*bytes);
  const bool isWrong = isText && beginsLikeNoText(file.content.read(0, kNoTextHeadBytes));
  if (!byName.empty() && !uncertain && !isWrong) return answer(byName);
  const std::string_view byContent =
      contentTypeForContent(file.content, byName.empty() || isWrong ? nullptr : name.c_str());
  return answer(!byContent.empty() ? byContent : !byName.empty() ? byName : kAnyData);
}

}  // namespace nimbo
