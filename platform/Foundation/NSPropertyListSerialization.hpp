// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The forms of property lists, numbered as the platform numbers them.
enum class NSPropertyListFormat { openStep = 1, xml = 100, binary = 200 };

/// Property lists as bytes. Reading never trusts its input: cycles, offsets outside, counts beyond the data,
/// nesting deeper than `kMaximumDepth` and lists that would unfold to more than `kMaximumObjects` values give
/// nil and an error. Any number of threads may read and write at once.
///
///     NSError error;
///     const id list = NSPropertyListSerialization::propertyListFromData(data, nullptr, &error);
///     if (!list) NSLog(error.localizedFailureReason);
///     const auto xml = NSPropertyListSerialization::dataWithPropertyList(list, NSPropertyListFormat::xml);
struct NSPropertyListSerialization {
  /// How many containers may stand inside of each other.
  static constexpr std::uint32_t kMaximumDepth = 512;
  /// How many values of all kinds there may be, containers and dictionary keys included.
  static constexpr std::uint32_t kMaximumObjects = 4'000'000;

  /// Reads a binary ("bplist00"), XML or old-style text property list, whichever the data begins like; text may
  /// be a table of strings, which is a dictionary without its braces, and may be in UTF-16. Nil
  /// when it is none; `*error` then says why: `damaged`, `incomplete` when there are no bytes, `tooLarge`
  /// beyond the limits above. `*format` gets the form that was read. Data objects read from the binary form
  /// share `data`'s storage.
  static id propertyListFromData(const NSData &data, NSPropertyListFormat *format = nullptr,
                                 NSError *error = nullptr);

  /// Writes the binary or the XML form. Nil when `propertyList` is nil or holds nil, exceeds the limits above,
  /// or the form cannot hold it: the old-style form is read only, and XML has no null. `*error` then says why
  /// in one line. In XML, units that XML cannot hold become U+FFFD and dates lose their fractions of a second;
  /// the binary form keeps all.
  static NSData dataWithPropertyList(const id &propertyList, NSPropertyListFormat format,
                                     NSError *error = nullptr);
};

}  // namespace nimbo
