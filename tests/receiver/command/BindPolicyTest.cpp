// What follows from where the receiver listens and who reaches it there.
#include "command/BindPolicy.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

std::optional<std::size_t> perAddress(const std::string& listen, bool behindProxy) {
    ServeOptions options;
    options.behindProxy = behindProxy;
    return connectionsPerAddress(options, ListenAddress::parse(listen).value());
}

TEST(BindPolicy, OneStrangerGetsAFewConnectionsWhereTheyCanBeToldApart) {
    EXPECT_EQ(perAddress("0.0.0.0:443", false), 64U);
    EXPECT_EQ(perAddress("[::]:443", false), 64U);
    EXPECT_EQ(perAddress("127.0.0.1:8080", false), std::nullopt);
    EXPECT_EQ(perAddress("0.0.0.0:8080", true), std::nullopt);
    EXPECT_EQ(perAddress("127.0.0.1:8080", true), std::nullopt);
}

}  // namespace
}  // namespace mireth::receiver
