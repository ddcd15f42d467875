// The order of header names.
#include "MirethVex/Platform/HttpClient.hpp"

#include <gtest/gtest.h>

namespace mireth::platform {
namespace {

TEST(HeaderFields, AreFoundWhateverTheCaseOfTheirNames) {
    const HeaderFields headers{{"Content-Type", "text/plain"}};
    ASSERT_TRUE(headers.contains("content-TYPE"));
    EXPECT_EQ(headers.find("CONTENT-type")->second, "text/plain");
    EXPECT_FALSE(headers.contains("Content-Typ"));
}

TEST(HeaderFields, NamesThatDifferInMoreThanCaseAreDifferent) {
    const CaseInsensitiveLess less;
    EXPECT_TRUE(less("Accept", "b"));
    EXPECT_TRUE(less("accept", "Accept-Language"));
    EXPECT_FALSE(less("Accept-Language", "ACCEPT"));
    EXPECT_FALSE(less("etag", "ETag"));
    EXPECT_FALSE(less("ETag", "etag"));
}

TEST(HeaderFields, OnlyAsciiLettersHaveCase) {
    const CaseInsensitiveLess less;
    // '[' and '{' lie 32 apart, as do the letters' cases.
    EXPECT_TRUE(less("[", "{"));
    EXPECT_TRUE(less("\xC3\x84", "\xC3\xA4"));
}

}  // namespace
}  // namespace mireth::platform
