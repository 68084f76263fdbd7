// SPDX-License-Identifier: Apache-2.0
#include <hwy/targets.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace {

#if HWY_ARCH_X86
/// Otherwise the tests of the vector loops would run without the vectors that they are about, and pass.
TEST(VectorTargets, AreThoseThatTheSystemTellsOfTheProcessor) {
  std::ifstream information("/proc/cpuinfo");
  std::string line;
  while (std::getline(information, line) && !line.starts_with("flags")) {
  }
  std::istringstream words(line);
  std::set<std::string> flags;
  for (std::string word; words >> word;) flags.insert(word);
  ASSERT_TRUE(flags.contains("sse2"));

  const std::int64_t targets = hwy::SupportedTargets();
  EXPECT_EQ((targets & HWY_SSSE3) != 0, flags.contains("ssse3"));
  EXPECT_EQ((targets & HWY_SSE4) != 0, flags.contains("sse4_2") && flags.contains("aes"));
  EXPECT_EQ((targets & HWY_AVX2) != 0, flags.contains("avx2") && flags.contains("fma"));
  EXPECT_EQ((targets & HWY_AVX3) != 0, flags.contains("avx512bw") && flags.contains("avx512vl"));
}
#endif

}  // namespace
