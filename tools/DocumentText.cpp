// SPDX-License-Identifier: Apache-2.0
#include "tools/DocumentText.hpp"

#include <string_view>
#include <utility>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/AppKit/NSTextAttachment.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "tools/ExitCode.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

constexpr unichar kLineSeparator = 0x2028;

/// The text without its attachments, and with each line in a line.
NSString plainText(const NSString &text) {
  NSMutableString result;
  result.reserve(text.length());
  for (const unichar unit : text.view())
    if (unit != NSAttachmentCharacter) result.appendCharacter(unit == kLineSeparator ? u'\n' : unit);
  return std::move(result).string();
}

int writeRichTextAsPlain(HelperClient &client, const NSString &path, const std::string &name) {
  return report(client.attributedStringWithContentsOfFile(path), name, [](const id &result) {
    const NSData rtfd = result.dictionary().objectForKey(u"Rtfd"_ns).data();
    writeText(plainText(initWithRTFD(rtfd).string()));
  });
}

/// Writes a text that there is; otherwise, unless it is known why, says that there is none.
int writeTextOfAnswer(const HelperClient::Answer &answer, std::u16string_view key, const std::string &name) {
  NSString text;
  const int code = report(answer, name, [&](const id &result) {
    text = result.dictionary().objectForKey(NSString::stringWithCharacters(key)).string();
  });
  if (code != kExitAnswered) return code;
  if (text) {
    writeText(text);
    return kExitAnswered;
  }
  if (answer.code == ErrorCode::none) writeMessage(name + ": has no text");
  return kExitNil;
}

}  // namespace

bool isPostScriptType(const NSString &type) {
  return type == u"com.adobe.postscript"_ns || type == u"com.adobe.encapsulated-postscript"_ns;
}

int writeTextOfPostScript(const NSString &path, const std::string &name, const CommonOptions &options) {
  HelperClient client = clientWithOptions(options);
  NSData pdf;
  const int code = report(client.PDFImageRepOfFile(path), name, [&](const id &result) { pdf = result.data(); });
  return code != kExitAnswered ? code
                               : writeTextOfAnswer(client.attributedStringWithPDF(false, pdf), u"String", name);
}

int writeTextOfDocument(const NSString &path, const std::string &name, const CommonOptions &options) {
  HelperClient client = clientWithOptions(options);
  const auto answer = client.metaDataForFile(path);
  if (answer.status == HelperClient::Status::nil && answer.code == ErrorCode::unsupportedType)
    return writeRichTextAsPlain(client, path, name);
  return writeTextOfAnswer(answer, u"kMDItemTextContent", name);
}

}  // namespace nimbo
