// SPDX-License-Identifier: Apache-2.0
#include "importers/Packages/Package.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <locale.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <vector>

#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kChunkBytes = 64u << 10;

/// The signature of a compound file, in which documents stand that need a password, and how their content is
/// called there.
constexpr std::string_view kCompoundFile = "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1";
constexpr std::string_view kEncryptedPackage("E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0", 32);
constexpr std::uint32_t kMaximumSearchedBytes = 64u << 20;

/// A file as the library reads it. It says no when the time is over, also in the midst of a part that is
/// skipped.
struct Source {
  int descriptor;
  DocumentBudget &budget;
  std::array<char, kChunkBytes> chunk;

  static la_ssize_t read(struct archive *archive, void *data, const void **bytes) {
    auto &self = *static_cast<Source *>(data);
    if (!self.budget.checkTime()) {
      archive_set_error(archive, ETIMEDOUT, "out of time");
      return ARCHIVE_FATAL;
    }
    *bytes = self.chunk.data();
    const la_ssize_t count = TEMP_FAILURE_RETRY(::read(self.descriptor, self.chunk.data(), self.chunk.size()));
    return count < 0 ? ARCHIVE_FATAL : count;
  }
  static la_int64_t seek(struct archive *, void *data, la_int64_t offset, int whence) {
    const auto place = ::lseek(static_cast<Source *>(data)->descriptor, offset, whence);
    return place < 0 ? ARCHIVE_FATAL : place;
  }
};

struct ReadFree {
  void operator()(struct archive *archive) const noexcept { archive_read_free(archive); }
};

/// The library gives names in the character set of the thread's locale, and none that it cannot hold.
class NamesInUTF8 {
 public:
  NamesInUTF8() : previous_(::uselocale(locale())) {}
  NamesInUTF8(const NamesInUTF8 &) = delete;
  NamesInUTF8 &operator=(const NamesInUTF8 &) = delete;
  ~NamesInUTF8() { ::uselocale(previous_); }

 private:
  static locale_t locale() {
    static const locale_t made = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return made;
  }

  locale_t previous_;
};

bool needsPassword(int descriptor) {
  ::lseek(descriptor, 0, SEEK_SET);
  const NSData data = readData(descriptor, 0, kMaximumSearchedBytes);
  return data.view().starts_with(kCompoundFile) &&
         data.view().find(kEncryptedPackage) != std::string_view::npos;
}

}  // namespace

Package::Package(const NSString &path, DocumentBudget &budget) : budget_(budget) {
  std::uint64_t size = 0;
  NSError error;
  file_ = openRegularFile(path, &size, &error);
  if (!file_)
    budget.fail(error.errorCode(), error.localizedFailureReason.UTF8String());
  else if (size == 0)
    budget.fail(ErrorCode::incomplete, "the file is empty");
}

bool Package::read(const std::function<PartReader(const std::string &)> &readerOf) {
  if (!file_ || budget_.isSpent()) return false;
  if (::lseek(file_.get(), 0, SEEK_SET) != 0) {
    budget_.fail(ErrorCode::unreadable, "the file cannot be read");
    return false;
  }
  const NamesInUTF8 names;
  const std::unique_ptr<struct archive, ReadFree> archive(archive_read_new());
  const auto source = std::make_unique<Source>(Source{file_.get(), budget_, {}});
  archive_read_support_format_zip(archive.get());
  archive_read_set_seek_callback(archive.get(), Source::seek);
  int status = archive_read_open(archive.get(), source.get(), nullptr, Source::read, nullptr);
  if (status != ARCHIVE_OK) {
    if (needsPassword(file_.get()))
      budget_.fail(ErrorCode::locked, "the document needs a password");
    else
      budget_.fail(ErrorCode::damaged, "the document is damaged");
    return false;
  }
  archive_entry *entry = nullptr;
  std::uint32_t parts = 0;
  while ((status = archive_read_next_header(archive.get(), &entry)) == ARCHIVE_OK || status == ARCHIVE_WARN) {
    if (++parts > kMaximumParts) {
      budget_.fail(ErrorCode::incomplete, "only the first 65536 parts are read");
      return false;
    }
    const char *const name = archive_entry_pathname(entry);
    const PartReader reader = name ? readerOf(nameOfPart(name)) : PartReader();
    if (!reader) continue;
    if (archive_entry_is_data_encrypted(entry)) {
      budget_.fail(ErrorCode::locked, "the document needs a password");
      return false;
    }
    if (!readPart(archive.get(), reader)) return false;
  }
  if (status != ARCHIVE_EOF) budget_.fail(ErrorCode::damaged, "the document is damaged");
  return status == ARCHIVE_EOF;
}

/// Whether the archive can be read on.
bool Package::readPart(::archive *archive, const PartReader &reader) {
  for (std::vector<char> chunk(kChunkBytes);;) {
    const la_ssize_t count = archive_read_data(archive, chunk.data(), chunk.size());
    if (count < 0) {
      budget_.fail(ErrorCode::damaged, "a part of the document is damaged");
      return count != ARCHIVE_FATAL;
    }
    const auto size = static_cast<std::size_t>(count);
    if (!budget_.spendBytes(size)) return false;
    if (!reader({chunk.data(), size}) || size == 0) return !budget_.isSpent();
  }
}

std::string Package::nameOfPart(std::string_view name) {
  while (name.starts_with('/')) name.remove_prefix(1);
  std::string known(name);
  for (char &c : known) c = c == '\\' ? '/' : toASCIILower(c);
  return known;
}

std::string Package::nameOfTarget(std::string_view part, std::string_view target) {
  std::string folder = nameOfPart(part);
  folder.resize(folder.rfind('/') == folder.npos ? 0 : folder.rfind('/'));
  std::string path = nameOfPart(target);
  if (target.starts_with('/')) return path;
  std::string_view rest = path;
  while (rest.starts_with("../") || rest.starts_with("./")) {
    if (rest.starts_with("..")) folder.resize(folder.rfind('/') == folder.npos ? 0 : folder.rfind('/'));
    rest.remove_prefix(rest.find('/') + 1);
  }
  return folder.empty() ? std::string(rest) : folder + "/" + std::string(rest);
}

}  // namespace nimbo
