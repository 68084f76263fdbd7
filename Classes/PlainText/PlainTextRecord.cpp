// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextRecord.hpp"

#include <utility>

#include "Classes/PlainText/PlainTextConversion.hpp"

namespace nimbo {

PlainTextRecord::PlainTextRecord(const PlainTextOptions &options)
    : conversion_(std::make_unique<detail::PlainTextConversion>(options)) {}

PlainTextRecord::~PlainTextRecord() = default;

void PlainTextRecord::restartEverywhere() {
  conversion_->restartEverywhere();
}

bool PlainTextRecord::hasText() const {
  return conversion_->writer.hasText();
}

bool PlainTextRecord::isJunkFound() const {
  return conversion_->isJunkFound;
}

NSString PlainTextRecord::text() && {
  return std::move(conversion_->writer).string();
}

}  // namespace nimbo
