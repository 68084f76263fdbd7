// SPDX-License-Identifier: Apache-2.0
#include <hwy/targets.h>

#include <cstdint>

#if HWY_ARCH_X86
#include <cpuid.h>
#endif

/// What Highway's headers call. Its shared library has both functions, too, but times the processor's clock
/// whenever a program starts, which takes longer than all else that a small program does. These are hidden, so
/// that they never meet those of that library in a process that has it for other reasons.
namespace hwy {
namespace {

constinit ChosenTarget chosenTarget;

#if HWY_ARCH_X86
/// Not every compiler knows the name of this feature.
bool convertsHalfFloats() {
  unsigned int a = 0, b = 0, c = 0, d = 0;
  return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_F16C) != 0;
}

/// A kind of vector is there when the processor has, and the system saves, all that the compiler may use for
/// it.
std::int64_t targetsOfProcessor() {
  __builtin_cpu_init();
  std::int64_t targets = 0;
  if (!__builtin_cpu_supports("ssse3")) return targets;
  targets |= HWY_SSSE3;
  if (!__builtin_cpu_supports("sse4.1") || !__builtin_cpu_supports("sse4.2") ||
      !__builtin_cpu_supports("pclmul") || !__builtin_cpu_supports("aes"))
    return targets;
  targets |= HWY_SSE4;
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi") || !__builtin_cpu_supports("bmi2") ||
      !__builtin_cpu_supports("fma") || !convertsHalfFloats())
    return targets;
  targets |= HWY_AVX2;
  if (!__builtin_cpu_supports("avx512f") || !__builtin_cpu_supports("avx512vl") ||
      !__builtin_cpu_supports("avx512dq") || !__builtin_cpu_supports("avx512bw"))
    return targets;
  return targets | HWY_AVX3;
}
#else
/// Elsewhere the vectors are those that the program is compiled for.
std::int64_t targetsOfProcessor() {
  return 0;
}
#endif

}  // namespace

ChosenTarget &GetChosenTarget() {
  return chosenTarget;
}

std::int64_t SupportedTargets() {
  return targetsOfProcessor() | HWY_ENABLED_BASELINE;
}

}  // namespace hwy
