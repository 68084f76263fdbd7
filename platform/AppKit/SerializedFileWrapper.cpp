// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/SerializedFileWrapper.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace nimbo {

namespace {

constexpr std::string_view kMagic("rtfd\0\0\0\0", 8);
constexpr std::string_view kAttributesName = ".";
constexpr std::uint32_t kAttributesLength = 16;
constexpr std::uint32_t kFileMode = 0644;

enum EntryKind : std::uint32_t { kFile = 1, kLink = 2, kFolder = 3 };

/// Writes; more than data may hold is not kept.
class FolderWriter {
 public:
  bool writeFolder(const NSFileWrapper &folder, bool withAttributes, std::uint32_t depth) {
    if (depth > NSFileWrapper::kMaximumDepth) return false;
    const auto &files = folder.fileWrappers();
    const std::size_t count = files.size() + (withAttributes ? 1 : 0);
    writeNumber(kFolder);
    writeNumber(count);
    for (const auto &[name, file] : files) writeText(name.UTF8String());
    if (withAttributes) writeText(kAttributesName);
    const std::size_t lengths = bytes_.size();
    bytes_.append(4 * count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t start = bytes_.size();
      if (i == files.size())
        writeAttributes(files);
      else if (!writeEntry(files[i].second, depth))
        return false;
      if (bytes_.size() > NSNotFound) return false;
      putNumber(lengths + 4 * i, bytes_.size() - start);
    }
    return true;
  }

  std::string bytes_{kMagic};

 private:
  bool writeEntry(const NSFileWrapper &file, std::uint32_t depth) {
    if (file.isDirectory()) return writeFolder(file, false, depth + 1);
    writeNumber(file.isRegularFile() ? kFile : kLink);
    if (file.isRegularFile())
      writeText(file.regularFileContents().view());
    else
      writeText(file.symbolicLinkDestination().UTF8String());
    return true;
  }

  void writeAttributes(const std::vector<std::pair<NSString, NSFileWrapper>> &files) {
    writeNumber(kFile);
    const std::size_t length = bytes_.size();
    writeNumber(0);
    writeNumber(files.size());
    for (const auto &[name, file] : files) writeText(name.UTF8String());
    for (std::size_t i = 0; i < files.size(); ++i)
      for (const std::uint32_t number : {kAttributesLength, 0u, kFileMode, 0u, 0u}) writeNumber(number);
    putNumber(length, bytes_.size() - length - 4);
  }

  void writeNumber(std::size_t number) {
    bytes_.append(4, '\0');
    putNumber(bytes_.size() - 4, number);
  }

  void putNumber(std::size_t at, std::size_t number) {
    for (std::size_t i = 0; i < 4; ++i) bytes_[at + i] = static_cast<char>(number >> (8 * i));
  }

  void writeText(std::string_view text) {
    writeNumber(text.size());
    bytes_ += text;
  }
};

/// Reads from a part of the data, up to its end.
class FolderReader {
 public:
  FolderReader(const NSData &data, std::uint32_t start, std::uint32_t end)
      : data_(data), at_(start), end_(end) {}

  NSFileWrapper readEntry(const NSString &name, std::uint32_t depth, std::uint32_t *files) {
    const std::uint32_t kind = readNumber().value_or(0);
    if (kind == kFolder) return readFolder(name, depth, files);
    if (kind != kFile && kind != kLink) return {};
    const std::optional<NSRange> range = readRange();
    if (!range) return {};
    const NSData contents = data_.subdataWithRange(*range);
    if (kind == kFile) return NSFileWrapper::regularFileWithContents(contents, name);
    return NSFileWrapper::symbolicLinkWithDestination(NSString::stringWithLossyUTF8String(contents.view()),
                                                      name);
  }

 private:
  /// What follows the number of the kind. Nil when it is damaged, or there are too many files.
  NSFileWrapper readFolder(const NSString &folderName, std::uint32_t depth, std::uint32_t *files) {
    const std::optional<std::uint32_t> count = readNumber();
    // Each entry takes at least the lengths of its name and of itself.
    if (!count || *count > (end_ - at_) / 8 || depth > NSFileWrapper::kMaximumDepth) return {};
    *files += *count;
    if (*files > NSFileWrapper::kMaximumFiles) return {};
    std::vector<std::string_view> names;
    for (std::uint32_t i = 0; i < *count; ++i) {
      const std::optional<NSRange> name = readRange();
      if (!name) return {};
      names.push_back(data_.view().substr(name->location, name->length));
    }
    std::vector<std::uint32_t> lengths;
    for (std::uint32_t i = 0; i < *count; ++i) {
      const std::optional<std::uint32_t> length = readNumber();
      if (!length) return {};
      lengths.push_back(*length);
    }
    std::vector<NSFileWrapper> entries;
    for (std::uint32_t i = 0; i < *count; ++i) {
      if (lengths[i] > end_ - at_) return {};
      if (names[i] != kAttributesName) {
        FolderReader entry(data_, at_, at_ + lengths[i]);
        entries.push_back(entry.readEntry(NSString::stringWithLossyUTF8String(names[i]), depth + 1, files));
        if (!entries.back()) return {};
      }
      at_ += lengths[i];
    }
    return NSFileWrapper::directoryWithFileWrappers(std::move(entries), folderName);
  }

  std::optional<std::uint32_t> readNumber() {
    if (end_ - at_ < 4) return {};
    std::uint32_t number = 0;
    for (std::uint32_t i = 0; i < 4; ++i) number |= std::uint32_t{data_.bytes()[at_ + i]} << (8 * i);
    at_ += 4;
    return number;
  }

  /// The bytes behind their length.
  std::optional<NSRange> readRange() {
    const std::optional<std::uint32_t> length = readNumber();
    if (!length || *length > end_ - at_) return {};
    at_ += *length;
    return NSRange{at_ - *length, *length};
  }

  const NSData &data_;
  std::uint32_t at_;
  const std::uint32_t end_;
};

}  // namespace

NSData serializedFolder(const NSFileWrapper &folder) {
  FolderWriter writer;
  if (!writer.writeFolder(folder, true, 0)) return {};
  return NSData::dataWithBytes(writer.bytes_.data(), writer.bytes_.size());
}

NSFileWrapper folderOfSerializedForm(const NSData &data, NSError *error) {
  if (!data.view().starts_with(kMagic)) {
    setError(error, ErrorCode::unsupportedType, "the data is no serialised folder");
    return {};
  }
  std::uint32_t files = 0;
  FolderReader reader(data, static_cast<std::uint32_t>(kMagic.size()), data.length());
  NSFileWrapper folder = reader.readEntry(NSString(), 0, &files);
  if (folder.isDirectory()) return folder;
  setError(error, ErrorCode::damaged, "the serialised folder is damaged or has too many files");
  return {};
}

}  // namespace nimbo
