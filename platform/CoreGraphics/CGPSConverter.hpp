// SPDX-License-Identifier: Apache-2.0
//
// PostScript to PDF, by Ghostscript in a confined child process.
//
//     const NSData pdf = PDFDataWithPostScript(postScript, {.deadline = Deadline::after(8)}, &error);
#pragma once

#include <cstdint>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a conversion may take.
struct PostScriptLimits {
  Deadline deadline = {};            ///< By when it has to end.
  std::uint32_t maximumPages = 200;  ///< Pages behind these are left out.
};

/// PostScript, or an EPS file with or without a preview, as PDF; an EPS file gives one page of its bounding
/// box. Nil when it is none, is faulty, or takes too much; `*error` says why.
NSData PDFDataWithPostScript(const NSData &postScript, const PostScriptLimits &limits,
                             NSError *error = nullptr);

}  // namespace nimbo
