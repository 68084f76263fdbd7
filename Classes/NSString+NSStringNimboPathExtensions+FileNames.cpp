// SPDX-License-Identifier: Apache-2.0
#include "Classes/NSString+NSStringNimboPathExtensions+FileNames.hpp"

#include "Classes/NSMutableString+NSStringNimboPathExtensions.hpp"
#include "Classes/UnitEditing.hpp"

namespace nimbo {
inline namespace NSStringNimboPathExtensions {

NSString stringByTrimmingInvalidFilenameCharacters(const NSString &string) {
  return stringByEditing(string, trimInvalidFilenameCharacters);
}

NSString stringByCreatingFilename(const NSString &string) {
  return stringByEditing(string, createFilename);
}

NSString stringByCreatingFileSystemRepresentation(const NSString &string) {
  return stringByEditing(string, createFileSystemRepresentation);
}

NSString stringByCreatingFileSystemRepresentationByAppendingExtension(const NSString &string,
                                                                      const NSString &extension) {
  return stringByEditing(string, [&](NSMutableString &copy) {
    createFileSystemRepresentationAndAppendExtension(copy, extension);
  });
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
