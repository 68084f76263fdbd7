// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbo {

inline void append16(std::string &bytes, std::size_t number) {
  bytes += static_cast<char>(number & 0xff);
  bytes += static_cast<char>(number >> 8 & 0xff);
}

inline void append32(std::string &bytes, std::size_t number) {
  append16(bytes, number & 0xffff);
  append16(bytes, number >> 16);
}

/// A zip archive of stored entries {name, content}.
inline std::string zipArchive(const std::vector<std::pair<std::string_view, std::string_view>> &entries) {
  std::string archive;
  std::string directory;
  for (const auto &[name, content] : entries) {
    std::string common;
    for (std::size_t field : {20, 0, 0, 0, 0}) append16(common, field);
    for (std::size_t field : {std::size_t{0}, content.size(), content.size()}) append32(common, field);
    append16(common, name.size());
    append16(common, 0);
    directory.append("PK\1\2\24\0", 6).append(common);
    for (int field = 0; field < 3; ++field) append16(directory, 0);
    append32(directory, 0);
    append32(directory, archive.size());
    directory += name;
    archive.append("PK\3\4", 4).append(common).append(name).append(content);
  }
  const std::size_t start = archive.size();
  archive += directory;
  archive.append("PK\5\6\0\0\0\0", 8);
  append16(archive, entries.size());
  append16(archive, entries.size());
  append32(archive, directory.size());
  append32(archive, start);
  append16(archive, 0);
  return archive;
}

/// An OLE compound file with empty streams right below its root, each the right sibling of the one before it,
/// and with one stream inside the last, which then is a storage, when `inside` is not empty.
inline std::string compoundFile(const std::vector<std::u16string_view> &names,
                                std::u16string_view inside = {}) {
  constexpr std::size_t kNone = 0xffffffff;
  std::vector<std::string> entries;
  const auto add = [&](std::u16string_view name, char type, std::size_t right, std::size_t child) {
    std::string entry;
    for (char16_t unit : name) append16(entry, unit);
    entry.resize(64, '\0');
    append16(entry, 2 * name.size() + 2);
    entry += type;
    entry += '\1';
    append32(entry, kNone);
    append32(entry, right);
    append32(entry, child);
    entry.resize(128, '\0');
    entries.push_back(entry);
  };
  add(u"Root Entry", 5, kNone, names.empty() ? kNone : 1);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool isLast = i + 1 == names.size();
    const bool isStorage = isLast && !inside.empty();
    add(names[i], isStorage ? 1 : 2, isLast ? kNone : i + 2, isStorage ? names.size() + 1 : kNone);
  }
  if (!inside.empty()) add(inside, 2, kNone, kNone);
  while (entries.size() % 4 != 0) entries.emplace_back(128, '\0');

  // Sector 0 is the allocation table, the directory follows.
  std::string file("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1", 8);
  file.resize(24, '\0');
  for (std::size_t field : {0x3e, 3, 0xfffe, 9, 6}) append16(file, field);
  file.resize(44, '\0');
  append32(file, 1);
  append32(file, 1);
  file.resize(68, '\0');
  append32(file, 0xfffffffe);
  append32(file, 0);
  append32(file, 0);
  file.resize(512, '\xff');
  const std::size_t sectors = entries.size() / 4;
  append32(file, 0xfffffffd);
  for (std::size_t sector = 1; sector <= sectors; ++sector)
    append32(file, sector == sectors ? 0xfffffffe : sector + 1);
  file.resize(1024, '\xff');
  for (const std::string &entry : entries) file += entry;
  return file;
}

}  // namespace nimbo
