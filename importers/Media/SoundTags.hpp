// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// What the tags of an open sound file say: arrays of strings under TagLib's names in upper case, as "ARTIST".
/// Its name says what to expect of it. Nil when the file has no tags that TagLib knows, or cannot be read.
NSDictionary tagsOfSoundFile(FileDescriptor file, const NSString &name, const Deadline &deadline);

}  // namespace nimbo
