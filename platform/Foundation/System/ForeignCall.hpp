// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <vector>

#include "platform/Foundation/Attributes.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Stands around a call of foreign code in this process. At its end all processes are killed that the code has
/// started and left behind, also those that left its session, before they answer anybody in this process's
/// stead; a copy of this process that the code made ends where it would go on behind the call. Other threads
/// must start no processes meanwhile: they would be taken for the code's. One at a time.
///
///     const ForeignCall call;
///     plugIn.run();
class ForeignCall {
 public:
  ForeignCall();
  ForeignCall(const ForeignCall &) = delete;
  ForeignCall &operator=(const ForeignCall &) = delete;
  ~ForeignCall();

 private:
  pid_t process_;
  int wasSubreaper_ = 0;
  std::vector<pid_t> earlierChildren_;
  /// Given back at the end, when the code may have left no other descriptor.
  FileDescriptor spares_[2];
};

}  // namespace nimbo
