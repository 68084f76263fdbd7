// SPDX-License-Identifier: Apache-2.0
//
// Searches of the longest run that there may be. It is a mapping of zeros, which takes no memory but for its
// end.
#include <gtest/gtest.h>

#include <sys/mman.h>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Characters/UnicharSearches.hpp"

// The sanitizers look at each access, which takes minutes here.
#if !defined(__SANITIZE_ADDRESS__)

namespace nimbo {
namespace {

constexpr std::size_t kMappedBytes = std::size_t{1} << 32;
constexpr std::size_t kWritableBytes = 4096;
constexpr std::uint32_t kLength = NSNotFound;

class LongRun : public ::testing::Test {
 protected:
  void SetUp() override {
    constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
    memory_ = mmap(nullptr, kMappedBytes, PROT_READ, kFlags, -1, 0);
    ASSERT_NE(memory_, MAP_FAILED);
    // One large page of zeros then stands for all, where the system has them.
    madvise(memory_, kMappedBytes, MADV_HUGEPAGE);
    auto *const end = static_cast<std::byte *>(memory_) + kMappedBytes;
    ASSERT_EQ(mprotect(end - kWritableBytes, kWritableBytes, PROT_READ | PROT_WRITE), 0);
    units_ = static_cast<const unichar *>(memory_);
    auto *const writable = reinterpret_cast<unichar *>(end - kWritableBytes);
    unichar *const last = writable + kWritableBytes / sizeof(unichar) - 1 - kEnd.size();
    for (std::size_t i = 0; i < kEnd.size(); ++i) last[i] = kEnd[i];
  }
  void TearDown() override { munmap(memory_, kMappedBytes); }

  /// What the run ends with.
  static constexpr std::u16string_view kEnd = u"Quiver\u00e9";
  static constexpr auto kEndLength = static_cast<std::uint32_t>(kEnd.size());
  static constexpr std::uint32_t kZeros = kLength - kEndLength;

  void *memory_ = MAP_FAILED;
  const unichar *units_ = nullptr;
};

TEST_F(LongRun, IsSearchedToItsEnd) {
  EXPECT_EQ(findUnichar(units_, kLength, u'Q'), kZeros);
  EXPECT_EQ(findUnicharNoCase(units_, kLength, u'\u00c9'), kLength - 1);
  EXPECT_EQ(findLastUnichar(units_, kLength, u'\0'), kZeros - 1);
  EXPECT_EQ(findLastUnichar(units_, kLength, u'#'), NSNotFound);
  EXPECT_EQ(countUnichar(units_, kLength, u'\0'), kZeros);
  EXPECT_EQ(countUnichars(units_, kLength, u'\0', u'Q'), (UnicharCounts{kZeros, 1}));
  EXPECT_FALSE(isAsciiUnichars(units_, kLength));
  EXPECT_TRUE(isAsciiUnichars(units_, kLength - 1));
}

TEST_F(LongRun, ContainsWhatStandsAtItsEnd) {
  EXPECT_EQ(fastContainsUnichars(units_, kLength, kEnd.data(), kEndLength), units_ + kZeros);
  EXPECT_EQ(fastUnicharsContainChars(units_, kLength, "Quiver", 6), units_ + kZeros);
  EXPECT_EQ(fastCaseInsensitiveContainsUnichars(units_, kLength, u"qUIVER\u00c9", kEndLength), units_ + kZeros);
  EXPECT_EQ(fastCaseInsensitiveUnicharsContainChars(units_, kLength, "qUIVERx", 7), nullptr);
}

}  // namespace
}  // namespace nimbo

#endif
