// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nimbo {

/// The binary form of property lists: the magic, the objects, a table of the objects' offsets, and a trailer.
/// An object is a marker byte, whose high half is the kind and whose low half a size or a count, and what
/// follows it: `kNull` to `kDate` are whole markers, `kInteger` to `kDictionary` kinds. The low half of an
/// integer is the logarithm of its size in bytes. Containers name their elements by object number. All numbers
/// are big-endian.
namespace BinaryPropertyList {

/// What the data begins with.
inline constexpr std::string_view kMagic = "bplist00";

inline constexpr std::uint8_t kNull = 0x00;
inline constexpr std::uint8_t kFalse = 0x08;
inline constexpr std::uint8_t kTrue = 0x09;
inline constexpr std::uint8_t kReal32 = 0x22;
inline constexpr std::uint8_t kReal64 = 0x23;
inline constexpr std::uint8_t kDate = 0x33;
inline constexpr std::uint8_t kInteger = 0x10;
inline constexpr std::uint8_t kData = 0x40;
inline constexpr std::uint8_t kASCIIString = 0x50;
inline constexpr std::uint8_t kUTF16String = 0x60;
inline constexpr std::uint8_t kUID = 0x80;
inline constexpr std::uint8_t kArray = 0xa0;
inline constexpr std::uint8_t kOrderedSet = 0xb0;
inline constexpr std::uint8_t kSet = 0xc0;
inline constexpr std::uint8_t kDictionary = 0xd0;
/// The low half that says that an integer object with the count comes next.
inline constexpr std::uint8_t kCountFollows = 0x0f;

/// How many bytes the trailer has.
inline constexpr std::size_t kTrailerLength = 32;
/// Where in the trailer stands the size of an offset, one byte.
inline constexpr std::size_t kTrailerOffsetSize = 6;
/// Where in the trailer stands the size of an object number, one byte.
inline constexpr std::size_t kTrailerReferenceSize = 7;
/// Where in the trailer stands the count of objects, 8 bytes.
inline constexpr std::size_t kTrailerObjectCount = 8;
/// Where in the trailer stands the number of the top object, 8 bytes.
inline constexpr std::size_t kTrailerTopObject = 16;
/// Where in the trailer stands the offset of the offset table, 8 bytes.
inline constexpr std::size_t kTrailerTableOffset = 24;

}  // namespace BinaryPropertyList
}  // namespace nimbo
