// SPDX-License-Identifier: Apache-2.0
#include "tests/support/AllocationCount.hpp"

#include <atomic>

// The linker leads calls of the functions to those in front of which stands "__wrap_"; "__real_" leads to the
// functions themselves, or to a sanitizer's.
void *realMalloc(std::size_t size) asm("__real_malloc");
void *realRealloc(void *memory, std::size_t size) asm("__real_realloc");
void *realNew(std::size_t size) asm("__real__Znwm");
void *countedMalloc(std::size_t size) asm("__wrap_malloc");
void *countedRealloc(void *memory, std::size_t size) asm("__wrap_realloc");
void *countedNew(std::size_t size) asm("__wrap__Znwm");

namespace {

std::atomic<std::size_t> allocations = 0;

}  // namespace

void *countedMalloc(std::size_t size) {
  ++allocations;
  return realMalloc(size);
}

void *countedRealloc(void *memory, std::size_t size) {
  ++allocations;
  return realRealloc(memory, size);
}

void *countedNew(std::size_t size) {
  ++allocations;
  return realNew(size);
}

std::size_t nimbo::allocationCount() {
  return allocations;
}
