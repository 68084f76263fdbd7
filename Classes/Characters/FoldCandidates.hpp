// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Characters/UnicharKernels.hpp"

namespace nimbo::detail {

/// The units whose entry in `upperCharsTable` is `upper`: itself and its lowercase forms. None when `upper` has
/// an uppercase form itself.
UnicharChoice foldCandidates(unichar upper);

}  // namespace nimbo::detail
