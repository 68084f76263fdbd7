// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <hwy/targets.h>

#include <gtest/gtest.h>

namespace nimbo {

/// Runs a test once with each kind of vector that this processor has.
template <typename Test>
void forEachVectorTarget(Test test) {
  for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
    SCOPED_TRACE(hwy::TargetName(target));
    hwy::GetChosenTarget().Update(target);
    test();
  }
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace nimbo
