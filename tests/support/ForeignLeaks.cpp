// SPDX-License-Identifier: Apache-2.0
// What other people's libraries never give back is not counted by the leak sanitizer.

// The sanitizer gives the name.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" const char *__lsan_default_suppressions();

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
const char *__lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libx265\n";
}
