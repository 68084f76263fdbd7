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

void NSConnection::setIndependentConversationQueueing(bool) {}

void NSConnection::setRequestTimeout(double seconds) {
  server_->setRequestTimeout(seconds);
}

void NSConnection::setReplyTimeout(double seconds) {
  server_->setReplyTimeout(seconds);
}

}  // namespace nimbo
