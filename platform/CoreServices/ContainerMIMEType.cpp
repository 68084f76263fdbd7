// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ContainerMIMEType.hpp"

#include <algorithm>

#include "platform/CoreServices/CompoundFileDirectory.hpp"
#include "platform/CoreServices/IWorkArchive.hpp"
#include "platform/CoreServices/ZipDirectory.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

struct ZipKind {
  std::string_view entry;
  std::string_view type;
};

/// The first entry that is there decides.
constexpr ZipKind kZipKinds[] = {
    {"word/document.xml", "application/vnd.openxmlformats-officedocument.wordprocessingml.document"},
    {"word/document2.xml", "application/vnd.openxmlformats-officedocument.wordprocessingml.document"},
    {"xl/workbook.xml", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
    {"xl/workbook.bin", "application/vnd.ms-excel.sheet.binary.macroEnabled.12"},
    {"ppt/presentation.xml", "application/vnd.openxmlformats-officedocument.presentationml.presentation"},
    {"visio/document.xml", "application/vnd.ms-visio.drawing.main+xml"},
    {"FixedDocSeq.fdseq", "application/vnd.ms-xpsdocument"},
    {"FixedDocumentSequence.fdseq", "application/vnd.ms-xpsdocument"},
    {"META-INF/container.xml", "application/epub+zip"},
    {"AndroidManifest.xml", "application/vnd.android.package-archive"},
    {"META-INF/MANIFEST.MF", "application/java-archive"},
    {"doc.kml", "application/vnd.google-earth.kmz"},
};

/// The documents of the same kinds when they bring macros along.
constexpr ZipKind kZipKindsWithMacros[] = {
    {"word/vbaProject.bin", "application/vnd.ms-word.document.macroEnabled.12"},
    {"xl/vbaProject.bin", "application/vnd.ms-excel.sheet.macroEnabled.12"},
    {"ppt/vbaProject.bin", "application/vnd.ms-powerpoint.presentation.macroEnabled.12"},
};

struct CompoundKind {
  std::u16string_view entry;
  std::string_view type;
};

/// The name in lower case: names in a compound file differ in more than case.
constexpr CompoundKind kCompoundKinds[] = {
    {u"worddocument", "application/msword"},
    {u"workbook", "application/vnd.ms-excel"},
    {u"book", "application/vnd.ms-excel"},
    {u"powerpoint document", "application/vnd.ms-powerpoint"},
    {u"visiodocument", "application/vnd.visio"},
    {u"__properties_version1.0", "application/vnd.ms-outlook"},
    {u"quill", "application/vnd.ms-publisher"},
    {u"hwpsummaryinformation", "application/x-hwp"},
    {u"\5hwpsummaryinformation", "application/x-hwp"},
    {u"matost", "application/vnd.ms-works"},
};

/// An entry "mimetype" that is longer is none.
constexpr std::size_t kMaximumMIMETypeBytes = 256;

/// How much is read of a list of what is in a package.
constexpr std::size_t kMaximumManifestBytes = 64 << 10;

/// The type of the first kind of `kinds` whose entry `has` finds; empty when there is none.
template <class Kinds, class Has>
std::string_view firstKind(const Kinds &kinds, const Has &has) {
  for (const auto &kind : kinds)
    if (has(kind.entry)) return kind.type;
  return std::string_view();
}

/// What looks like a MIME type of a document, without white space behind it; else nothing.
std::string_view declaredType(std::string_view text) {
  while (text.ends_with('\n') || text.ends_with('\r') || text.ends_with(' ')) text.remove_suffix(1);
  const bool plain = std::ranges::all_of(text, [](char c) { return c > ' ' && c < 0x7f; });
  return plain && (text.starts_with("application/") || text.starts_with("image/")) ? text : std::string_view();
}

/// The type that the list of a package's entries gives for the package itself.
std::string_view typeInManifest(std::string_view manifest) {
  constexpr std::string_view kAttribute = "media-type=\"";
  const std::size_t whole = manifest.find("full-path=\"/\"");
  if (whole == std::string_view::npos) return std::string_view();
  const std::string_view before = manifest.substr(0, whole);
  std::string_view tag = manifest.substr(std::min(before.rfind('<'), before.size()));
  tag = tag.substr(0, tag.find('>'));
  const std::size_t value = tag.find(kAttribute);
  if (value == std::string_view::npos) return std::string_view();
  tag.remove_prefix(value + kAttribute.size());
  return declaredType(tag.substr(0, tag.find('"')));
}

std::string zipMIMEType(const RandomAccessFile &file, const ZipDirectory &zip) {
  const auto has = [&](std::string_view name) { return zip.entryNamed(name) != nullptr; };
  if (const auto *entry = zip.entryNamed("mimetype"); entry && entry->packedSize <= kMaximumMIMETypeBytes) {
    const std::string declared = readZipEntry(file, *entry, kMaximumMIMETypeBytes);
    if (const std::string_view type = declaredType(declared); !type.empty()) return std::string(type);
  }
  std::string_view type;
  if (has("[Content_Types].xml")) type = firstKind(kZipKindsWithMacros, has);
  if (type.empty()) type = firstKind(kZipKinds, has);
  if (type.empty()) type = iWorkMIMEType(file, zip);
  if (!type.empty()) return std::string(type);
  // Packages without an entry "mimetype" came before those with one.
  if (const auto *entry = zip.entryNamed("META-INF/manifest.xml")) {
    const std::string manifest = readZipEntry(file, *entry, kMaximumManifestBytes);
    if (type = typeInManifest(manifest); !type.empty()) return std::string(type);
  }
  return "application/zip";
}

}  // namespace

std::string containerMIMEType(const RandomAccessFile &file) {
  if (const auto zip = readZipDirectory(file)) return zipMIMEType(file, *zip);
  if (auto names = readCompoundFileRoot(file)) {
    for (std::u16string &name : *names) std::ranges::transform(name, name.begin(), toASCIILower<char16_t>);
    const std::string_view type = firstKind(kCompoundKinds, [&](std::u16string_view entry) {
      return std::ranges::find(*names, entry) != names->end();
    });
    return std::string(type.empty() ? "application/x-ole-storage" : type);
  }
  return std::string();
}

}  // namespace nimbo
