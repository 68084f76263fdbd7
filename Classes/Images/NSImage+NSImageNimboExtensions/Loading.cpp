// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Loading.hpp"

#include <mutex>
#include <unordered_map>

#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Types.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Extensions.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

/// Where the image is; nil when no name is given, or one of another folder.
NSString pathOfNamedImage(const NSString &name, const NSString &type, const NSBundle &bundle) {
  if (name.length() == 0 || name.view().find(u'/') != std::u16string_view::npos || !bundle) return NSString();
  const NSString file = stringByAppendingPathComponent(
      stringByAppendingPathComponent(bundle.bundlePath(), u"Contents/Resources"_ns),
      stringByAppendingPathExtensionIfNecessary(name, type));
  return type.length() > 0 ? file : pathMatchingExtensions(file, ImageFileTypes());
}

/// The images that are kept, by their paths.
class KeptImages {
 public:
  NSImage imageAtPath(const NSString &path) {
    const std::scoped_lock lock(mutex_);
    const auto found = images_.find(path);
    return found == images_.end() ? NSImage() : found->second;
  }
  void keep(const NSString &path, const NSImage &image) {
    const std::scoped_lock lock(mutex_);
    if (images_.size() < kMaximumCachedImages) images_.emplace(path, image);
  }

 private:
  std::mutex mutex_;
  std::unordered_map<NSString, NSImage, NSStringHash> images_;
};

NSImage imageAtPath(const NSString &path, const Deadline &deadline, NSError *error) {
  if (path) return NSImage::imageByReferencingFile(path, deadline, error);
  setError(error, ErrorCode::noSuchFile, "the bundle has no such image");
  return NSImage();
}

}  // namespace

NSImage imageNamed(const NSString &name, const NSString &ofType, const NSBundle &inBundle,
                   const Deadline &deadline, NSError *error) {
  return imageAtPath(pathOfNamedImage(name, ofType, inBundle), deadline, error);
}

NSImage cachedImageNamed(const NSString &name, const NSString &ofType, const NSBundle &inBundle,
                         const Deadline &deadline, NSError *error) {
  static KeptImages kept;
  const NSString path = pathOfNamedImage(name, ofType, inBundle);
  if (NSImage image = kept.imageAtPath(path)) return image;
  const NSImage referenced = imageAtPath(path, deadline, error);
  // The file is read now, since the deadline holds for whatever still stands on it.
  NSImage image = bitmapImageWithSize(referenced, referenced.size(), true, deadline, error);
  if (image) kept.keep(path, image);
  return image;
}

NSImage imageWithDownloadedData(const NSData &data, const Deadline &deadline, NSError *error) {
  NSImage image = NSImage::imageWithData(data, deadline, error);
  return isReallyValid(image) ? image : NSImage();
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
