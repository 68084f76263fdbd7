// SPDX-License-Identifier: Apache-2.0
#include "tools/RichTextOutput.hpp"

#include "tools/ExitCode.hpp"
#include "tools/HelperAnswers.hpp"
#include "tools/Output.hpp"

namespace nimbo {

int writeRichText(HelperClient &client, const NSData &rtfd, const std::string &folder) {
  const auto answer = client.writeRTFDData(rtfd, NSString::stringWithFileSystemRepresentation(folder));
  bool isWritten = false;
  const int code =
      report(answer, folder, [&](const id &result) { isWritten = result.boolean().value_or(false); });
  if (code != kExitAnswered || isWritten) return code;
  if (answer.code == ErrorCode::none) writeMessage(folder + ": it cannot be written");
  return kExitOutputFailed;
}

}  // namespace nimbo
