// Paths and queries.
#include "exchange/RequestTarget.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

using Segments = std::vector<std::string>;

TEST(RequestTarget, SplitsBeforeItDecodes) {
    EXPECT_EQ(parseTarget("/a/b%2Fc/%C3%A9?x=1")->segments, (Segments{"a", "b/c", "\xC3\xA9"}));
    EXPECT_EQ(parseTarget("/a//b")->segments, (Segments{"a", "", "b"}));
    EXPECT_EQ(parseTarget("/a/")->segments, (Segments{"a", ""}));
    EXPECT_EQ(parseTarget("/")->segments, Segments{""});
}

TEST(RequestTarget, RefusesOtherFormsAndBadEscapes) {
    EXPECT_FALSE(parseTarget(""));
    EXPECT_FALSE(parseTarget("*"));
    EXPECT_FALSE(parseTarget("http://host/"));
    EXPECT_FALSE(parseTarget("/a%2"));
    EXPECT_FALSE(parseTarget("/a%"));
}

TEST(RequestTarget, FindsQueryItems) {
    const auto target = parseTarget("/a?x=1&action=Client%4Cog&y&action=other");
    EXPECT_EQ(target->queryItem("action"), "ClientLog");
    EXPECT_EQ(target->queryItem("y"), "");
    EXPECT_EQ(target->queryItem("z"), std::nullopt);
    EXPECT_EQ(parseTarget("/a?x=%zz")->queryItem("x"), std::nullopt);
}

}  // namespace
}  // namespace mireth::receiver
