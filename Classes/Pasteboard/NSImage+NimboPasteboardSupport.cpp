// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSImage+NimboPasteboardSupport.hpp"
