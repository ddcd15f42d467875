#include "PrivateSide/Logger/AdditionalInfo.hpp"

#include <gtest/gtest.h>

#include <string>

namespace mireth {
namespace {

TEST(AdditionalInfo, IsPairsInSquareBrackets) {
    EXPECT_EQ(describe({{"errorDetails", "e"}}), R"(["errorDetails": "e"])");
    EXPECT_EQ(describe({{"b", "1"}, {"a", "2"}}), R"(["b": "1", "a": "2"])");
    EXPECT_EQ(describe({{"", ""}}), R"(["": ""])");
}

TEST(AdditionalInfo, IsAColonInBracketsWhenEmpty) {
    EXPECT_EQ(describe({}), "[:]");
}

TEST(AdditionalInfo, AValueCanNeitherEndItsQuotesNorTheLine) {
    EXPECT_EQ(describe({{"k", "a\"b"}}), R"(["k": "a\"b"])");
    EXPECT_EQ(describe({{"k", "a\\"}}), R"(["k": "a\\"])");
    EXPECT_EQ(describe({{"k", "a\nb\rc\td"}}), R"(["k": "a\nb\rc\td"])");
    EXPECT_EQ(describe({{"k\"", "x\", \"forged\": \"y"}}), R"(["k\"": "x\", \"forged\": \"y"])");
}

TEST(AdditionalInfo, ControlCharactersAreWrittenAsCodes) {
    EXPECT_EQ(describe({{"k", std::string("a\0b", 3)}}), R"(["k": "a\0b"])");
    EXPECT_EQ(describe({{"k", "\x1b[31m\x7f"}}), R"(["k": "\u{1B}[31m\u{7F}"])");
}

TEST(AdditionalInfo, OtherTextStaysAsItIs) {
    EXPECT_EQ(describe({{"k", "größe 🟢 /%"}}), "[\"k\": \"größe 🟢 /%\"]");
}

}  // namespace
}  // namespace mireth
