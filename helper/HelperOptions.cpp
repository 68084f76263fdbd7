// SPDX-License-Identifier: Apache-2.0
#include "helper/HelperOptions.hpp"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace nimbo {
namespace {

constexpr auto kHelp = R"(usage: quiverleaf-helper [--idle-minutes N] [--abandoned-work-seconds N]

Serves document work over the named connection; the clients and the command start it when they need it.
It writes nothing and ends only when it is told to, or as the options say.

  --idle-minutes N            end when nothing was asked for that long
  --abandoned-work-seconds N  end when a request has been worked on for that long and its caller has gone
  --help                      show this help
  --version                   show the program's version
)";

/// Longer than any machine runs, and short enough for every clock.
constexpr double kMaximumNumber = 1e8;

std::optional<double> positiveNumber(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !(number > 0 && number <= kMaximumNumber))
    return std::nullopt;
  return number;
}

}  // namespace

std::optional<HelperOptions> readHelperOptions(int count, char **arguments, int *exitCode) {
  HelperOptions options;
  const auto isWritten = [&](const char *text) {
    *exitCode = std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    return std::nullopt;
  };
  const auto isWrong = [&](const char *what, const char *argument) {
    std::fprintf(stderr, "quiverleaf-helper: %s: %s (try --help)\n", what, argument);
    *exitCode = EXIT_FAILURE;
    return std::nullopt;
  };
  for (int i = 1; i < count; ++i) {
    const std::string_view name = arguments[i];
    if (name == "--help") return isWritten(kHelp);
    if (name == "--version") return isWritten("quiverleaf-helper " QUIVERLEAF_VERSION "\n");
    double *const field = name == "--idle-minutes"             ? &options.idleMinutes
                          : name == "--abandoned-work-seconds" ? &options.abandonedWorkSeconds
                                                               : nullptr;
    if (!field) return isWrong("unknown argument", arguments[i]);
    const auto number = i + 1 < count ? positiveNumber(arguments[i + 1]) : std::nullopt;
    if (!number) return isWrong("a number above 0 has to follow", arguments[i]);
    *field = *number;
    ++i;
  }
  return options;
}

}  // namespace nimbo
