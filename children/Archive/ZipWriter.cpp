// SPDX-License-Identifier: Apache-2.0
#include "children/Archive/ZipWriter.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <locale.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include "children/Archive/ArchiveError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

namespace {

constexpr std::size_t kChunkBytes = 256u << 10;
constexpr mode_t kPermissions = 07777;

}  // namespace

ZipWriter::ZipWriter(int descriptor)
    : archive_(archive_write_new(), archive_write_free),
      entry_(archive_entry_new(), archive_entry_free),
      chunk_(kChunkBytes, '\0') {
  // The last block is not filled up: what follows a table of contents is no zip archive any more.
  if (!archive_ || !entry_ || archive_write_set_format_zip(archive_.get()) != ARCHIVE_OK ||
      archive_write_set_bytes_in_last_block(archive_.get(), 1) != ARCHIVE_OK ||
      archive_write_open_fd(archive_.get(), descriptor) != ARCHIVE_OK)
    throw ArchiveError("an archive cannot be written");
}

ZipWriter::~ZipWriter() {
  // An archive that is not whole gets no table of contents.
  archive_write_fail(archive_.get());
}

archive_entry *ZipWriter::newEntry(const std::string &name, const struct stat &information) {
  archive_entry *entry = archive_entry_clear(entry_.get());
  archive_entry_copy_pathname(entry, name.c_str());
  archive_entry_set_filetype(entry, information.st_mode & S_IFMT);
  archive_entry_set_perm(entry, information.st_mode & kPermissions);
  archive_entry_set_mtime(entry, information.st_mtim.tv_sec, information.st_mtim.tv_nsec);
  return entry;
}

void ZipWriter::writeHeader(const std::string &name) {
  // The library marks names as UTF-8 where the locale's are.
  const bool isUTF8 = static_cast<bool>(NSString::stringWithUTF8String(name));
  if (::setlocale(LC_CTYPE, isUTF8 ? "C.UTF-8" : "C") == nullptr)
    throw ArchiveError("there is no locale of UTF-8");
  if (archive_write_header(archive_.get(), entry_.get()) != ARCHIVE_OK) fail(name);
}

void ZipWriter::write(const std::string &name, std::string_view bytes) {
  if (archive_write_data(archive_.get(), bytes.data(), bytes.size()) < 0) fail(name);
}

void ZipWriter::fail(const std::string &name) {
  const char *reason = archive_error_string(archive_.get());
  throw ArchiveError(name + ": " + (reason ? reason : "it cannot be archived"));
}

void ZipWriter::addFolder(const std::string &name, const struct stat &information) {
  newEntry(name + '/', information);
  writeHeader(name);
}

void ZipWriter::addLink(const std::string &name, const struct stat &information, const std::string &target) {
  archive_entry_copy_symlink(newEntry(name, information), target.c_str());
  writeHeader(name);
}

void ZipWriter::addFile(const std::string &name, const struct stat &information, int descriptor) {
  archive_entry_set_size(newEntry(name, information), information.st_size);
  writeHeader(name);
  for (auto left = static_cast<std::uint64_t>(information.st_size); left > 0;) {
    const ssize_t got = ::read(descriptor, chunk_.data(), std::min<std::uint64_t>(chunk_.size(), left));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw ArchiveError(name, errno);
    if (got == 0) break;
    write(name, std::string_view(chunk_).substr(0, static_cast<std::size_t>(got)));
    left -= static_cast<std::uint64_t>(got);
  }
}

void ZipWriter::addBytes(const std::string &name, const struct stat &information, std::string_view bytes) {
  archive_entry *entry = newEntry(name, information);
  archive_entry_set_filetype(entry, AE_IFREG);
  archive_entry_set_perm(entry, information.st_mode & 0666);
  archive_entry_set_size(entry, static_cast<la_int64_t>(bytes.size()));
  writeHeader(name);
  write(name, bytes);
}

void ZipWriter::close() {
  if (archive_write_close(archive_.get()) != ARCHIVE_OK) fail("the archive");
}

}  // namespace nimbo
