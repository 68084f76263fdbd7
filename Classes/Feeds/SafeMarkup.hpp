// SPDX-License-Identifier: Apache-2.0
//
// Markup of strangers that is to stand in a page of one's own: nothing in the results runs a script or leaves
// the place that it is put in. Any thread may call these.
//
//     safeMarkup(u"<p onclick=x()>Hello<script>y()</script>"_ns);  // "<p>Hello"
//     safeLink(u"javascript:x()"_ns);  // ""
#pragma once

#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The markup, written anew with the elements and attributes that are known to be harmless; others lose their
/// tags, scripts and style sheets all of theirs. Elements end within it. Links and images are made absolute
/// against the base, which may be nil. Nil for nil.
NSString safeMarkup(const NSString &markup, const NSURL &base = NSURL());

/// The markup as text alone, to stand where there may be no tags. Nil for nil.
NSString safeText(const NSString &markup);

/// A URL as the value of an attribute in double quotes; empty for one of a scheme that might run or show
/// something else than a page. Nil for nil.
NSString safeLink(const NSString &url);

}  // namespace nimbo
