// SPDX-License-Identifier: Apache-2.0
//
// Named attributes of files and folders, and of what a symbolic link leads to. Names are whole ("user." stands
// in front of those that programs set). A failure is logged; that there is no such attribute is none. Any
// thread may call.
//
//     setExtendedAttributeNamed(data, u"user.mime_type"_ns, path);
//     createStringWithExtendedAttribute(u"user.mime_type"_ns, path);  // "text/html"
#pragma once

#include <vector>

#include "platform/Foundation/NSData.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// The names of all attributes, in no order that means anything. Empty when they cannot be listed.
std::vector<NSString> extendedAttributesAtPath(const NSString &path);

/// The value of an attribute, which may be empty. Nil when there is none, or it cannot be read.
NSData extendedAttributeNamed(const NSString &name, const NSString &path);

/// Makes or replaces an attribute; nil removes it. False when it is not what was asked for.
bool setExtendedAttributeNamed(const NSData &data, const NSString &name, const NSString &path);

/// The value of an attribute as text in UTF-8, without a null byte at its end. Nil when there is none, or it is
/// no such text.
NSString createStringWithExtendedAttribute(const NSString &name, const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
