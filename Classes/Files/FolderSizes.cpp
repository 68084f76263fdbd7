// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/FolderSizes.hpp"

#include <algorithm>

namespace nimbo {
namespace {

void add(std::uint64_t &sum, std::uint64_t bytes) {
  if (__builtin_add_overflow(sum, bytes, &sum)) sum = UINT64_MAX;
}

}  // namespace

void FolderSizes::addFile(std::uint32_t folder, std::uint64_t bytes) {
  add(files_[folder], bytes);
}

void FolderSizes::addFolder(std::uint32_t outer, std::uint32_t inner) {
  if (inner == files_.size()) files_.push_back(0);
  places_.push_back({outer, inner});
}

std::uint64_t FolderSizes::total() const {
  if (places_.size() + 1 > files_.size()) return totalOfCircles();
  std::uint64_t sum = 0;
  for (const std::uint64_t bytes : files_) add(sum, bytes);
  return sum;
}

/// Tarjan's algorithm for strongly connected components, which it completes from the inside out, without
/// recursion.
std::uint64_t FolderSizes::totalOfCircles() const {
  const std::size_t count = files_.size();
  // The folders in folder f are inner[firstInner[f]] to inner[firstInner[f + 1] - 1].
  std::vector<std::size_t> firstInner(count + 1);
  for (const Place &place : places_) ++firstInner[place.outer + 1];
  for (std::size_t folder = 0; folder < count; ++folder) firstInner[folder + 1] += firstInner[folder];
  std::vector<std::uint32_t> inner(places_.size());
  std::vector<std::size_t> next(firstInner.begin(), firstInner.end() - 1);
  for (const Place &place : places_) inner[next[place.outer]++] = place.inner;

  constexpr std::size_t kComplete = SIZE_MAX;
  std::copy(firstInner.begin(), firstInner.end() - 1, next.begin());
  std::vector<std::uint64_t> sizes = files_;
  // When each folder was met, from 1; the earliest met one that a way leads back to.
  std::vector<std::size_t> met(count), earliest(count);
  std::vector<std::uint32_t> way, open;
  std::size_t clock = 0;
  const auto meet = [&](std::uint32_t folder) {
    met[folder] = earliest[folder] = ++clock;
    way.push_back(folder);
    open.push_back(folder);
  };
  for (meet(0); !way.empty();) {
    const std::uint32_t folder = way.back();
    if (next[folder] < firstInner[folder + 1]) {
      const std::uint32_t other = inner[next[folder]++];
      if (met[other] == 0)
        meet(other);
      else
        earliest[folder] = std::min(earliest[folder], met[other]);
      continue;
    }
    way.pop_back();
    if (!way.empty()) earliest[way.back()] = std::min(earliest[way.back()], earliest[folder]);
    if (earliest[folder] < met[folder]) continue;
    // The circle is complete: the folders that are open from this one on.
    const auto members = std::find(open.rbegin(), open.rend(), folder).base() - 1;
    std::uint64_t size = 0;
    for (auto member = members; member != open.end(); ++member) {
      add(size, files_[*member]);
      for (std::size_t i = firstInner[*member]; i < firstInner[*member + 1]; ++i)
        if (met[inner[i]] == kComplete) add(size, sizes[inner[i]]);
    }
    for (auto member = members; member != open.end(); ++member) {
      sizes[*member] = size;
      met[*member] = kComplete;
    }
    open.erase(members, open.end());
  }
  return sizes[0];
}

}  // namespace nimbo
