// SPDX-License-Identifier: Apache-2.0
//
// Times thumbnails of 256 pixels, in this process, beside vipsthumbnail and convert, which are started for
// each:
//
//     bench-image-thumbnail PICTURE...
//
// Of each picture it prints the first thumbnail of a process, which loads the engine, and medians of the later
// ones, in turns with the others, and then the peaks of memory of processes that make one. The thumbnails have
// to be of one size and nearly one brightness.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/ImageIO/CGImageSource.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kSide = 256;
constexpr int kRounds = 9;
/// Of 255, in the mean: the programs shrink and smooth in different ways.
constexpr double kMaximumDifference = 6;

CGImage thumbnail(const char *path) {
  const auto source = CGImageSource::sourceWithContentsOfFile(NSString::stringWithUTF8String(path));
  return source ? source->createThumbnailAtIndex(0, {.maxPixelSize = kSide, .createFromImageAlways = true})
                : CGImage();
}

double brightness(const CGImage &image) {
  double sum = 0;
  for (std::uint32_t y = 0; y < image.height(); ++y)
    for (std::uint32_t i = 0; i < image.width() * 4; ++i) sum += image.pixels()[y * image.bytesPerRow() + i];
  return sum / (4.0 * image.width() * image.height());
}

template <class Work>
double milliseconds(const Work &work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

/// Runs the work in a process of its own; answers its peak of memory in MiB. It ends this one when it fails.
template <class Work>
double peakOf(const char *name, const Work &work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work() ? 0 : 1);
  rusage usage = {};
  int status = -1;
  if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) {
    std::fprintf(stderr, "%s failed\n", name);
    std::exit(1);
  }
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

double peakOfProgram(const std::vector<std::string> &command) {
  return peakOf(command[0].c_str(), [&] {
    std::vector<char *> words;
    for (const std::string &word : command) words.push_back(const_cast<char *>(word.c_str()));
    words.push_back(nullptr);
    ::execvp(words[0], words.data());
    return false;
  });
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

bool compare(const char *path) {
  const std::string result = "/tmp/bench-thumbnail-" + std::to_string(::getpid()) + ".png";
  const std::string side = std::to_string(kSide);
  const std::vector<std::string> others[] = {
      {"vipsthumbnail", path, "--size", side, "--no-rotate", "-o", result},
      {"convert", std::string(path) + "[0]", "-thumbnail", side + "x" + side, result},
  };
  // The engine is loaded in the child alone.
  double ourPeak = 0;
  const double first =
      milliseconds([&] { ourPeak = peakOf(path, [&] { return static_cast<bool>(thumbnail(path)); }); });
  std::vector<double> times[3];
  double peaks[2] = {};
  const CGImage ours = thumbnail(path);
  for (int round = 0; round < kRounds; ++round) {
    times[2].push_back(milliseconds([&] { thumbnail(path); }));
    for (std::size_t i = 0; i < 2; ++i) {
      times[i].push_back(milliseconds([&] { peaks[i] = peakOfProgram(others[i]); }));
      if (round > 0) continue;
      const CGImage theirs = thumbnail(result.c_str());
      if (std::max(ours.width(), ours.height()) == std::max(theirs.width(), theirs.height()) &&
          std::abs(brightness(ours) - brightness(theirs)) <= kMaximumDifference)
        continue;
      std::fprintf(stderr, "%s: not what %s makes of it\n", path, others[i][0].c_str());
      return false;
    }
  }
  ::unlink(result.c_str());
  const double our = median(times[2]);
  std::printf("%s: %.1f ms, %.0f MiB; the first %.1f ms", path, our, ourPeak, first);
  for (std::size_t i = 0; i < 2; ++i)
    std::printf("; %s %.1f ms (%.1f x), %.0f MiB", others[i][0].c_str(), median(times[i]),
                median(times[i]) / our, peaks[i]);
  std::printf("\n");
  return true;
}

}  // namespace
}  // namespace nimbo

int main(int count, char **arguments) {
  bool isRight = count > 1;
  // Each picture finds a process without the engine.
  for (int i = 1; i < count; ++i) {
    const pid_t child = ::fork();
    if (child == 0) {
      const bool isSame = nimbo::compare(arguments[i]);
      std::fflush(stdout);
      ::_exit(isSame ? 0 : 1);
    }
    int status = -1;
    isRight = child > 0 && ::waitpid(child, &status, 0) == child && status == 0 && isRight;
  }
  if (count < 2) std::fprintf(stderr, "usage: bench-image-thumbnail PICTURE...\n");
  return isRight ? 0 : 1;
}
