// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/FileNames.hpp"

#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Paths/NSMutableString+NSStringNimboPathExtensions.hpp"
#include "Classes/Strings/UnitEditing.hpp"

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
  return answerOr(string, [&] {
    if (!string) return string;
    NSMutableString copy(string);
    createFileSystemRepresentationAndAppendExtension(copy, extension);
    return copy.view() == string.view() ? string : std::move(copy).string();
  });
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
