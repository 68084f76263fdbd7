// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace nimbo::detail {

/// The places of bytes in a vector, for a lookup; one with the top bit set gives 0.
struct alignas(16) Shuffle {
  std::array<std::uint8_t, 16> places;
};

/// The characters at the beginning of 12 bytes of UTF-8 that are taken together.
struct CharacterGroup {
  /// The shuffle that brings each into a lane of its own, the last byte first. Six of at most two bytes go into
  /// lanes of 16 bits, by the first `kGroupsOfSix` shuffles, else four of at most three into lanes of 32.
  std::uint8_t shuffle;
  /// How many bytes they have; 0 when there is no such group.
  std::uint8_t bytes;
};

/// How many shuffles there are for groups of six characters, and of four.
inline constexpr std::size_t kGroupsOfSix = 64, kGroupsOfFour = 81;

/// Shuffles that spread the characters of a group over lanes.
struct SpreadingTables {
  /// The group that the bytes begin with, by the bits of those that end a character.
  std::array<CharacterGroup, 4096> groups{};
  /// The shuffles that the groups name.
  std::array<Shuffle, kGroupsOfSix + kGroupsOfFour> shuffles{};

  constexpr SpreadingTables() {
    addGroups(0, 6, 2, 2);
    addGroups(kGroupsOfSix, 4, 3, 4);
  }

 private:
  /// Adds the groups of `count` characters with all lengths up to `longest`.
  constexpr void addGroups(std::size_t shuffle, std::size_t count, std::size_t longest, std::size_t laneBytes) {
    std::size_t combinations = 1;
    for (std::size_t i = 0; i < count; ++i) combinations *= longest;
    for (std::size_t combination = 0; combination < combinations; ++combination, ++shuffle) {
      shuffles[shuffle].places.fill(0x80);
      std::size_t bytes = 0, ends = 0;
      for (std::size_t i = 0, digits = combination; i < count; ++i, digits /= longest) {
        const std::size_t length = 1 + digits % longest;
        bytes += length;
        ends |= std::size_t{1} << (bytes - 1);
        for (std::size_t j = 0; j < length; ++j)
          shuffles[shuffle].places[i * laneBytes + j] = static_cast<std::uint8_t>(bytes - 1 - j);
      }
      // Whatever follows the group.
      for (; ends < groups.size(); ends += std::size_t{1} << bytes)
        if (groups[ends].bytes == 0)
          groups[ends] = {static_cast<std::uint8_t>(shuffle), static_cast<std::uint8_t>(bytes)};
    }
  }
};

inline constexpr SpreadingTables kSpreading;

/// Four sequences of three bytes each, whose shuffle is the last one.
inline constexpr std::uint64_t kEndsOfFourTriples = 0b100'100'100'100;

/// Shuffles that bring the sequences of some lanes together, each of which begins its lane.
template <std::size_t Lanes>
struct GatheringTable {
  /// By bits of lanes: for lanes of two bytes those whose sequence has one byte, for lanes of four bytes the
  /// same, and then those whose sequence has one or two bytes.
  std::array<Shuffle, 256> shuffles{};

  constexpr GatheringTable() {
    for (std::size_t bits = 0; bits < shuffles.size(); ++bits) {
      shuffles[bits].places.fill(0x80);
      std::size_t bytes = 0;
      for (std::size_t lane = 0; lane < Lanes; ++lane) {
        std::size_t length = Lanes == 8 ? 2 : 3;
        for (std::size_t bit = lane; bit < 8; bit += Lanes) length -= bits >> bit & 1;
        for (std::size_t j = 0; j < length; ++j)
          shuffles[bits].places[bytes++] = static_cast<std::uint8_t>(lane * (16 / Lanes) + j);
      }
    }
  }
};

inline constexpr GatheringTable<8> kGatheringOfEight;
inline constexpr GatheringTable<4> kGatheringOfFour;

}  // namespace nimbo::detail
