// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSURL+MIMETypeExtensions.hpp"

#include "Classes/Images/UnmappedMIMETypes.hpp"
#include "platform/CoreServices/NSURLFileTypeMappings.hpp"

namespace nimbo {
inline namespace MIMETypeExtensions {

NSString MIMETypeForExtension(const NSString &extension) {
  const NSString mapped = NSURLFileTypeMappings::sharedMappings().MIMETypeForExtension(extension);
  return mapped.length() > 0 ? mapped : MIMETypeForUnmappedExtension(extension);
}

NSString extensionForMIMEType(const NSString &MIMEType) {
  return NSURLFileTypeMappings::sharedMappings().preferredExtensionForMIMEType(MIMEType);
}

}  // namespace MIMETypeExtensions
}  // namespace nimbo
