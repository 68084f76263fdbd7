// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/CommandLine.hpp"

namespace nimbo {

/// The command that shows a PDF.
Command pdfCommand();

}  // namespace nimbo
