// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSEPSImageRep.hpp"
#include "platform/AppKit/Images/NSPDFImageRep.hpp"
#include "platform/CoreGraphics/PostScriptFile.hpp"
#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {

namespace {

/// The longest PostScript that is read.
constexpr std::uint32_t kMaximumPostScriptBytes = 256U << 20;

enum class Content { image, PDF, postScript };

Content contentOfFirstBytes(std::string_view bytes) {
  if (NSEPSImageRep::canInitWithFirstBytes(bytes)) return Content::postScript;
  return beginsLikePDF(bytes) ? Content::PDF : Content::image;
}

std::vector<SharedPointer<NSImageRep>> only(SharedPointer<NSImageRep> rep) {
  std::vector<SharedPointer<NSImageRep>> reps;
  if (rep) reps.push_back(std::move(rep));
  return reps;
}

std::vector<SharedPointer<NSImageRep>> repsOfSource(std::unique_ptr<CGImageSource> source,
                                                    const Deadline &deadline) {
  if (!source) return {};
  return NSBitmapImageRep::imageRepsWithSource(std::move(source), deadline);
}

}  // namespace

std::vector<SharedPointer<NSImageRep>> NSImageRep::imageRepsWithContentsOfFile(const NSString &path,
                                                                               const Deadline &deadline,
                                                                               NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, error);
  if (!file) return {};
  std::string head(kPostScriptHeadBytes, '\0');
  head.resize(static_cast<std::size_t>(std::max<ssize_t>(::pread(file.get(), head.data(), head.size(), 0), 0)));
  switch (contentOfFirstBytes(head)) {
    case Content::PDF:
      return only(NSPDFImageRep::imageRepWithContentsOfFile(path, deadline, error));
    case Content::postScript: {
      const NSData data = readData(file.get(), size, kMaximumPostScriptBytes, error);
      return data ? only(NSEPSImageRep::imageRepWithData(data, deadline, error))
                  : std::vector<SharedPointer<NSImageRep>>();
    }
    default:
      return repsOfSource(CGImageSource::sourceWithContentsOfFile(path, error), deadline);
  }
}

std::vector<SharedPointer<NSImageRep>> NSImageRep::imageRepsWithData(const NSData &data,
                                                                     const Deadline &deadline, NSError *error) {
  switch (contentOfFirstBytes(data.view())) {
    case Content::PDF:
      return only(NSPDFImageRep::imageRepWithData(data, deadline, error));
    case Content::postScript:
      return only(NSEPSImageRep::imageRepWithData(data, deadline, error));
    default:
      return repsOfSource(CGImageSource::sourceWithData(data, error), deadline);
  }
}

}  // namespace nimbo
