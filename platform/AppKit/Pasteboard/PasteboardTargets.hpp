// SPDX-License-Identifier: Apache-2.0
//
// What the desktop calls the types of a pasteboard. Any thread may ask.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// What the data of a pasteboard type become in the desktop's; PasteboardTargets.tsv describes each.
enum class TargetForm : std::uint8_t { data, text, latin1, URIList, URLLine, titleLine, picture, plainRTF };

/// One of the desktop's types, as a pasteboard type is offered or read.
struct PasteboardTarget {
  NSString type, target;
  TargetForm form;
  /// How many targets the type has before this one.
  std::size_t place = 0;
};

/// One of the desktop's types that is offered, and what its data may be made of: the best that is given. That
/// is the one that has the target in an earlier place, else the one that stands first among the types.
struct PasteboardOffer {
  NSString target;
  std::vector<PasteboardTarget> sources;
};

/// What is offered for pasteboard types, in their order, each of the desktop's types once. No picture and no
/// rich text are converted to what another of the types is as it is.
std::vector<PasteboardOffer> offersOfTypes(std::span<const NSString> types);
/// From which of the desktop's types a pasteboard type can be read, the best first.
std::vector<PasteboardTarget> targetsToRead(const NSString &type);
/// The pasteboard types that can be read of what is offered, in that order.
std::vector<NSString> typesOfTargets(std::span<const NSString> targets);

}  // namespace nimbo::detail
