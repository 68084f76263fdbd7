// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Interned.hpp"

#include <algorithm>
#include <bit>
#include <mutex>
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
/// alone, behind the lock, so that such a one can go. The slots have the hashes beside them: a search touches
/// the records whose hash is the one it looks for, and growing touches none.
template <class Record>
class RecordTable {
 public:
  using Node = detail::InternedNode<Record>;

  static RecordTable &shared() {
    static auto *const table = new RecordTable;  // Texts may live longer than any static object.
    return *table;
  }

  SharedPointer<Node> intern(Record &&record) {
    const std::size_t hash = spread(hashOfRecord(record));
    std::vector<SharedPointer<Node>> dropped;  // They end when the lock is open again.
    const std::lock_guard lock(mutex_);
    std::size_t place = hash & mask();
    for (; slots_[place].node; place = (place + 1) & mask())
      if (slots_[place].hash == hash && slots_[place].node->record == record) return slots_[place].node;
    if (count_ >= sweepAt_) {
      sweep(&dropped);
      place = freePlace(hash);
    }
    auto node = makeShared<Node>(std::move(record));
    slots_[place] = {hash, node};
    ++count_;
    return node;
  }

  void sweepAfter(std::size_t released) {
    std::vector<SharedPointer<Node>> dropped;
    const std::lock_guard lock(mutex_);
    if (count_ >= kFewRecords && released >= count_ / 4) sweep(&dropped);
  }

 private:
  struct Slot {
    std::size_t hash = 0;
    /// Null where the slot is free.
    SharedPointer<Node> node;
  };

  /// Brings all bits of a hash to where those for the slots are taken from.
  static std::size_t spread(std::size_t hash) {
    hash *= 0x9e3779b97f4a7c15;
    return hash ^ (hash >> 32);
  }
  std::size_t mask() const { return slots_.size() - 1; }
  std::size_t freePlace(std::size_t hash) const {
    std::size_t place = hash & mask();
    while (slots_[place].node) place = (place + 1) & mask();
    return place;
  }

  /// Hands out what nobody holds, and makes room for as many again as are left.
  void sweep(std::vector<SharedPointer<Node>> *dropped) {
    std::vector<Slot> kept;
    kept.reserve(count_);
    dropped->reserve(count_);
    for (Slot &slot : slots_) {
      if (!slot.node) continue;
      if (slot.node.isUnique())
        dropped->push_back(std::move(slot.node));
      else
        kept.push_back(std::move(slot));
    }
    count_ = kept.size();
    sweepAt_ = std::max(kFewRecords, 2 * count_);
    slots_ = std::vector<Slot>(std::bit_ceil(2 * sweepAt_));
    for (Slot &slot : kept) {
      const std::size_t place = freePlace(slot.hash);
      slots_[place] = std::move(slot);
    }
  }

  std::mutex mutex_;
  /// A power of two, less than half of them taken.
  std::vector<Slot> slots_ = std::vector<Slot>(2 * kFewRecords);
  std::size_t count_ = 0;
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
