// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>

#include "platform/Foundation/SharedPointer.hpp"

namespace NIMBO_PUBLIC nimbo {

namespace detail {

/// A record as the table of its type holds it.
template <class Record>
struct InternedNode : ReferenceCounted {
  explicit InternedNode(Record &&value) : record(std::move(value)) {}
  InternedNode(const InternedNode &) = delete;

  const Record record;
};

}  // namespace detail

/// An immutable record of which there is one in the process: a handle, one pointer wide; equal records are
/// equal handles. A default-made one is the default-made record. Each type of records has a table behind a
/// lock; what nobody but the table holds any more goes when the table has doubled, or a text of many runs ends.
///
/// Any thread may make, copy and read handles; one handle is changed by one.
///
///     TextAttributes bold;
///     bold.font.weight = kBoldFontWeight;
///     const Interned<TextAttributes> attributes(bold);
///     attributes == Interned(bold);  // true, a comparison of pointers
///     attributes->font.isBold();  // true
template <class Record>
class Interned {
 public:
  /// The default-made record.
  Interned() noexcept = default;
  /// The one record that equals this.
  explicit Interned(Record record);

  /// The record, borrowed.
  const Record &operator*() const noexcept NIMBO_LIFETIMEBOUND {
    return node_ ? node_->record : defaultRecord();
  }
  /// The record, for its members.
  const Record *operator->() const noexcept NIMBO_LIFETIMEBOUND { return &**this; }
  /// Whether the records are equal.
  friend bool operator==(const Interned &a, const Interned &b) noexcept { return a.node_ == b.node_; }
  /// A hash, equal for equal records.
  std::size_t hash() const noexcept { return node_.hash(); }

 private:
  static const Record &defaultRecord() noexcept;

  SharedPointer<detail::InternedNode<Record>> node_;
};

/// Lets records go that nobody holds any more, when so many that have just been let go are a good part of all.
void sweepInternedRecords(std::size_t released);

}  // namespace nimbo
