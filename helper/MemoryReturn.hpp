// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace nimbo {

/// Stands around one request: at its end the memory that the request used and freed goes back to the system, so
/// that one large document does not leave a large process behind.
class MemoryReturn {
 public:
  MemoryReturn() = default;
  MemoryReturn(const MemoryReturn &) = delete;
  MemoryReturn &operator=(const MemoryReturn &) = delete;
  ~MemoryReturn();
};

}  // namespace nimbo
