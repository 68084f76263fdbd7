// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/FinderMetadata.hpp"

#include "Classes/Files/ScriptRunner.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// What the scripts call the thing at the path.
NSString kindOf(const NSString &path) {
  bool isDirectory = false;
  NSFileManager::fileExistsAtPath(path, &isDirectory);
  return isDirectory ? u"container"_ns : u"file"_ns;
}

bool run(const NSString &source, const NSString &entryPoint, const NSArray &arguments, bool asynchronous) {
  return asynchronous ? runScriptLater(source, entryPoint, arguments)
                      : runScript(source, entryPoint, arguments).boolean().value_or(false);
}

bool setComments(const NSDictionary &commentsByPath, const NSString &kind) {
  NSArray paths, comments;
  for (const auto &[path, comment] : commentsByPath) {
    paths.addObject(path);
    comments.addObject(comment);
  }
  if (paths.count() == 0) return true;
  const NSString source = stringWithFormat(
      u"on setComments(thePaths,theComments)\nlocal i, cnt\nset cnt to count of thePaths\n"
      "repeat with i from 1 to cnt\nmy setComment(item i of thePaths,item i of theComments)\nend repeat\nend\n"
      "on setComment(thePath,theComment)\nwith timeout of 1 second\ntry\n"
      "tell application \"Finder\" to set comment of %@ thePath to theComment\n"
      "on error\nreturn false\nend\nreturn true\nend\nend",
      kind);
  return run(source, u"setComments"_ns, {paths, comments}, false);
}

}  // namespace

bool setFinderComment(const NSString &comment, const NSString &path, Flag asynchronous) {
  const NSString source = stringWithFormat(
      u"on setComment(thePath,theComment)\nwith timeout of 1 second\ntry\n"
      "tell application \"Finder\" to set comment of %@ thePath to theComment\n"
      "on error\nreturn false\nend\nreturn true\nend\nend",
      kindOf(path));
  return run(source, u"setComment"_ns, {path, comment ? comment : NSString::string()}, asynchronous);
}

NSString finderComment(const NSString &path) {
  const NSString source = stringWithFormat(
      u"on getComment(thePath)\nwith timeout of 1 second\n"
      "tell application \"Finder\" to get comment of %@ thePath\nend\nend",
      kindOf(path));
  return runScript(source, u"getComment"_ns, {path}).string();
}

bool setFileComments(const NSDictionary &commentsByPath) {
  return setComments(commentsByPath, u"file"_ns);
}

bool setContainerComments(const NSDictionary &commentsByPath) {
  return setComments(commentsByPath, u"container"_ns);
}

bool setFinderLabel(int label, const NSString &path, Flag asynchronous) {
  const NSString source = stringWithFormat(
      u"on setLabel(thePath,theLabel)\nwith timeout of 1 second\ntry\n"
      "tell application \"Finder\" to set label index of %@ thePath to (theLabel as integer)\n"
      "on error\nreturn false\nend\nreturn true\nend\nend",
      kindOf(path));
  return run(source, u"setLabel"_ns, {path, label}, asynchronous);
}

int finderLabel(const NSString &path) {
  const NSString source = stringWithFormat(
      u"on getLabel(thePath)\nwith timeout of 1 second\n"
      "tell application \"Finder\" to get label index of %@ thePath\nend\nend",
      kindOf(path));
  return static_cast<int>(runScript(source, u"getLabel"_ns, {path}).integer().value_or(0));
}

bool setFinderLabels(const NSDictionary &labelsByPath) {
  bool areSet = true;
  for (const auto &[path, label] : labelsByPath) {
    const auto number = label.integer();
    areSet = number && *number == static_cast<int>(*number) &&
             setFinderLabel(static_cast<int>(*number), path) && areSet;
  }
  return areSet;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
