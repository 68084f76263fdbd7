// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "children/Pasteboard/Contents.hpp"
#include "children/Pasteboard/Patience.hpp"

namespace nimbo {

/// The clipboard of a desktop, through this process's connection to it. Its methods raise `PasteboardError`.
class Clipboard {
 public:
  virtual ~Clipboard() = default;

  /// The types that who owns the clipboard offers, which a question begins with; nothing when it does not tell.
  virtual std::optional<std::vector<std::string>> types(const Patience &patience) = 0;
  /// Whether it can be told that who owns the clipboard refuses a type, rather than has nothing.
  virtual bool tellsRefusal() const = 0;
  /// The data of a type; nothing when it is refused. Raises `OwnerReplaced` when who told the types has not
  /// given them before another program came to own the clipboard.
  virtual std::optional<std::string> read(const std::string &type, const Patience &patience) = 0;
  /// Makes this process the owner, who offers these types; of none, empties the clipboard.
  virtual void own(const std::vector<std::string> &types, const Patience &patience) = 0;
  /// Gives others what they ask for, until they own the clipboard, the desktop goes or `signals` is readable.
  virtual void serve(Contents &contents, int signals) = 0;
};

}  // namespace nimbo
