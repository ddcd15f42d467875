// Names of hosts, and what is none.
#include "settings/HostName.hpp"

#include <gtest/gtest.h>

#include <string>

namespace mireth::receiver {
namespace {

TEST(HostName, IsANameOrAnAddressInFigures) {
    for (const char* good :
         {"localhost", "replay.example.org", "REPLAY-1.example", "a_b", "127.0.0.1", "::1"}) {
        EXPECT_TRUE(isHostName(good)) << good;
    }
    EXPECT_TRUE(isHostName(std::string(63, 'a') + "." + std::string(63, 'b')));
}

TEST(HostName, HasNoSchemePortOrPath) {
    for (const char* bad :
         {"", "a b", "http://x", "x:80", "x/y", ".", "a..b", "a.", "[::1]", "a\n", "é.example"}) {
        EXPECT_FALSE(isHostName(bad)) << bad;
    }
    EXPECT_FALSE(isHostName(std::string(64, 'a')));
    EXPECT_FALSE(isHostName(std::string(127, 'a').replace(63, 1, ".") + "." +
                            std::string(127, 'a').replace(63, 1, ".")));
}

}  // namespace
}  // namespace mireth::receiver
