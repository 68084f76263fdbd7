// SPDX-License-Identifier: Apache-2.0
//
// What a process that copies something and the program that owns the clipboard for it agree upon. The data come
// to the owner through a feed, a stream of records:
//
//     a `PasteboardRecord`
//     the names of the desktop's types that the data are of, each with '\n' behind it
//     the data
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How many bytes a type may have.
constexpr std::uint32_t kMaximumContentBytes = std::uint32_t{512} << 20;
/// How many bytes the name of a type may have.
constexpr std::size_t kMaximumTypeNameBytes = 2048;
/// How many bytes the names of all types may have together, each with '\n' behind it. They are arguments of a
/// program, and a Wayland compositor drops clients whose messages fill their socket.
constexpr std::size_t kMaximumNamesBytes = 1 << 16;

/// What a record begins with.
struct PasteboardRecord {
  /// In the place of `dataBytes`: there will be no data of these types.
  static constexpr std::uint32_t kMissing = UINT32_MAX;

  std::uint32_t nameBytes = 0;  ///< How many bytes of names follow.
  std::uint32_t dataBytes = 0;  ///< How many bytes of data follow the names.
};

}  // namespace nimbo
