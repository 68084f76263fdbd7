// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSString+NimboPasteboardSupport.hpp"
