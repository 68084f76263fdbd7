// SPDX-License-Identifier: Apache-2.0
#include "tests/support/FileReaders.hpp"

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {

namespace fs = std::filesystem;

std::string contentsOfFile(const std::string &path) {
  return std::string(NSData::dataWithContentsOfFile(NSString::stringWithUTF8String(path)).view());
}

namespace {

constexpr std::size_t kPlaces = 50;
constexpr int kReadsOfChangingFile = 100;
constexpr int kChangesWhileReading = 20;
/// Far more than a loaded machine needs under sanitizers.
constexpr unsigned kSecondsUntilAHang = 100;

/// Ends the program when its reader waits for what never comes.
class Watchdog {
 public:
  Watchdog() {
    std::signal(SIGALRM, [](int) {
      constexpr char kMessage[] = "The reader hangs.\n";
      static_cast<void>(!::write(STDERR_FILENO, kMessage, sizeof kMessage - 1));
      ::_exit(1);
    });
    ::alarm(kSecondsUntilAHang);
  }
  Watchdog(const Watchdog &) = delete;
  Watchdog &operator=(const Watchdog &) = delete;
  ~Watchdog() { ::alarm(0); }
};

/// Takes from this thread what lets root read files that forbid it; who is not root loses nothing.
class ReadsNoMoreThanAllowed {
 public:
  ReadsNoMoreThanAllowed() {
    ::syscall(SYS_capget, &header_, before_);
    __user_cap_data_struct less[2] = {before_[0], before_[1]};
    less[0].effective &= ~(1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH);
    ::syscall(SYS_capset, &header_, less);
  }
  ReadsNoMoreThanAllowed(const ReadsNoMoreThanAllowed &) = delete;
  ReadsNoMoreThanAllowed &operator=(const ReadsNoMoreThanAllowed &) = delete;
  ~ReadsNoMoreThanAllowed() { ::syscall(SYS_capset, &header_, before_); }

 private:
  __user_cap_header_struct header_ = {_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct before_[2] = {};
};

/// The reader's answer. Nil must come with a reason.
id answerOf(const NSString &path, NSError *error) {
  id answer = FileReaders::GetParam().read(path, error);
  if (!answer && FileReaders::GetParam().saysWhy) {
    EXPECT_NE(error->errorCode(), ErrorCode::none);
    EXPECT_GT(error->localizedFailureReason.length(), 0u);
  }
  return answer;
}

void expectNil(const char *what, const NSString &path, ErrorCode code) {
  SCOPED_TRACE(what);
  NSError error;
  EXPECT_FALSE(answerOf(path, &error));
  EXPECT_TRUE(error.errorCode() == code || !FileReaders::GetParam().saysWhy)
      << error.localizedFailureReason.UTF8String();
}

TEST_P(FileReaders, TakeWholeAndDamagedFiles) {
  const auto &[name, file, whole, read, saysWhy, noticesCuts] = GetParam();
  const Watchdog watchdog;
  const TemporaryFolder folder;
  NSError error;
  const id ofWhole = answerOf(folder.write(file, whole), &error);
  EXPECT_TRUE(ofWhole);
  EXPECT_FALSE(error) << error.localizedFailureReason.UTF8String();
  error = {};
  EXPECT_TRUE(answerOf(folder.write(file, ""), &error) || error.errorCode() == ErrorCode::incomplete ||
              !saysWhy)
      << error.localizedFailureReason.UTF8String();
  for (std::size_t i = 1; i < kPlaces; ++i) {
    const std::size_t place = whole.size() * i / kPlaces;
    SCOPED_TRACE("byte " + std::to_string(place));
    std::string changed = whole, holed = whole;
    changed[place] = static_cast<char>(~changed[place]);
    holed.replace(place, whole.size() / 20, whole.size() / 20, '\0');
    for (const std::string &damaged : {whole.substr(0, place), changed, holed}) {
      error = {};
      fs::remove(folder.path() / file);
      const id answer = answerOf(folder.write(file, damaged), &error);
      EXPECT_TRUE(error || answer == ofWhole || damaged.size() == whole.size() || !noticesCuts) << "no reason";
    }
  }
  for (const char *extension : {"gif", "heic", "html", "jpg", "pdf", "plist", "psd", "tiff", "txt", "zip"}) {
    SCOPED_TRACE(extension);
    error = {};
    answerOf(folder.write(fs::path(file).replace_extension(extension).native(), whole), &error);
  }
}

TEST_P(FileReaders, RefuseWhatIsNoReadableFile) {
  const auto &[name, file, whole, read, saysWhy, noticesCuts] = GetParam();
  const Watchdog watchdog;
  const TemporaryFolder folder;
  const NSString path = folder.write(file, whole);
  const fs::path native = folder.path() / file;
  {
    const ReadsNoMoreThanAllowed allowed;
    fs::permissions(native, fs::perms::none);
    ASSERT_NE(::access(native.c_str(), F_OK), -1);
    ASSERT_FALSE(std::ifstream(native)) << "the file system does not mind permissions";
    expectNil("not readable", path, ErrorCode::unreadable);
  }
  fs::remove(native);
  expectNil("missing", path, ErrorCode::noSuchFile);
  fs::create_directory(native);
  expectNil("a folder", path, ErrorCode::unreadable);
  fs::remove(native);
  ASSERT_EQ(::mkfifo(native.c_str(), 0600), 0);
  expectNil("a FIFO without a writer", path, ErrorCode::unreadable);
  expectNil("no path", NSString(), ErrorCode::noSuchFile);
}

TEST_P(FileReaders, BearThatTheFileChangesMeanwhile) {
  const auto &[name, file, whole, read, saysWhy, noticesCuts] = GetParam();
  const Watchdog watchdog;
  const TemporaryFolder folder;
  const NSString path = folder.string(file);
  const fs::path native = folder.path() / file, spare = folder.path() / "spare";
  NSError error;
  const id ofEmpty = answerOf(folder.write(file, ""), &error);
  const id ofWhole = answerOf(folder.write(file, whole), &error);
  for (const bool inPlace : {false, true}) {
    SCOPED_TRACE(inPlace ? "shrunk and written again" : "replaced");
    std::atomic<bool> isOver = false;
    std::atomic<int> changes = 0;
    std::thread writer([&, &bytes = whole, &target = file] {
      for (; !isOver; ++changes) {
        if (inPlace) {
          fs::resize_file(native, bytes.size() / 2);
          folder.write(target, bytes);
        } else {
          for (const std::string_view content : {std::string_view(), std::string_view(bytes)}) {
            folder.write("spare", content);
            fs::rename(spare, native);
          }
        }
      }
    });
    for (int reads = 0; reads < kReadsOfChangingFile || changes < kChangesWhileReading; ++reads) {
      error = {};
      const id answer = answerOf(path, &error);
      EXPECT_TRUE(inPlace || answer == ofWhole || answer == ofEmpty) << "neither the old nor the new file";
    }
    isOver = true;
    writer.join();
  }
}

}  // namespace
}  // namespace nimbo
