// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/URLs/NSString+URLUtilities/Escaping.hpp"
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"
#include "Classes/URLs/NSString+URLUtilities/Query.hpp"
#include "Classes/URLs/NSString+URLUtilities/Simplifying.hpp"
