// SPDX-License-Identifier: Apache-2.0
//
// Scripts that ask the desktop for what it knows of files. Who has a desktop that understands them plugs in a
// runner; without one, their meaning is done on extended attributes. Any thread may call.
//
//     setScriptRunner(std::make_shared<DesktopRunner>());
//     runScript(source, u"getLabel"_ns, {path}).integer();
#pragma once

#include <memory>

#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What runs scripts. Scripts that nobody waits for come from another thread.
class ScriptRunner {
 public:
  virtual ~ScriptRunner() = default;

  /// Runs the handler of the script that has the name `entryPoint` with these arguments, and answers its
  /// result; nil when it has none or fails.
  virtual id run(const NSString &source, const NSString &entryPoint, const NSArray &arguments) = 0;
};

/// The runner that knows the entry points "setComment", "setComments", "getComment", "setLabel" and "getLabel"
/// by name and reads no script: comments are the attribute "user.xdg.comment", labels stand among the Finder
/// flags where file servers keep these.
std::shared_ptr<ScriptRunner> attributeScriptRunner();

/// Makes this the runner of all scripts that are not running yet; null brings back the one above.
void setScriptRunner(std::shared_ptr<ScriptRunner> runner);

/// Runs a script now; what the runner raises is logged, and the answer is nil.
id runScript(const NSString &source, const NSString &entryPoint, const NSArray &arguments);

/// Runs a script behind all others that were asked for so, in a thread of their own. The process does not end
/// before they are done. False when there is no thread for it.
bool runScriptLater(const NSString &source, const NSString &entryPoint, const NSArray &arguments);

}  // namespace nimbo
