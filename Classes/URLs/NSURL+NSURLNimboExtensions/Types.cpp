// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Types.hpp"

#include <algorithm>
#include <span>
#include <string_view>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Collections/NSArray+NSStringExtensions.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

using Entry = std::u16string_view;
using Entries = std::span<const Entry>;

constexpr Entry kImages[] = {u"jpeg", u"jpe", u"jpg", u"jfif", u"ief", u"gif", u"png", u"bmp",
                             u"tiff", u"tif", u"ras", u"cmx",  u"ico", u"pnm", u"pbm", u"pgm",
                             u"ppm",  u"rgb", u"xbm", u"xwd",  u"cod", u"mjpg"};
constexpr Entry kMarkup[] = {u"sgm",      u"sgml",  u"dtd",        u"xml",  u"xsl",   u"xslt",
                             u"xbl",      u"ent",   u"wml",        u"opml", u"plist", u"sdef",
                             u"ooutline", u"idata", u"xmloutline", u"rss",  u"rdf",   u"rsd"};
constexpr Entry kRichText[] = {u"rtf", u"rtfd"};
constexpr Entry kExecutables[] = {u"class", u"exe"};

constexpr Entry kSheetsAndSlides[] = {u"xls", u"xlsx", u"xla", u"xlc", u"xlm", u"xlt",
                                      u"xlw", u"pps",  u"pot", u"ppt", u"pptx"};
constexpr Entry kMSWord[] = {u"word", u"doc", u"docm", u"docx", u"dot", u"dotm", u"dotx"};
constexpr Entry kOpenOffice[] = {u"odt", u"ott"};
constexpr Entry kStarOffice[] = {u"stw", u"sxw"};
constexpr Entry kPDF[] = {u"pdf"};
constexpr Entry kPostScript[] = {u"postscript", u"ps", u"eps", u"ai"};
constexpr Entry kData[] = {u"dat"};

// Each of the lists below holds the entries of one length, so that a test looks at one of them.

constexpr Entry kArchives2[] = {u"gz", u"bz", u"7z"};
constexpr Entry kArchives3[] = {u"tgz", u"tar", u"bz2", u"bin", u"hqx", u"sit", u"zip", u"jar",
                                u"dmg", u"smi", u"img", u"lha", u"lzh", u"iso", u"rar", u"arj"};
constexpr Entry kArchives4[] = {u"sitx", u"gzip", u"bzip"};
constexpr Entry kArchives5[] = {u"bzip5"};
constexpr Entry kArchives7[] = {u"torrent"};
constexpr Entry kArchives11[] = {u"sparseimage"};

constexpr Entry kMedia2[] = {u"ra", u"rm", u"qt", u"au", u"dv"};
constexpr Entry kMedia3[] = {
    u"avi", u"vfw", u"swf", u"swa", u"viv", u"ram", u"wmv", u"wma", u"asf", u"asx", u"wvx", u"mov", u"mqv",
    u"mpe", u"mpm", u"mpa", u"mpv", u"m1v", u"m1a", u"m1s", u"m15", u"m2v", u"m2a", u"m3u", u"m75", u"mpg",
    u"mp2", u"mp3", u"m3u", u"m4a", u"m4b", u"m4v", u"mp4", u"m4p", u"aif", u"wav", u"snd", u"mid", u"rmi",
    u"3gp", u"3g2", u"flc", u"bwf", u"pls", u"cel", u"gsm", u"dvd", u"qht", u"amr", u"aac", u"sdp", u"atr",
    u"dif", u"sdv", u"sd2", u"smf", u"smi", u"caf", u"kar", u"amc", u"sml", u"qtz", u"flv"};
constexpr Entry kMedia4[] = {u"moov", u"mpeg", u"mpv2", u"mpga", u"divx", u"aiff", u"aifc", u"midi", u"3gpp",
                             u"3gp2", u"qtpf", u"adts", u"skin", u"smil", u"rtsp", u"cdda", u"qhtm", u"rmvb"};
constexpr Entry kMedia5[] = {u"movie"};

constexpr Entry kAudio2[] = {u"ra", u"au"};
constexpr Entry kAudio3[] = {u"ram", u"wma", u"mp3", u"m3u", u"m4a", u"mpa", u"m4p",
                             u"aif", u"m2a", u"wav", u"snd", u"mid", u"rmi"};
constexpr Entry kAudio4[] = {u"aifc", u"aiff", u"mpga", u"midi"};
constexpr Entry kVideo2[] = {u"rm", u"qt"};
constexpr Entry kVideo3[] = {u"mp2", u"mpe", u"wmv", u"asf", u"asx", u"mov", u"avi", u"mpe",
                             u"m1v", u"mp4", u"m2v", u"mpg", u"3g2", u"flc", u"wvx", u"flv"};
constexpr Entry kVideo4[] = {u"mpeg", u"divx", u"moov", u"mpv2", u"rmvb"};
constexpr Entry kVideo5[] = {u"movie"};
constexpr Entry kEmbedded3[] = {u"swf", u"viv"};

using List = std::vector<NSString>;

void append(List &list, Entries entries) {
  for (const Entry entry : entries) list.push_back(NSString::stringWithCharacters(entry));
}

void append(List &list, const List &entries) {
  list.insert(list.end(), entries.begin(), entries.end());
}

List listOf(std::initializer_list<Entries> parts) {
  List list;
  for (const Entries entries : parts) append(list, entries);
  return list;
}

