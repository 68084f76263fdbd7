// SPDX-License-Identifier: Apache-2.0
//
// What people note about files on their desktop: a comment, and a label of one of seven colours. The desktop is
// asked by scripts, which a pluggable runner runs; without one, extended attributes hold both. Any thread may
// call.
//
//     setFinderComment(u"read this"_ns, path);
//     setFinderLabel(6, path, true);  // Red, some time soon.
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Sets the comment; nil and the empty string remove it. False when it cannot be set. With `asynchronous`, the
/// answer is true and comes before the script has run; scripts run in the order of the calls.
bool setFinderComment(const NSString &comment, const NSString &path, Flag asynchronous = false);
/// The comment; nil when there is none.
NSString finderComment(const NSString &path);
/// Sets the comments of many files, by their paths; one that cannot be set does not keep the others. False when
/// any cannot be set.
bool setFileComments(const NSDictionary &commentsByPath);
/// The same for folders.
bool setContainerComments(const NSDictionary &commentsByPath);

/// Sets the label: 0 for none, 1 grey, 2 green, 3 purple, 4 blue, 5 yellow, 6 red, 7 orange. False for other
/// numbers and when it cannot be set. `asynchronous` as above.
bool setFinderLabel(int label, const NSString &path, Flag asynchronous = false);
/// The number of the label; 0 when there is none.
int finderLabel(const NSString &path);
/// Sets the labels of many files and folders, by their paths, as numbers; one that cannot be set does not keep
/// the others. False when any cannot be set.
bool setFinderLabels(const NSDictionary &labelsByPath);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
