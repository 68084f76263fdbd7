// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/ResourceFork.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "Classes/Files/ResourceMap.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/ForkStorage.hpp"

namespace nimbo {
namespace {

constexpr std::uint8_t kCompressed = 1;

auto isResource(OSType type, std::int16_t ID) {
  return [=](const Resource &resource) { return resource.type == type && resource.ID == ID; };
}

}  // namespace

std::optional<ResourceFork> ResourceFork::resourceForkForReadingAtPath(const NSString &path, NSError *error) {
  const NSData data = resourceForkData(path, error);
  auto map = data ? ResourceMap::resourceMapWithData(data) : std::nullopt;
  if (!map) {
    if (data) setError(error, ErrorCode::damaged, "the resource fork is damaged");
    return std::nullopt;
  }
  ResourceFork fork;
  fork.path_ = path;
  fork.attributes_ = map->attributes;
  fork.reserved_ = map->reserved;
  fork.resources_ = std::move(map->resources);
  return fork;
}

std::optional<ResourceFork> ResourceFork::resourceForkForWritingAtPath(const NSString &path, NSError *error) {
  NSError reason;
  auto fork = resourceForkForReadingAtPath(path, &reason);
  if (!fork && reason.errorCode() == ErrorCode::noSuchFile && NSFileManager::fileExistsAtPath(path)) {
    fork = ResourceFork();
    fork->path_ = path;
  }
  if (fork)
    fork->isForWriting_ = true;
  else if (error)
    *error = reason;
  return fork;
}

NSData ResourceFork::dataForType(OSType type, std::int16_t ID) const {
  const auto found = std::find_if(resources_.begin(), resources_.end(), isResource(type, ID));
  return found == resources_.end() ? NSData() : found->data;
}

bool ResourceFork::addData(const NSData &data, OSType type, std::int16_t ID, NSError *error) {
  if (!data) {
    setError(error, ErrorCode::incomplete, "there is nothing to add");
    return false;
  }
  std::vector<Resource> changed = resources_;
  const auto found = std::find_if(changed.begin(), changed.end(), isResource(type, ID));
  if (found == changed.end()) {
    changed.push_back({.type = type, .ID = ID, .data = data});
  } else {
    found->data = data;
    found->attributes &= static_cast<std::uint8_t>(~kCompressed);
  }
  return write(std::move(changed), error);
}

bool ResourceFork::addString(const NSString &string, OSType type, std::int16_t ID, NSError *error) {
  const std::string bytes = string.UTF8String();
  return addData(string ? NSData::dataWithBytes(bytes.data(), bytes.size()) : NSData(), type, ID, error);
}

bool ResourceFork::removeType(OSType type, std::int16_t ID, NSError *error) {
  std::vector<Resource> changed = resources_;
  if (std::erase_if(changed, isResource(type, ID)) > 0) return write(std::move(changed), error);
  setError(error, ErrorCode::noSuchFile, "the fork has no such resource");
  return false;
}

bool ResourceFork::write(std::vector<Resource> resources, NSError *error) {
  if (!isForWriting_) {
    setError(error, ErrorCode::unreadable, "the resource fork was opened for reading");
    return false;
  }
  const NSData bytes =
      ResourceMap{.attributes = attributes_, .reserved = reserved_, .resources = resources}.data();
  if (!bytes) {
    setError(error, ErrorCode::tooLarge, "a resource fork has no room for the resources");
    return false;
  }
  if (!setResourceForkData(path_, resources.empty() ? NSData() : bytes, error)) return false;
  resources_ = std::move(resources);
  return true;
}

}  // namespace nimbo
