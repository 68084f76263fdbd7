// SPDX-License-Identifier: Apache-2.0
//
// What the desktop calls the types of a pasteboard. Any thread may ask.
#pragma once

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
};

/// What is offered for pasteboard types, in their order, each of the desktop's types once: of several that come
/// under the same name, the one whose data need no conversion is it, else the first.
std::vector<PasteboardTarget> targetsToOffer(std::span<const NSString> types);
/// From which of the desktop's types a pasteboard type can be read, the best first.
std::vector<PasteboardTarget> targetsToRead(const NSString &type);
/// The pasteboard types that can be read of what is offered, in that order.
std::vector<NSString> typesOfTargets(std::span<const NSString> targets);

}  // namespace nimbo::detail
