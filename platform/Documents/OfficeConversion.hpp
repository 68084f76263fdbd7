// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Confinement.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What reads documents, and what it may cost. It is a plain value.
struct OfficeOptions {
  /// The folder of LibreOffice's programs; nil for where systems install it.
  NSString programFolder;
  /// The program that loads it; nil for the installed one.
  NSString childProgram;
  /// The largest document that is read.
  std::uint64_t documentBytes = std::uint64_t{256} << 20;
  /// The largest content that is taken from it; at most `NSNotFound`.
  std::uint32_t contentBytes = 256u << 20;
  /// The memory of the process that reads.
  std::uint64_t memoryBytes = std::uint64_t{3} << 30;
  /// With more memory in use than that behind a document, the process is replaced.
  std::uint64_t keptMemoryBytes = std::uint64_t{600} << 20;
  /// After so many documents, too.
  std::uint32_t documentsPerProcess = 100;
  /// How long one document may take, and the process may take to start.
  double seconds = 60;
};

/// Reads the documents of word processors by LibreOffice, in a confined child process that is started when the
/// first document comes, stays warm, and is replaced when it dies, takes too long, has grown or has read many.
/// It has no network, sees its own copy of the document and no other file of the user, and runs no macros. One
/// thread uses one at a time.
///
///     OfficeConversion &office = OfficeConversion::sharedConversion();
///     const NSData xml = office.flatDocumentWithContentsOfFile(path, Deadline::after(15), &error);
///     if (!xml) NSLog(error.localizedFailureReason);
class OfficeConversion {
 public:
  /// Starts no process yet.
  explicit OfficeConversion(OfficeOptions options = {});
  ~OfficeConversion();
  OfficeConversion(const OfficeConversion &) = delete;
  OfficeConversion &operator=(const OfficeConversion &) = delete;

  /// The one of this process, for its main thread.
  static OfficeConversion &sharedConversion();

  /// Whether there is a LibreOffice; `*error` says what is missing.
  bool isAvailable(NSError *error = nullptr) const;
  /// The content of a document as flat OpenDocument XML. Nil when it cannot be read; `*error` says why:
  /// `unsupportedType` without LibreOffice or its part for such documents, `timeLimit`, `tooLarge`, `damaged`
  /// when it ended the process or LibreOffice does not read it.
  NSData flatDocumentWithContentsOfFile(const NSString &path, const Deadline &deadline = {},
                                        NSError *error = nullptr);
  /// Ends the process, if there is one; the next document starts another.
  void endProcess();
  /// What is in force for the process that runs; nothing is when none runs.
  Protections protections() const;

 private:
  struct Process;

  bool startProcess(NSError *error);

  OfficeOptions options_;
  std::unique_ptr<Process> process_;
};

}  // namespace nimbo
