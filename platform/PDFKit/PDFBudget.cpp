// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFBudget.hpp"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace nimbo::detail {

namespace {

/// The limits are looked at, and the clock is read, once in so much work.
constexpr std::uint64_t kWorkBetweenChecks = 64;
/// A block of memory costs one unit of work, and another for so many bytes by which it grows.
constexpr std::size_t kBytesPerWork = 256;
/// What MuPDF's functions may put on the stack by calling themselves; less than threads have.
constexpr std::uintptr_t kMaximumStackBytes = std::uintptr_t{2} << 20;

std::uintptr_t stackAddress() {
  return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

}  // namespace

PDFBudget::PDFBudget(std::size_t memoryBytes)
    : memoryBytes_(std::min<std::size_t>(memoryBytes, PTRDIFF_MAX)),
      functions_{this, allocate, reallocate, release} {}

PDFBudget::~PDFBudget() {
  for (Block *block = blocks_.next; block != &blocks_;) std::free(std::exchange(block, block->next));
}

void PDFBudget::beginStep(std::uint64_t work, const Deadline &deadline) {
  work_ = work;
  spent_ = 0;
  nextCheck_ = 0;
  deadline_ = deadline;
  lowestStackAddress_ = stackAddress() - kMaximumStackBytes;
  excess_ = Excess::none;
  setCanvas(0, 0);
}

PDFBudget::Excess PDFBudget::endStep() {
  work_ = nextCheck_ = UINT64_MAX;
  deadline_ = Deadline::never();
  lowestStackAddress_ = 0;
  return std::exchange(excess_, Excess::none);
}

bool PDFBudget::spend(std::uint64_t work) {
  spent_ += work;
  if (spent_ >= nextCheck_) check();
  return excess_ == Excess::none && stackAddress() >= lowestStackAddress_;
}

void PDFBudget::check() {
  nextCheck_ = spent_ + kWorkBetweenChecks;
  if (excess_ != Excess::none) return;
  if (spent_ >= work_)
    excess_ = Excess::work;
  else if (deadline_.isOver())
    excess_ = Excess::time;
}

bool PDFBudget::allows(std::size_t size, std::size_t replaced) {
  spend(1 + (size > replaced ? size - replaced : 0) / kBytesPerWork);
  return excess_ == Excess::none && size <= memoryBytes_ && used_ - replaced <= memoryBytes_ - size;
}

void *PDFBudget::enter(Block *block, std::size_t size) {
  block->size = size;
  block->previous = &blocks_;
  block->next = blocks_.next;
  block->next->previous = block;
  blocks_.next = block;
  used_ += size;
  return block + 1;
}

void PDFBudget::remove(Block *block) {
  block->previous->next = block->next;
  block->next->previous = block->previous;
  used_ -= block->size;
}

void *PDFBudget::allocate(void *self, std::size_t size) {
  auto &budget = *static_cast<PDFBudget *>(self);
  if (!budget.allows(size, 0)) return nullptr;
  // MuPDF looks into some blocks before it writes them; its answers are the same each time if they are empty.
  void *const memory = std::calloc(1, sizeof(Block) + size);
  return memory ? budget.enter(new (memory) Block, size) : nullptr;
}

void *PDFBudget::reallocate(void *self, void *bytes, std::size_t size) {
  if (!bytes) return allocate(self, size);
  auto &budget = *static_cast<PDFBudget *>(self);
  Block *const block = static_cast<Block *>(bytes) - 1;
  const std::size_t oldSize = block->size;
  if (!budget.allows(size, oldSize)) return nullptr;
  budget.remove(block);
  void *const memory = std::realloc(block, sizeof(Block) + size);
  if (memory) return budget.enter(static_cast<Block *>(memory), size);
  budget.enter(block, oldSize);
  return nullptr;
}

void PDFBudget::release(void *self, void *bytes) {
  if (!bytes) return;
  Block *const block = static_cast<Block *>(bytes) - 1;
  static_cast<PDFBudget *>(self)->remove(block);
  std::free(block);
}

}  // namespace nimbo::detail
