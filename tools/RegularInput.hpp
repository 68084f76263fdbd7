// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/PrivateFolder.hpp"

namespace nimbo {

/// A path of a file, and the type that the name in it, or without a telling name the content, gives the file.
struct TypedPath {
  NSString path;
  NSString type;
};

/// Whether the type is one of pages of HTML.
bool isPageType(const NSString &type);
/// Whether this program reads the type by itself: pages and plain text.
bool isReadHere(const NSString &type);

/// An input as a regular file, which its type is found by and the helper reads: the file itself, or what came
/// from standard input or a pipe.
class RegularInput {
 public:
  /// What stands on standard input when the operand is "-", else nothing. Raises `InputError`.
  static std::optional<RegularInput> ofStandardInput(const std::string &operand, double patienceSeconds);
  /// Raises `InputError`.
  RegularInput(const std::string &operand, double patienceSeconds);

  /// What messages call it.
  const std::string &name() const { return name_; }
  /// Where it is by its own name.
  const NSString &path() const { return path_; }

  /// As what the file may be read, what is most likely first: by its name and, when that says something else,
  /// by its content. A file whose bytes cannot be the text that its name says goes by the content alone. Paths
  /// are good as long as this object. Raises `InputError`.
  std::vector<TypedPath> readings();

 private:
  NSString typeOfPath(const NSString &path) const;

  std::string name_;
  NSString path_;
  std::unique_ptr<PrivateFolder> folder_;
};

}  // namespace nimbo
