// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/Foundation/NSData.hpp"

namespace nimbo {

/// What the names of companions begin with: "._name" has the fork of "name".
inline constexpr std::string_view kCompanionPrefix = "._";

/// The companion of an open file or folder: the content of the one beside it, which is nil where there is none,
/// and in the place of its entries the fork and the Finder information that the file has in extended
/// attributes. Nil when the file has nothing of all that.
NSData companionOfFile(int descriptor, const NSData &beside);

/// The content of "._name" in an open folder, if that is a companion of any file; nil when it is not.
NSData companionInFolder(int folder, const std::string &companionName);

}  // namespace nimbo
