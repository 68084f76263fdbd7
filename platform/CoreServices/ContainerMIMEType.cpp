// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ContainerMIMEType.hpp"

#include <algorithm>

#include "platform/CoreServices/CompoundFileDirectory.hpp"
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

/// The type of the first kind of `kinds` whose entry is among `names`; empty when there is none.
template <class Kinds, class Names>
std::string_view firstKind(const Kinds &kinds, const Names &names) {
  for (const auto &kind : kinds)
    if (std::ranges::find(names, kind.entry) != std::ranges::end(names)) return kind.type;
  return std::string_view();
}

/// What an entry "mimetype" says, when it looks like a MIME type of a document.
std::string_view declaredType(std::string_view text) {
  while (text.ends_with('\n') || text.ends_with('\r') || text.ends_with(' ')) text.remove_suffix(1);
  const bool plain = std::ranges::all_of(text, [](char c) { return c > ' ' && c < 0x7f; });
  return plain && (text.starts_with("application/") || text.starts_with("image/")) ? text : std::string_view();
}

}  // namespace

std::string containerMIMEType(const RandomAccessFile &file) {
  if (const auto zip = readZipDirectory(file)) {
    std::string_view type = declaredType(zip->mimetype);
    const bool isPackage = std::ranges::find(zip->names, "[Content_Types].xml") != zip->names.end();
    if (type.empty() && isPackage) type = firstKind(kZipKindsWithMacros, zip->names);
    if (type.empty()) type = firstKind(kZipKinds, zip->names);
    return std::string(type.empty() ? "application/zip" : type);
  }
  if (auto names = readCompoundFileRoot(file)) {
    for (std::u16string &name : *names) std::ranges::transform(name, name.begin(), toASCIILower<char16_t>);
    const std::string_view type = firstKind(kCompoundKinds, *names);
    return std::string(type.empty() ? "application/x-ole-storage" : type);
  }
  return std::string();
}

}  // namespace nimbo
