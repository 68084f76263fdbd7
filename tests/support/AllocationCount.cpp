// SPDX-License-Identifier: Apache-2.0
#include "tests/support/AllocationCount.hpp"

#include <atomic>
#include <cstddef>
#include <limits>
#include <new>

// The linker leads calls of the functions to those in front of which stands "__wrap_"; "__real_" leads to the
// functions themselves, or to a sanitizer's.
void *realMalloc(std::size_t size) asm("__real_malloc");
void *realRealloc(void *memory, std::size_t size) asm("__real_realloc");
void *realNew(std::size_t size) asm("__real__Znwm");
void *realNewArray(std::size_t size) asm("__real__Znam");
void *realNothrowNewArray(std::size_t size, const std::nothrow_t &) asm("__real__ZnamRKSt9nothrow_t");
void *countedMalloc(std::size_t size) asm("__wrap_malloc");
void *countedRealloc(void *memory, std::size_t size) asm("__wrap_realloc");
void *countedNew(std::size_t size) asm("__wrap__Znwm");
void *countedNewArray(std::size_t size) asm("__wrap__Znam");
void *countedNothrowNewArray(std::size_t size, const std::nothrow_t &) asm("__wrap__ZnamRKSt9nothrow_t");

namespace {

std::atomic<std::size_t> allocations = 0;

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

/// How many requests are served before the first that fails.
thread_local std::size_t served = kNever;
thread_local bool hasFailed = false;

bool isServed() {
  ++allocations;
  if (served == kNever) return true;
  if (served > 0) return --served, true;
  hasFailed = true;
  return false;
}

void *servedOrRaised(void *(*allocate)(std::size_t), std::size_t size) {
  if (!isServed()) throw std::bad_alloc();
  return allocate(size);
}

}  // namespace

void *countedMalloc(std::size_t size) {
  return isServed() ? realMalloc(size) : nullptr;
}

void *countedRealloc(void *memory, std::size_t size) {
  return isServed() ? realRealloc(memory, size) : nullptr;
}

void *countedNew(std::size_t size) {
  return servedOrRaised(realNew, size);
}

void *countedNewArray(std::size_t size) {
  return servedOrRaised(realNewArray, size);
}

void *countedNothrowNewArray(std::size_t size, const std::nothrow_t &nothrow) {
  return isServed() ? realNothrowNewArray(size, nothrow) : nullptr;
}

std::size_t nimbo::allocationCount() {
  return allocations;
}

nimbo::FailingAllocations::FailingAllocations(std::size_t first) {
  served = first;
  hasFailed = false;
}

nimbo::FailingAllocations::~FailingAllocations() {
  served = kNever;
}

bool nimbo::FailingAllocations::haveHappened() const {
  return hasFailed;
}
