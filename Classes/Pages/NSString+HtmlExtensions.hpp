// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
