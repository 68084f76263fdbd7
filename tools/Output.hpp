// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/Foundation/id.hpp"
#include "tools/CommandLine.hpp"

namespace nimbo {

/// A result that could not be written; the text says why in one line.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The reader of standard output has gone away. That is its own choice, so nobody is told.
class OutputClosed : public OutputError {
 public:
  using OutputError::OutputError;
};

/// The value as JSON in UTF-8, on one line or indented by two blanks. Dates are ISO 8601 strings, data is
/// base64; what JSON cannot hold (nil, the null object, numbers that are not finite, dates outside the years 0
/// to 9999) is null.
std::string JSONFromValue(const id &value, bool pretty);

/// What is done with a signal.
using SignalHandler = void (*)(int);

/// Makes writing to a stream without a reader, or beyond the limit of a file's size, an error instead of the
/// end, and gives standard streams that are closed a descriptor that cannot be used, so that no file or socket
/// takes their place and is written to by mistake. Answers what the caller wants to be done with SIGPIPE.
SignalHandler prepareStandardStreams();

/// Writes the whole text, which is UTF-8, to standard output; a terminal gets `textForTerminal`. Raises
/// `OutputError`, or `OutputClosed` when the reader has gone away.
void writeOutput(std::string_view text);
/// Writes a string in UTF-8 and a line feed; of nil the line feed. Raises `OutputError`.
void writeText(const NSString &text);
/// The same, without the line feed where the text ends in one or in a form feed.
void writeLines(const NSString &text);
/// Writes a result and a line feed, as JSON or as an XML property list; what both cannot hold is left out of
/// the dictionaries of the latter and is an empty string in its arrays. Raises `OutputError`.
void writeResult(const id &value, const CommonOptions &options);
/// What is told of a file that has just not been written; errno says why it was not.
std::string messageOfFailedWriting(const std::string &file);
/// Writes a file, whole or not at all. Raises `OutputError`.
void writeFile(const NSData &data, const std::string &file);
/// Writes "quiverleaf: MESSAGE" to standard error; control characters become '?', so that it is one line.
void writeMessage(std::string_view message);

/// Shows how far long work has come in place of what it showed before, when standard error is a terminal; an
/// empty text takes that away.
void writeProgress(std::string_view text);

}  // namespace nimbo
