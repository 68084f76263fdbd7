// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSImageRep.hpp"

namespace nimbo {

std::vector<SharedPointer<NSImageRep>> NSImageRep::imageRepsWithContentsOfFile(const NSString &path,
                                                                               const Deadline &deadline,
                                                                               NSError *error) {
  auto source = CGImageSource::sourceWithContentsOfFile(path, error);
  if (!source) return {};
  return NSBitmapImageRep::imageRepsWithSource(std::move(source), deadline);
}

std::vector<SharedPointer<NSImageRep>> NSImageRep::imageRepsWithData(const NSData &data,
                                                                     const Deadline &deadline, NSError *error) {
  auto source = CGImageSource::sourceWithData(data, error);
  if (!source) return {};
  return NSBitmapImageRep::imageRepsWithSource(std::move(source), deadline);
}

}  // namespace nimbo
