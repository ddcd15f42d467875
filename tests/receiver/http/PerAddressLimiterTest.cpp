// Whose connections count together.
#include "http/PerAddressLimiter.hpp"

#include <arpa/inet.h>
#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

sockaddr_storage address(const std::string& text) {
    sockaddr_storage peer{};
    const bool v6 = text.find(':') != std::string::npos;
    peer.ss_family = v6 ? AF_INET6 : AF_INET;
    void* const into = v6 ? static_cast<void*>(&reinterpret_cast<sockaddr_in6&>(peer).sin6_addr)
                          : static_cast<void*>(&reinterpret_cast<sockaddr_in&>(peer).sin_addr);
    EXPECT_EQ(::inet_pton(peer.ss_family, text.c_str(), into), 1) << text;
    return peer;
}

TEST(PerAddressLimiter, AnAddressHasItsSlotsAndGetsThemBack) {
    PerAddressLimiter limiter(2);
    auto first = limiter.acquire(address("192.0.2.1"));
    const auto second = limiter.acquire(address("192.0.2.1"));
    EXPECT_TRUE(first && second);
    EXPECT_FALSE(limiter.acquire(address("192.0.2.1")));
    EXPECT_TRUE(limiter.acquire(address("192.0.2.2")));
    first.reset();
    EXPECT_TRUE(limiter.acquire(address("192.0.2.1")));
}

TEST(PerAddressLimiter, AnAddressIsTheSameInBothNotations) {
    PerAddressLimiter limiter(1);
    const auto first = limiter.acquire(address("192.0.2.1"));
    EXPECT_FALSE(limiter.acquire(address("::ffff:192.0.2.1")));
    EXPECT_TRUE(limiter.acquire(address("::ffff:192.0.2.2")));
}

TEST(PerAddressLimiter, ANetworkOfIpv6IsOneStranger) {
    PerAddressLimiter limiter(1);
    const auto first = limiter.acquire(address("2001:db8:1:2::1"));
    EXPECT_FALSE(limiter.acquire(address("2001:db8:1:2:ffff::9")));
    EXPECT_TRUE(limiter.acquire(address("2001:db8:1:3::1")));
}

TEST(PerAddressLimiter, WithoutABoundThereIsRoomForAll) {
    PerAddressLimiter limiter(std::nullopt);
    std::vector<std::shared_ptr<const void>> taken;
    for (int i = 0; i < 1000; ++i) {
        taken.push_back(limiter.acquire(address("192.0.2.1")));
        EXPECT_TRUE(taken.back());
    }
}

}  // namespace
}  // namespace mireth::receiver
