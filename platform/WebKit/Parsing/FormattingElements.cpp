// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/FormattingElements.hpp"

namespace nimbo {

void FormattingElements::pushMarker() {
  entries_.emplace_back();
  begins_.push_back(entries_.size());
}

void FormattingElements::clearToMarker() {
  if (begins_.empty()) return entries_.clear();
  entries_.resize(begins_.back() - 1);
  begins_.pop_back();
}

void FormattingElements::push(const Entry &entry) {
  std::size_t equal = 0, firstEqual = 0;
  for (std::size_t i = entries_.size(); i-- > begin();) {
    if (entries_[i].name != entry.name || entries_[i].attributesHash != entry.attributesHash) continue;
    ++equal;
    firstEqual = i;
  }
  if (equal >= kMaximumEqual)
    remove(firstEqual);
  else if (entries_.size() - begin() >= kMaximum)
    remove(begin());
  entries_.push_back(entry);
}

void FormattingElements::insert(std::size_t index, const Entry &entry) {
  entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(index), entry);
}

void FormattingElements::remove(std::size_t index) {
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
}

std::size_t FormattingElements::find(HTMLAtom name) const {
  for (std::size_t i = entries_.size(); i-- > begin();)
    if (entries_[i].name == name) return i;
  return kNone;
}

std::size_t FormattingElements::find(HTMLNodeIndex node) const {
  for (std::size_t i = entries_.size(); i-- > begin();)
    if (entries_[i].node == node) return i;
  return kNone;
}

}  // namespace nimbo
