// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/AppKit/Pasteboard/PasteboardFeed.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {

/// Bytes that several types, and those who are just being sent them, share.
using Bytes = std::shared_ptr<const std::string>;

/// What is offered to others: types, which are known from the beginning, and their data, which come later
/// through the feed that PasteboardFeed.hpp describes.
class Contents {
 public:
  /// What is known of a type's data.
  enum class State { notOffered, awaited, missing, given };

  Contents(std::vector<std::string> types, FileDescriptor feed);

  /// In the order of who offers them.
  const std::vector<std::string> &types() const { return types_; }
  /// The feed, which does not block; negative when nothing more comes.
  int feed() const { return feed_.get(); }
  /// Takes what the feed has now.
  void receive();
  /// Nothing more is taken.
  void closeFeed();

  State stateOf(const std::string &type) const;
  /// The data of a type; null unless it is given.
  Bytes bytesOf(const std::string &type) const;
  /// Whether there is anything to be given, now or later.
  bool isWorthKeeping() const;

 private:
  struct Entry {
    bool isMissing = false;
    Bytes bytes;
  };

  /// What the record under way says of itself, once its beginning is there.
  PasteboardRecord record() const;
  /// How much of its next part is still to come.
  std::size_t missingBytes() const;
  void finishRecord();

  std::vector<std::string> types_;
  std::map<std::string, Entry> entries_;
  FileDescriptor feed_;
  /// The record under way: both numbers and the names, and the data.
  std::string head_, data_;
};

}  // namespace nimbo
