// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/ScriptRunner.hpp"

#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "Classes/Files/AttributeFailures.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/System/ExtendedAttributes.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"

namespace nimbo {
namespace {

constexpr std::int64_t kLargestLabel = 7;

NSString commentAttribute() {
  return u"user.xdg.comment"_ns;
}

bool setComment(const NSString &path, const NSString &comment) {
  const std::string bytes = comment.UTF8String();
  const NSData data = bytes.empty() ? NSData() : NSData::dataWithBytes(bytes.data(), bytes.size());
  NSError error;
  return setExtendedAttribute(path, commentAttribute(), data, true, &error) ||
         logAttributeFailure(u"setFinderComment:atPath:"_ns, commentAttribute(), path, error);
}

bool setComments(const NSArray &paths, const NSArray &comments) {
  bool areSet = paths.count() == comments.count();
  for (std::uint32_t i = 0; i < std::min(paths.count(), comments.count()); ++i)
    areSet = setComment(paths[i].string(), comments[i].string()) && areSet;
  return areSet;
}

id comment(const NSString &path) {
  const NSData data = extendedAttribute(path, commentAttribute(), true);
  return data ? NSString::stringWithLossyUTF8String(data.view()) : NSString();
}

bool setLabel(const NSString &path, std::int64_t label) {
  NSError error;
  if (label < 0 || label > kLargestLabel)
    setError(&error, ErrorCode::other, "labels are the numbers 0 to 7");
  else if (setFinderField(path, kFinderLabel, static_cast<std::uint64_t>(label) << 1, &error))
    return true;
  return logAttributeFailure(u"setFinderLabel:atPath:"_ns, u"label"_ns, path, error);
}

class AttributeScriptRunner : public ScriptRunner {
 public:
  id run(const NSString & /*source*/, const NSString &entryPoint, const NSArray &arguments) override {
    const id first = arguments.count() > 0 ? arguments[0] : id();
    const id second = arguments.count() > 1 ? arguments[1] : id();
    if (entryPoint == u"setComment"_ns) return setComment(first.string(), second.string());
    if (entryPoint == u"setComments"_ns) return setComments(first.array(), second.array());
    if (entryPoint == u"getComment"_ns) return comment(first.string());
    if (entryPoint == u"setLabel"_ns) return setLabel(first.string(), second.integer().value_or(-1));
    if (entryPoint == u"getLabel"_ns) return finderField(first.string(), kFinderLabel) >> 1;
    return id();
  }
};

/// The runner that is plugged in.
class Plug {
 public:
  std::shared_ptr<ScriptRunner> runner() {
    const std::lock_guard lock(mutex_);
    if (!runner_) runner_ = attributeScriptRunner();
    return runner_;
  }
  void setRunner(std::shared_ptr<ScriptRunner> runner) {
    const std::lock_guard lock(mutex_);
    runner_.swap(runner);
  }

 private:
  std::mutex mutex_;
  std::shared_ptr<ScriptRunner> runner_;
};

Plug &plug() {
  static Plug shared;
  return shared;
}

/// Does jobs in their order in a thread that is there while there are any.
class JobQueue {
 public:
  JobQueue() = default;
  JobQueue(const JobQueue &) = delete;
  JobQueue &operator=(const JobQueue &) = delete;
  ~JobQueue() {
    if (worker_.joinable()) worker_.join();
  }

  bool add(std::function<void()> job) {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    if (isWorking_) return true;
    if (worker_.joinable()) worker_.join();
    try {
      worker_ = std::thread([this] { work(); });
    } catch (const std::system_error &) {
      jobs_.pop_back();
      return false;
    }
    isWorking_ = true;
    return true;
  }

 private:
  void work() {
    for (;;) {
      std::function<void()> job;
      {
        const std::lock_guard lock(mutex_);
        isWorking_ = !jobs_.empty();
        if (!isWorking_) return;
        job = std::move(jobs_.front());
        jobs_.pop_front();
      }
      job();
    }
  }

  std::mutex mutex_;
  std::deque<std::function<void()>> jobs_;
  bool isWorking_ = false;
  std::thread worker_;
};

}  // namespace

std::shared_ptr<ScriptRunner> attributeScriptRunner() {
  return std::make_shared<AttributeScriptRunner>();
}

void setScriptRunner(std::shared_ptr<ScriptRunner> runner) {
  plug().setRunner(std::move(runner));
}

id runScript(const NSString &source, const NSString &entryPoint, const NSArray &arguments) {
  try {
    return plug().runner()->run(source, entryPoint, arguments);
  } catch (const std::exception &exception) {
    NSLog(NSError::errorWithException(exception).localizedFailureReason);
    return id();
  }
}

bool runScriptLater(const NSString &source, const NSString &entryPoint, const NSArray &arguments) {
  // Made first, so that it is still there when the last jobs are done.
  plug();
  static JobQueue queue;
  return queue.add([=] { runScript(source, entryPoint, arguments); });
}

}  // namespace nimbo
