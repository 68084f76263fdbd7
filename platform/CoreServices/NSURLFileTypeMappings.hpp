// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What the system's database of MIME types says about path extensions. It is asked on each call, by any
/// thread; where there is none, all answers are nil or empty.
///
///     const NSURLFileTypeMappings &mappings = NSURLFileTypeMappings::sharedMappings();
///     mappings.MIMETypeForExtension(u"JPG"_ns);  // "image/jpeg"
///     mappings.preferredExtensionForMIMEType(u"image/jpeg"_ns);  // "jpg"
class NSURLFileTypeMappings {
 public:
  /// The only one.
  static const NSURLFileTypeMappings &sharedMappings();

  /// The MIME type of files with this extension, in either case; the likeliest when there are several. Nil when
  /// none is known, or it says nothing ("application/octet-stream").
  NSString MIMETypeForExtension(const NSString &extension) const;
  /// The extensions of a MIME type, or of the one that it is another name of, the usual one first. Its letters
  /// may be of either case; parameters behind ";" count for nothing. Extensions of several parts, as "tar.gz",
  /// are left out.
  std::vector<NSString> extensionsForMIMEType(const NSString &MIMEType) const;
  /// The first of `extensionsForMIMEType`; nil when there is none.
  NSString preferredExtensionForMIMEType(const NSString &MIMEType) const;
};

}  // namespace nimbo
