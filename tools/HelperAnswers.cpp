// SPDX-License-Identifier: Apache-2.0
#include "tools/HelperAnswers.hpp"

#include <utility>

#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

/// Why the answer is nil, or not whole.
std::string reasonOfAnswer(const HelperClient::Answer &answer) {
  return answer.reason ? answer.reason.UTF8String() : "the helper does not say why";
}

/// An answer without content, and a reason for that, says no more than nil.
bool isNil(const HelperClient::Answer &answer) {
  using Status = HelperClient::Status;
  const NSDictionary attributes = answer.result.dictionary();
  return answer.status == Status::nil || (answer.status == Status::answered && answer.code != ErrorCode::none &&
                                          attributes && attributes.count() == 0);
}

}  // namespace

HelperClient clientWithOptions(const CommonOptions &options) {
  HelperClient::Options clientOptions;
  clientOptions.timeoutSeconds = options.timeoutSeconds;
  clientOptions.waitingSeconds = options.waitingSeconds;
  clientOptions.startsHelper = !options.noStart;
  return HelperClient(std::move(clientOptions));
}

int report(const HelperClient::Answer &answer, const std::string &file,
           const std::function<void(const id &result)> &use) {
  using Status = HelperClient::Status;
  if (isNil(answer)) {
    writeMessage(file + ": " + reasonOfAnswer(answer));
    return exitCodeForError(answer.code);
  }
  switch (answer.status) {
    case Status::answered:
      use(answer.result);
      if (answer.code != ErrorCode::none) writeMessage(file + ": " + reasonOfAnswer(answer));
      return kExitAnswered;
    case Status::exception:
      writeMessage(answer.exceptionName.UTF8String() + ": " + answer.exceptionReason.UTF8String());
      return kExitNil;
    case Status::timedOut:
      writeMessage(file + ": " + answer.message);
      return kExitTimedOut;
    case Status::died:
      writeMessage(file + ": " + answer.message);
      return kExitDied;
    case Status::nil:
    case Status::invalid:
      writeMessage(file + ": " + answer.message);
      return kExitNil;
    case Status::unreachable:
      break;
  }
  writeMessage(answer.message);
  return kExitUnreachable;
}

int report(const HelperClient::Answer &answer, const std::string &file, const CommonOptions &options) {
  return report(answer, file, [&](const id &result) { writeResult(result, options); });
}

}  // namespace nimbo
