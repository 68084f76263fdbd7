// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Interned.hpp"

#include <algorithm>
#include <mutex>
#include <unordered_set>
#include <vector>

#include "platform/AppKit/RecordHash.hpp"
#include "platform/AppKit/TextAttributes.hpp"

namespace nimbo {

namespace {

/// What sweeps are not worth while for.
constexpr std::size_t kFewRecords = 1024;

std::size_t hashOfRecord(const NSTextTable &table) {
  const auto &[identifier, columns, collapses, width] = table;
  return combinedRecordHash(identifier, columns, collapses, width.value, width.unit);
}

std::size_t hashOfRecord(const NSTextTableBlock &block) {
  const auto &[table, row, rowSpan, column, columnSpan, background, borderWidths, borderColors, padding, width,
               alignment] = block;
  const auto fieldHash = [](const auto &value) { return recordHash(value); };
  return combinedRecordHash(table, row, rowSpan, column, columnSpan, background,
                            listHash(borderWidths, fieldHash), listHash(borderColors, fieldHash),
                            listHash(padding, fieldHash), width.value, width.unit, alignment);
}

/// Adds the attributes that a visitor sees to a hash.
struct AttributeHasher {
  std::size_t hash = 0;

  template <class Name, class Value>
  void operator()(Name, const Value &value) {
    hash = combinedHash(hash, recordHash(value));
  }
  void operator()(ParagraphAttribute::TabStops, const std::vector<NSTextTab> &tabs) {
    hash = combinedHash(
        hash, listHash(tabs, [](const NSTextTab &tab) { return combinedRecordHash(tab.type, tab.location); }));
  }
  void operator()(ParagraphAttribute::TextLists, const std::vector<NSTextList> &lists) {
    hash =
        combinedHash(hash, listHash(lists, [](const NSTextList &list) {
                       return combinedRecordHash(list.markerFormat, list.startingItemNumber, list.identifier);
                     }));
  }
  void operator()(ParagraphAttribute::TextBlocks, const std::vector<Interned<NSTextTableBlock>> &blocks) {
    hash = combinedHash(hash, listHash(blocks, [](const auto &block) { return block.hash(); }));
  }
};

template <class Record>
std::size_t hashOfRecord(const Record &record) {
  AttributeHasher hasher;
  visitAttributes(record, hasher);
  return hasher.hash;
}

/// All records of a type that somebody may hold. A handle to one that only the table holds comes from the table
/// alone, behind the lock, so that such a one can go.
template <class Record>
class RecordTable {
 public:
  using Node = detail::InternedNode<Record>;

  static RecordTable &shared() {
    static auto *const table = new RecordTable;  // Texts may live longer than any static object.
    return *table;
  }

  SharedPointer<Node> intern(Record &&record) {
    const Key key{record, hashOfRecord(record)};
    std::vector<SharedPointer<Node>> dropped;  // They end when the lock is open again.
    const std::lock_guard lock(mutex_);
    if (const auto found = nodes_.find(key); found != nodes_.end()) return *found;
    if (nodes_.size() >= sweepAt_) sweep(&dropped);
    return *nodes_.insert(makeShared<Node>(std::move(record), key.hash)).first;
  }

  void sweepAfter(std::size_t released) {
    std::vector<SharedPointer<Node>> dropped;
    const std::lock_guard lock(mutex_);
    if (nodes_.size() >= kFewRecords && released >= nodes_.size() / 4) sweep(&dropped);
  }

 private:
  struct Key {
    const Record &record;
    std::size_t hash;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(const Key &key) const { return key.hash; }
    std::size_t operator()(const SharedPointer<Node> &node) const { return node->hash; }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(const SharedPointer<Node> &a, const SharedPointer<Node> &b) const { return a == b; }
    bool operator()(const Key &key, const SharedPointer<Node> &node) const {
      return key.hash == node->hash && key.record == node->record;
    }
    bool operator()(const SharedPointer<Node> &node, const Key &key) const { return (*this)(key, node); }
  };

  void sweep(std::vector<SharedPointer<Node>> *dropped) {
    for (auto node = nodes_.begin(); node != nodes_.end();)
      if (node->isUnique()) {
        dropped->push_back(*node);
        node = nodes_.erase(node);
      } else {
        ++node;
      }
    if (nodes_.bucket_count() > 4 * std::max(nodes_.size(), kFewRecords)) nodes_.rehash(2 * nodes_.size());
    sweepAt_ = std::max(kFewRecords, 2 * nodes_.size());
  }

  std::mutex mutex_;
  std::unordered_set<SharedPointer<Node>, Hash, Equal> nodes_;
  std::size_t sweepAt_ = kFewRecords;
};

}  // namespace

template <class Record>
Interned<Record>::Interned(Record record) {
  if (record != defaultRecord()) node_ = RecordTable<Record>::shared().intern(std::move(record));
}

template <class Record>
const Record &Interned<Record>::defaultRecord() noexcept {
  static const Record record;
  return record;
}

template class Interned<NSTextTable>;
template class Interned<NSTextTableBlock>;
template class Interned<NSParagraphStyle>;
template class Interned<TextAttributes>;

void sweepInternedRecords(std::size_t released) {
  if (released < kFewRecords / 4) return;
  RecordTable<TextAttributes>::shared().sweepAfter(released);
  RecordTable<NSParagraphStyle>::shared().sweepAfter(released);
  RecordTable<NSTextTableBlock>::shared().sweepAfter(released);
  RecordTable<NSTextTable>::shared().sweepAfter(released);
}

}  // namespace nimbo
