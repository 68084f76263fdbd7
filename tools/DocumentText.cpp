// SPDX-License-Identifier: Apache-2.0
#include "tools/DocumentText.hpp"

#include <utility>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "tools/ExitCode.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/Output.hpp"
#include "tools/ReadableText.hpp"

namespace nimbo {

namespace {

DocumentText textOfPostScript(HelperClient &client, const NSString &path) {
  const HelperClient::Answer converted = client.PDFImageRepOfFile(path);
  const NSData pdf = converted.result.data();
  return pdf ? textUnderKey(client.attributedStringWithPDF(false, pdf), u"String")
             : DocumentText{converted, {}};
}

DocumentText textOfRichText(HelperClient &client, const NSString &path) {
  HelperClient::Answer answer = client.attributedStringWithContentsOfFile(path);
  const NSData rtfd = answer.result.dictionary().objectForKey(u"Rtfd"_ns).data();
  return {std::move(answer), rtfd ? readableText(initWithRTFD(rtfd)) : NSString()};
}

}  // namespace

DocumentText textUnderKey(HelperClient::Answer answer, std::u16string_view key) {
  const NSString text = answer.result.dictionary().objectForKey(NSString::stringWithCharacters(key)).string();
  return {std::move(answer), text};
}

bool isPostScriptType(const NSString &type) {
  return type == u"com.adobe.postscript"_ns || type == u"com.adobe.encapsulated-postscript"_ns;
}

bool DocumentText::isRefused() const {
  return !text && (answer.code == ErrorCode::unsupportedType || answer.code == ErrorCode::damaged);
}

DocumentText textOfDocument(const TypedPath &file, const CommonOptions &options) {
  HelperClient client = clientWithOptions(options);
  if (isPostScriptType(file.type)) return textOfPostScript(client, file.path);
  HelperClient::Answer answer = client.metaDataForFile(file.path);
  if (answer.status == HelperClient::Status::nil && answer.code == ErrorCode::unsupportedType)
    return textOfRichText(client, file.path);
  return textUnderKey(std::move(answer), u"kMDItemTextContent");
}

int writeDocumentText(const DocumentText &document, const std::string &name) {
  const int code = report(document.answer, name, [&](const id &) {
    if (document.text.length() > 0) writeLines(document.text);
  });
  if (code != kExitAnswered || document.text.length() > 0) return code;
  if (document.answer.code == ErrorCode::none) writeMessage(name + ": has no text");
  return kExitNil;
}

}  // namespace nimbo
