// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/NSString+URLUtilities+Escaping.hpp"
#include "Classes/NSString+URLUtilities+Kinds.hpp"
#include "Classes/NSString+URLUtilities+Query.hpp"
#include "Classes/NSString+URLUtilities+Simplifying.hpp"
