// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// What the tags of a sound file say: arrays of strings under TagLib's names in upper case, as "ARTIST". Nil
/// when the file has no tags that TagLib knows, or cannot be read.
NSDictionary tagsOfSoundFile(const NSString &path, const Deadline &deadline);

}  // namespace nimbo
