// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/NSString+HtmlExtensions+Stripping.hpp"
#include "Classes/NSString+HtmlExtensions+URLs.hpp"
