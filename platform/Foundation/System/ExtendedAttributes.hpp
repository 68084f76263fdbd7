// SPDX-License-Identifier: Apache-2.0
//
// The named attributes that a file system keeps beside the content of a file or folder. Names are whole, with
// the name space in front ("user.xdg.comment"). Any thread may call.
//
//     NSError error;
//     const NSData comment = extendedAttribute(path, u"user.xdg.comment"_ns, true, &error);
//     if (!setExtendedAttribute(path, u"user.xdg.comment"_ns, NSData(), true, &error))
//       NSLog(error.localizedFailureReason);
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The names of all attributes that the process may see, in no order that means anything. Without
/// `traverseLink`, those of a symbolic link itself. Nothing when there is no such file or the file system has
/// no attributes; `*error` says which.
std::optional<std::vector<NSString>> extendedAttributeNames(const NSString &path, Flag traverseLink,
                                                            NSError *error = nullptr);

/// The value of an attribute, which may be empty. Nil when it cannot be read; `*error` is `noSuchFile` when
/// there is no such file or attribute.
NSData extendedAttribute(const NSString &path, const NSString &name, Flag traverseLink,
                         NSError *error = nullptr);

/// Makes or replaces an attribute; nil removes it. False when the attribute is not what was asked for; `*error`
/// is `tooLarge` when the file system has no room for the value, `unsupportedType` when it keeps no such
/// attributes. To remove what is not there is no failure.
bool setExtendedAttribute(const NSString &path, const NSString &name, const NSData &data, Flag traverseLink,
                          NSError *error = nullptr);

/// Gives the open file all attributes of the file at `path` that programs set and the list of who has access.
/// False when one of them cannot be read or set; errno says why. A file system without attributes has none to
/// lose.
bool copyExtendedAttributes(const std::string &path, int descriptor);

}  // namespace nimbo
