// SPDX-License-Identifier: Apache-2.0
#include "tools/ContactSheet.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "Classes/URLs/NSURL+NSURLNimboExtensions/Types.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"
#include "tools/Pictures.hpp"

namespace nimbo {

namespace {

constexpr std::size_t kMaximumFiles = 1000;
constexpr double kSheetSeconds = 60;

/// The files that the operands name: themselves, and what is in folders, but hidden files and further folders.
std::vector<NSString> filesOfPaths(const Operands &paths) {
  std::vector<NSString> files;
  for (const std::string &name : paths) {
    const NSString path = NSString::stringWithFileSystemRepresentation(name);
    bool isFolder = false;
    if (!NSFileManager::fileExistsAtPath(path, &isFolder))
      throw InputError(name, NSError::errorWithCode(ErrorCode::noSuchFile, "there is no such file"));
    if (!isFolder) {
      files.push_back(path);
      continue;
    }
    auto names = NSFileManager::contentsOfDirectoryAtPath(path);
    if (!names)
      throw InputError(name, NSError::errorWithCode(ErrorCode::unreadable, "the folder cannot be read"));
    std::ranges::sort(*names, {}, [](const NSString &one) { return one.view(); });
    for (const NSString &entry : *names) {
      const NSString file = stringByAppendingPathComponent(path, entry);
      if (!entry.view().starts_with(u'.') && NSFileManager::fileExistsAtPath(file, &isFolder) && !isFolder)
        files.push_back(file);
    }
  }
  return files;
}

NSData imageOfFile(HelperClient &client, const NSString &path) {
  const auto answer = client.imageWithContentsOfFile(path, false, false);
  return answer.result.dictionary().objectForKey(u"Thumbnail"_ns).data();
}

/// A frame of a movie, or the cover of what has a duration and no frames; nil when there is neither.
NSData posterOfFile(HelperClient &client, const NSString &path, std::uint32_t side) {
  PictureOrder order{
      .what = "cover", .path = path, .side = side, .type = u"public.tiff"_ns, .seconds = kSheetSeconds};
  const NSDictionary movie = client.posterImageForMovieWithFile(path).result.dictionary();
  const NSData frame = movie.objectForKey(u"Thumbnail"_ns).data();
  if (!frame && !(movie.objectForKey(u"Duration"_ns).real().value_or(0) > 0)) return NSData();
  const std::string name = path.UTF8String();
  if (!frame) return makePicture(order, name);
  order.what = "picture";
  return makePicture(order, frame, name);
}

/// The picture of a file, as data of an image; nil when none can be made. What is a movie or a sound by its
/// name is not tried as an image first, for which it would be read as a whole.
NSData thumbnailOfFile(HelperClient &client, const NSString &path, std::uint32_t side) {
  try {
    if (!isMultimediaType(pathExtension(path)))
      if (NSData image = imageOfFile(client, path)) return image;
    return posterOfFile(client, path, side);
  } catch (const InputError &) {
    return NSData();
  }
}

}  // namespace

NSData contactSheetOfFiles(HelperClient &client, const Operands &paths, std::uint32_t side,
                           const NSString &type) {
  const std::vector<NSString> files = filesOfPaths(paths);
  if (files.size() > kMaximumFiles)
    throw UsageError("a sheet has " + std::to_string(kMaximumFiles) + " files at most, and these are " +
                     std::to_string(files.size()));
  NSArray cells = NSArray::array();
  for (std::size_t done = 0; const NSString &file : files) {
    writeProgress(std::to_string(done++) + " of " + std::to_string(files.size()) + " files");
    NSDictionary cell = {{u"Name"_ns, lastPathComponent(file)}, {u"Kind"_ns, pathExtension(file)}};
    cell.setObject(thumbnailOfFile(client, file, side), u"Thumbnail"_ns);
    cells.addObject(cell);
  }
  writeProgress({});
  const NSDictionary sheet = {{u"Side"_ns, side}, {u"Cells"_ns, cells}};
  const NSData list = NSPropertyListSerialization::dataWithPropertyList(sheet, NSPropertyListFormat::binary);
  return makePicture({.what = "sheet", .type = type, .seconds = kSheetSeconds}, list, "the sheet");
}

}  // namespace nimbo
