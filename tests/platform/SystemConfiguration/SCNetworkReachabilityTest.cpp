// SPDX-License-Identifier: Apache-2.0
#include "platform/SystemConfiguration/SCNetworkReachability.hpp"

#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <netdb.h>
#include <netinet/in.h>

#include <string>

namespace nimbo {
namespace {

constexpr SCNetworkConnectionFlags kNear = kSCNetworkFlagsIsLocalAddress | kSCNetworkFlagsIsDirect;

TEST(SCNetworkReachability, TellsThisMachineFromOthers) {
  const std::pair<const char *, SCNetworkConnectionFlags> cases[] = {
      {"localhost", kSCNetworkFlagsIsLocalAddress},
      {"LocalHost.", kSCNetworkFlagsIsLocalAddress},
      {"page.localhost", kSCNetworkFlagsIsLocalAddress},
      {"page.localhost.", kSCNetworkFlagsIsLocalAddress},
      {"127.0.0.1", kSCNetworkFlagsIsLocalAddress},
      {"127.9.8.7", kSCNetworkFlagsIsLocalAddress},
      {"0x7f.1", kSCNetworkFlagsIsLocalAddress},
      {"0.0.0.0", kSCNetworkFlagsIsLocalAddress},
      {"::1", kSCNetworkFlagsIsLocalAddress},
      {"::", kSCNetworkFlagsIsLocalAddress},
      {"::ffff:127.0.0.1", kSCNetworkFlagsIsLocalAddress},
      // Addresses for documentation, which no network has.
      {"198.51.100.1", 0},
      {"128.0.0.1", 0},
      {"2001:db8::1", 0},
      {"::ffff:198.51.100.1", 0},
  };
  for (const auto &[name, near] : cases) {
    SCNetworkConnectionFlags flags = 0;
    ASSERT_TRUE(SCNetworkCheckReachabilityByName(name, &flags)) << name;
    EXPECT_EQ(flags & kNear, near) << name;
    EXPECT_TRUE(flags & kSCNetworkFlagsReachable) << name;
  }
}

TEST(SCNetworkReachability, FindsTheNeighboursOfEachInterface) {
  ifaddrs *list = nullptr;
  ASSERT_EQ(getifaddrs(&list), 0);
  for (const ifaddrs *interface = list; interface; interface = interface->ifa_next) {
    if (!interface->ifa_addr || interface->ifa_addr->sa_family != AF_INET) continue;
    sockaddr_in own = *reinterpret_cast<const sockaddr_in *>(interface->ifa_addr);
    EXPECT_TRUE(SCNetworkFlagsOfAddress(reinterpret_cast<const sockaddr &>(own)) &
                kSCNetworkFlagsIsLocalAddress)
        << interface->ifa_name;
    const auto *mask = reinterpret_cast<const sockaddr_in *>(interface->ifa_netmask);
    if (!mask || ntohl(own.sin_addr.s_addr) >> 24 == 127 || mask->sin_addr.s_addr == 0xffffffff) continue;
    own.sin_addr.s_addr ^= htonl(1);
    EXPECT_TRUE(SCNetworkFlagsOfAddress(reinterpret_cast<const sockaddr &>(own)) & kSCNetworkFlagsIsDirect)
        << interface->ifa_name;
  }
  freeifaddrs(list);
}

TEST(SCNetworkReachability, AnswersNoForWhatIsNoHost) {
  const std::string tooLong(300, 'a');
  for (const char *name : {"", "no such host", "-.invalid", tooLong.c_str()}) {
    SCNetworkConnectionFlags flags = 0;
    EXPECT_FALSE(SCNetworkCheckReachabilityByName(name, &flags, Deadline::after(10))) << name;
  }
}

TEST(SCNetworkReachability, GivesUpAtTheDeadline) {
  SCNetworkConnectionFlags flags = 0;
  EXPECT_FALSE(SCNetworkCheckReachabilityByName("name.invalid", &flags, Deadline::after(0)));
  EXPECT_TRUE(SCNetworkCheckReachabilityByName("127.0.0.1", &flags, Deadline::after(0)));
}

TEST(SCNetworkReachability, NamesGivenUpLeavePlacesForOthers) {
  SCNetworkConnectionFlags flags = 0;
  for (int host = 0; host < 100; ++host) {
    const std::string name = std::to_string(host) + ".silent.invalid";
    EXPECT_FALSE(SCNetworkCheckReachabilityByName(name.c_str(), &flags, Deadline::after(0)));
  }
  EXPECT_TRUE(SCNetworkCheckReachabilityByName("near.invalid", &flags, Deadline::after(5)));
  EXPECT_TRUE(flags & kSCNetworkFlagsIsLocalAddress);
  // Each of these ends as soon as the answer is there.
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(SCNetworkCheckReachabilityByName("near.invalid", &flags));
}

}  // namespace
}  // namespace nimbo
