// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace nimbo {

/// Makes sure that this process has standard streams, so that nothing else gets their numbers and is written
/// to, and that it may open as many files as operations need. False when it may not; standard error says so.
bool prepareDescriptors();

}  // namespace nimbo
