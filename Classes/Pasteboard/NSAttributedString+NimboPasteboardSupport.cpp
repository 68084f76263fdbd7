// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSAttributedString+NimboPasteboardSupport.hpp"
