// Addresses on the command line.
#include "settings/ListenAddress.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

TEST(ListenAddress, ReadsHostAndPortAndWritesThemBack) {
    for (const auto* const text : {"127.0.0.1:8080", "localhost:0", "[::1]:65535", "0.0.0.0:1"}) {
        const auto address = ListenAddress::parse(text);
        ASSERT_TRUE(address) << text;
        EXPECT_EQ(address->text(), text);
    }
    EXPECT_EQ(ListenAddress::parse("[::1]:9")->host, "::1");
}

TEST(ListenAddress, RefusesWhatIsNone) {
    for (const auto* const text : {"", ":", "8080", ":8080", "host", "host:", "host:x", "host:1x", "host:-1",
                                   "host:65536", "::1:8080", "[::1]", "[]:1", "host:99999999999"}) {
        EXPECT_FALSE(ListenAddress::parse(text)) << text;
    }
    EXPECT_EQ(ListenAddress::parse("x").error(),
              "\"x\" is no address to listen on; write HOST:PORT or [IPV6]:PORT");
}

TEST(ListenAddress, KnowsLoopback) {
    const auto isLoopback = [](const char* host) { return ListenAddress{.host = host}.isLoopback(); };
    EXPECT_TRUE(isLoopback("127.0.0.1"));
    EXPECT_TRUE(isLoopback("127.9.9.9"));
    EXPECT_TRUE(isLoopback("::1"));
    EXPECT_TRUE(isLoopback("localhost"));
    EXPECT_FALSE(isLoopback("0.0.0.0"));
    EXPECT_FALSE(isLoopback("::"));
    EXPECT_FALSE(isLoopback("192.168.1.1"));
    EXPECT_FALSE(isLoopback("example.com"));
}

}  // namespace
}  // namespace mireth::receiver
