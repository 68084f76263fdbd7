// SPDX-License-Identifier: Apache-2.0
//
// Rich text as RTF, and as RTFD, which has the attachments, too. Any thread may read and write.
//
//     DocumentAttributes attributes;
//     NSError error;
//     const NSAttributedString text = initWithRTF(data, &attributes, &error);
//     const NSData rtfd = RTFDFromRange(text, {0, text.length()}, attributes);
//     RTFDFileWrapperFromRange(text, {0, text.length()}, attributes).writeToFile(path, true);
//
// What is read is whatever can be read: unknown words and groups are passed over. Headers and footers, hidden
// and deleted text, comments and embedded objects are left out (but not what objects show); the notes of a page
// stand at the end of the text. Neither a link nor raised text reaches over the end of a paragraph, the last
// paragraph of a cell ends with the cell.
//
// What is written is read again as the same runs and attachments, as far as RTF can say it: lengths are whole
// twentieths of a point, those of characters half points and thousandths; lists and tables are numbered anew in
// their order.
#pragma once

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Whether the data begins as RTF does; a byte order mark and white space may stand before it.
bool isRTF(const NSData &data);

/// The text of RTF; pictures in it are attachments. `*documentAttributes` gets what it says about itself. Nil
/// when the data is nil or no RTF; `*error` says why.
NSAttributedString initWithRTF(const NSData &data, DocumentAttributes *documentAttributes = nullptr,
                               NSError *error = nullptr);
/// The text of RTFD data, as `RTFDFromRange` answers it. Nil when the data is nil or no RTFD; `*error` says
/// why.
NSAttributedString initWithRTFD(const NSData &data, DocumentAttributes *documentAttributes = nullptr,
                                NSError *error = nullptr);
/// The text of a folder with a file "TXT.rtf" and its attachments; symbolic links are none. Nil when there is
/// no such file; `*error` says why.
NSAttributedString initWithRTFDFileWrapper(const NSFileWrapper &folder,
                                           DocumentAttributes *documentAttributes = nullptr,
                                           NSError *error = nullptr);

/// The range of the text, which is cut to its bounds, as RTF. Of the attachments it has pictures that RTF knows
/// (PNG, JPEG, Windows metafiles); the characters of others are left out. Nil when the text is nil or the RTF
/// would be longer than data may be.
NSData RTFFromRange(const NSAttributedString &text, NSRange range,
                    const DocumentAttributes &documentAttributes = {});
/// The range of the text as a folder: "TXT.rtf" and the attachments, which get harmless names of their own. Nil
/// as above.
NSFileWrapper RTFDFileWrapperFromRange(const NSAttributedString &text, NSRange range,
                                       const DocumentAttributes &documentAttributes = {});
/// The same folder in its serialised form. Nil as above.
NSData RTFDFromRange(const NSAttributedString &text, NSRange range,
                     const DocumentAttributes &documentAttributes = {});

}  // namespace nimbo