bool containsNoCase(Entries entries, const NSString &extension) {
  return std::ranges::any_of(entries, [&](Entry entry) {
    return fastCaseInsensitiveCompareUnichars(extension.characters(), extension.length(), entry.data(),
                                              static_cast<std::uint32_t>(entry.size())) == 0;
  });
}

Entries audioOfLength(std::uint32_t length) {
  switch (length) {
    case 2:
      return kAudio2;
    case 3:
      return kAudio3;
    case 4:
      return kAudio4;
    default:
      return {};
  }
}

Entries videoOfLength(std::uint32_t length) {
  switch (length) {
    case 2:
      return kVideo2;
    case 3:
      return kVideo3;
    case 4:
      return kVideo4;
    case 5:
      return kVideo5;
    default:
      return {};
  }
}

}  // namespace

const List &imageTypes() {
  static const List list = listOf({kImages});
  return list;
}

const List &markupTypes() {
  static const List list = listOf({kMarkup});
  return list;
}

const List &executableTypes() {
  static const List list = listOf({kExecutables});
  return list;
}

const List &officeTypes() {
  static const List list = officeTypesIncludingMSWord(true, true, true, true, true);
  return list;
}

const List &binaryFileTypes() {
  static const List list = binaryFileTypesIncludingRichText(true, true, true, true, true, true);
  return list;
}

List richTextTypes() {
  return listOf({kRichText});
}

List archiveTypes() {
  return listOf({kArchives2, kArchives3, kArchives4, kArchives5, kArchives7, kArchives11});
}

List multimediaTypes() {
  return listOf({kMedia2, kMedia3, kMedia4, kMedia5});
}

List officeTypesIncludingMSWord(bool MSWord, bool OpenOffice, bool StarOffice, bool PDF, bool PostScript) {
  List list = listOf({kSheetsAndSlides});
  if (MSWord) append(list, kMSWord);
  if (OpenOffice) append(list, kOpenOffice);
  if (StarOffice) append(list, kStarOffice);
  if (PDF) append(list, kPDF);
  if (PostScript) append(list, kPostScript);
  return list;
}

List binaryFileTypesIncludingRichText(bool richText, bool MSWord, bool OpenOffice, bool StarOffice, bool PDF,
                                      bool PostScript) {
  List list = imageTypes();
  append(list, multimediaTypes());
  append(list, archiveTypes());
  append(list, executableTypes());
  append(list, officeTypesIncludingMSWord(MSWord, OpenOffice, StarOffice, PDF, PostScript));
  if (richText) append(list, richTextTypes());
  append(list, kData);
  return list;
}

bool isImageType(const NSString &extension) {
  return containsStringNoCase(imageTypes(), extension);
}

bool isMarkupType(const NSString &extension) {
  return containsStringNoCase(markupTypes(), extension);
}

bool isRichTextType(const NSString &extension) {
  return containsStringNoCase(richTextTypes(), extension);
}

bool isExecutableType(const NSString &extension) {
  return containsStringNoCase(executableTypes(), extension);
}

bool isArchiveType(const NSString &extension) {
  switch (extension.length()) {
    case 2:
      return containsNoCase(kArchives2, extension);
    case 3:
      return containsNoCase(kArchives3, extension);
    case 4:
      return containsNoCase(kArchives4, extension);
    case 5:
      return containsNoCase(kArchives5, extension);
    case 7:
      return containsNoCase(kArchives7, extension);
    case 11:
      return containsNoCase(kArchives11, extension);
    default:
      return false;
  }
}

bool isMultimediaType(const NSString &extension) {
  switch (extension.length()) {
    case 2:
      return containsNoCase(kMedia2, extension);
    case 3:
      return containsNoCase(kMedia3, extension);
    case 4:
      return containsNoCase(kMedia4, extension);
    case 5:
      return containsNoCase(kMedia5, extension);
    default:
      return false;
  }
}

bool isOfficeType(const NSString &extension) {
  return containsStringNoCase(officeTypes(), extension);
}

bool isBinaryFileType(const NSString &extension) {
  return containsStringNoCase(binaryFileTypes(), extension);
}

bool isOfficeTypeIncludingMSWord(const NSString &extension, bool MSWord, bool OpenOffice, bool StarOffice,
                                 bool PDF, bool PostScript) {
  return containsStringNoCase(officeTypesIncludingMSWord(MSWord, OpenOffice, StarOffice, PDF, PostScript),
                              extension);
}

bool isBinaryFileTypeIncludingRichText(const NSString &extension, bool richText, bool MSWord, bool OpenOffice,
                                       bool StarOffice, bool PDF, bool PostScript) {
  return containsStringNoCase(
      binaryFileTypesIncludingRichText(richText, MSWord, OpenOffice, StarOffice, PDF, PostScript), extension);
}

bool isMultimediaType(const NSString &extension, bool audio, bool video, bool embedded) {
  constexpr std::uint32_t kLongest = 5;
  const std::uint32_t length = extension.length();
  if (length > kLongest) return false;
  unichar units[kLongest];
  std::ranges::transform(extension.view(), units, toLower);
  const Entry small(units, length);
  const auto contains = [&](Entries entries) { return std::ranges::find(entries, small) != entries.end(); };
  return (audio && contains(audioOfLength(length))) || (video && contains(videoOfLength(length))) ||
         (embedded && length == 3 && contains(kEmbedded3));
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
