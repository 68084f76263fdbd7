// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <vector>

#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSRunLoop.hpp"

namespace nimbo {
namespace {

struct Request : ReferenceCounted {
  Request(const SharedPointer<NSObject> &to, const NSString &message, const id &with)
      : receiver(to), selector(message), argument(with) {}

  SharedPointer<NSObject> receiver;
  NSString selector;
  id argument;
  NSRunLoop::Timer timer = 0;
};

/// The calling thread's requests that have not been performed.
std::vector<SharedPointer<Request>> &pendingRequests() {
  static thread_local std::vector<SharedPointer<Request>> requests;
  return requests;
}

}  // namespace

void performSelectorAfterDelay(const SharedPointer<NSObject> &receiver, const NSString &selector,
                               const id &argument, double delaySeconds) {
  if (!receiver) return;
  const auto request = makeShared<Request>(receiver, selector, argument);
  request->timer = NSRunLoop::currentRunLoop().performAfterDelay(delaySeconds, [request] {
    std::erase(pendingRequests(), request);
    request->receiver->performSelector(request->selector, request->argument);
  });
  pendingRequests().push_back(request);
}

void cancelPreviousPerformRequests(const SharedPointer<NSObject> &receiver, const NSString &selector,
                                   const id &argument) {
  auto &pending = pendingRequests();
  const auto first = std::stable_partition(pending.begin(), pending.end(), [&](const auto &request) {
    return request->receiver != receiver || request->selector != selector || request->argument != argument;
  });
  // They leave the list before they are freed: what a receiver's end does may come back here.
  const std::vector<SharedPointer<Request>> cancelled(first, pending.end());
  pending.erase(first, pending.end());
  for (const auto &request : cancelled) NSRunLoop::currentRunLoop().cancel(request->timer);
}

}  // namespace nimbo
