// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSConnection.hpp"

#include "platform/Foundation/Connection/ConnectionServer.hpp"

namespace nimbo {

NSConnectionRootObject::~NSConnectionRootObject() = default;

NSConnection &NSConnection::defaultConnection() {
  static NSConnection &connection = *new NSConnection;
  return connection;
}

NSConnection::NSConnection() : server_(std::make_unique<ConnectionServer>()) {}

NSConnection::~NSConnection() = default;

void NSConnection::setRootObject(NSConnectionRootObject *rootObject) {
  server_->setRootObject(rootObject);
}

bool NSConnection::registerName(const NSString &name) {
  return server_->registerName(name);
}

void NSConnection::setIndependentConversationQueueing(Flag) {}

void NSConnection::setRequestTimeout(double seconds) {
  server_->setRequestTimeout(seconds);
}

void NSConnection::setReplyTimeout(double seconds) {
  server_->setReplyTimeout(seconds);
}

void NSConnection::setVersion(const NSString &version) {
  server_->setVersion(version);
}

void NSConnection::setIdleLimit(double seconds) {
  server_->setIdleLimit(seconds);
}

void NSConnection::setAbandonedWorkLimit(double seconds) {
  server_->setAbandonedWorkLimit(seconds);
}

void NSConnection::setReachabilityInterval(double seconds) {
  server_->setReachabilityInterval(seconds);
}

void NSConnection::setInvalidationHandler(std::function<void()> handler) {
  server_->setInvalidationHandler(std::move(handler));
}

void NSConnection::invalidate() {
  server_->invalidate();
}

}  // namespace nimbo
