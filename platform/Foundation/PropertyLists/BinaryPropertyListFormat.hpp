// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nimbo {

/// The binary form of property lists: the magic, the objects, a table of the objects' offsets, and a trailer.
/// An object is a marker byte, whose high half is the kind and whose low half a size or a count, and what
/// follows it. Containers name their elements by object number. All numbers are big-endian.
namespace BinaryPropertyList {

inline constexpr std::string_view kMagic = "bplist00";

inline constexpr std::uint8_t kNull = 0x00;
inline constexpr std::uint8_t kFalse = 0x08;
inline constexpr std::uint8_t kTrue = 0x09;
inline constexpr std::uint8_t kReal32 = 0x22;
inline constexpr std::uint8_t kReal64 = 0x23;
inline constexpr std::uint8_t kDate = 0x33;
/// Kinds whose low half holds the size or count, or `kCountFollows`: an integer object with the count comes
/// next. An integer's low half is the logarithm of its size in bytes.
inline constexpr std::uint8_t kInteger = 0x10;
inline constexpr std::uint8_t kData = 0x40;
inline constexpr std::uint8_t kASCIIString = 0x50;
inline constexpr std::uint8_t kUTF16String = 0x60;
inline constexpr std::uint8_t kUID = 0x80;
inline constexpr std::uint8_t kArray = 0xa0;
inline constexpr std::uint8_t kOrderedSet = 0xb0;
inline constexpr std::uint8_t kSet = 0xc0;
inline constexpr std::uint8_t kDictionary = 0xd0;
inline constexpr std::uint8_t kCountFollows = 0x0f;

/// The trailer: unused bytes, the size of an offset and of an object number in bytes, and three 8-byte numbers:
/// the count of objects, the number of the top object, the offset of the offset table.
inline constexpr std::size_t kTrailerLength = 32;
inline constexpr std::size_t kTrailerOffsetSize = 6;
inline constexpr std::size_t kTrailerReferenceSize = 7;
inline constexpr std::size_t kTrailerObjectCount = 8;
inline constexpr std::size_t kTrailerTopObject = 16;
inline constexpr std::size_t kTrailerTableOffset = 24;

}  // namespace BinaryPropertyList
}  // namespace nimbo
