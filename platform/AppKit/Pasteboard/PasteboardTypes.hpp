// SPDX-License-Identifier: Apache-2.0
//
// The types of what a pasteboard holds, which are strings. Which of the desktop's own types each becomes stands
// in PasteboardTargets.tsv.
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Plain text.
inline const NSString NSStringPboardType = u"NSStringPboardType"_ns;
/// A URL as a string.
inline const NSString NSURLPboardType = u"NSURLPboardType"_ns;
/// A picture as TIFF.
inline const NSString NSTIFFPboardType = u"NSTIFFPboardType"_ns;
/// A picture as PICT.
inline const NSString NSPICTPboardType = u"NSPICTPboardType"_ns;
/// A PDF.
inline const NSString NSPDFPboardType = u"NSPDFPboardType"_ns;
/// PostScript.
inline const NSString NSPostScriptPboardType = u"NSPostScriptPboardType"_ns;
/// The source of a page.
inline const NSString NSHTMLPboardType = u"NSHTMLPboardType"_ns;
/// Rich text.
inline const NSString NSRTFPboardType = u"NSRTFPboardType"_ns;
/// Rich text with attachments, serialised.
inline const NSString NSRTFDPboardType = u"NSRTFDPboardType"_ns;
/// A table as text.
inline const NSString NSTabularTextPboardType = u"NSTabularTextPboardType"_ns;
/// Addresses.
inline const NSString NSVCardPboardType = u"NSVCardPboardType"_ns;

}  // namespace nimbo
