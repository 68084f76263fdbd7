// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/TableGrid.hpp"

#include <algorithm>

namespace nimbo::detail {

void TableGrid::beginRow(std::uint32_t rowsLeft) {
  ++rowCount_;
  rowsLeft_ = rowsLeft;
  column_ = 0;
}

TableGrid::Place TableGrid::place(std::uint32_t columnSpan, std::uint32_t rowSpan) {
  const std::uint32_t row = rowCount_ - 1;
  const auto isFree = [&](std::uint32_t column) {
    return column >= freeFrom_.size() || freeFrom_[column] <= row;
  };
  while (!isFree(column_)) ++column_;
  Place place;
  place.row = row;
  place.column = column_;
  place.isBeyond = column_ >= kMaximumColumns;
  if (place.isBeyond) return place;
  place.rowSpan = rowSpan == 0 ? rowsLeft_ : std::min({rowSpan, rowsLeft_, kMaximumRowSpan});
  const std::uint32_t most = std::min(columnSpan, kMaximumColumns - column_);
  place.columnSpan = 1;
  while (place.columnSpan < most && isFree(column_ + place.columnSpan)) ++place.columnSpan;

  column_ += place.columnSpan;
  if (freeFrom_.size() < column_) freeFrom_.resize(column_);
  std::fill(freeFrom_.begin() + place.column, freeFrom_.begin() + column_, row + place.rowSpan);
  if (isBegun_.size() <= place.column) isBegun_.resize(place.column + 1);
  isBegun_[place.column] = true;
  return place;
}

void TableGrid::finish() {
  begunBefore_.assign(freeFrom_.size() + 1, 0);
  isBegun_.resize(freeFrom_.size());
  for (std::size_t column = 0; column < isBegun_.size(); ++column)
    begunBefore_[column + 1] = begunBefore_[column] + (isBegun_[column] ? 1 : 0);
}

void TableGrid::narrow(Place *place) const {
  const std::uint32_t first = begunBefore_[place->column];
  place->columnSpan = begunBefore_[place->column + place->columnSpan] - first;
  place->column = first;
}

std::uint32_t TableGrid::columnCount() const {
  return begunBefore_.back();
}

}  // namespace nimbo::detail
