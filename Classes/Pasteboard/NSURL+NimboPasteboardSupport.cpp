// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSURL+NimboPasteboardSupport.hpp"
