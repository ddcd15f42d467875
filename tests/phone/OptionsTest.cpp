// The command line.
#include "phone/Options.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace mireth::phone {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::variant<Options, EarlyEnd> read(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "mireth-phone");
    return readOptions(static_cast<int>(arguments.size()), arguments.data());
}

TEST(Options, TheScenarioIsEnough) {
    const auto options = std::get<Options>(read({"a.json"}));
    EXPECT_EQ(options.scenario, "a.json");
    EXPECT_EQ(options.pace, 1.0);
    EXPECT_EQ(options.seed, 0U);
    EXPECT_FALSE(options.plain);
    EXPECT_TRUE(options.allowedTags.empty());
}

TEST(Options, SpeedIsRealMaxOrANumber) {
    EXPECT_EQ(std::get<Options>(read({"a.json", "--speed", "real"})).pace, 1.0);
    EXPECT_EQ(std::get<Options>(read({"a.json", "--speed", "max"})).pace, std::nullopt);
    EXPECT_EQ(std::get<Options>(read({"a.json", "--speed", "2.5"})).pace, 2.5);
    for (const char* bad : {"fast", "0", "-1", "nan", "inf", "1e9", ""}) {
        EXPECT_TRUE(std::holds_alternative<EarlyEnd>(read({"a.json", "--speed", bad}))) << bad;
    }
}

TEST(Options, TagsAreReadByNameOrKey) {
    EXPECT_THAT(std::get<Options>(read({"a.json", "--allow-tags", "lifecycle,NETWORK"})).allowedTags,
                ElementsAre(LogTag::lifecycle, LogTag::network));
    EXPECT_EQ(std::get<Options>(read({"a.json", "--allow-tags", "all"})).allowedTags.size(), 7U);
}

TEST(Options, WhatIsUnusableEndsWithStatusOneAndOneLine) {
    for (const auto& bad : std::vector<std::vector<const char*>>{{},
                                                                 {"a.json", "b.json"},
                                                                 {"a.json", "--nonsense"},
                                                                 {"a.json", "--seed", "x"},
                                                                 {"a.json", "--seed", "-1"},
                                                                 {"a.json", "--seed", "18446744073709551616"},
                                                                 {"a.json", "--allow-tags", "ghost"},
                                                                 {"a.json", "--sr-endpoint", ""},
                                                                 {"a.json", "--caches", ""},
                                                                 {"a.json", "--ca-file", "/nowhere"}}) {
        const auto result = read(bad);
        ASSERT_TRUE(std::holds_alternative<EarlyEnd>(result));
        const auto& end = std::get<EarlyEnd>(result);
        EXPECT_EQ(end.status, 1);
        EXPECT_THAT(end.text, StartsWith("mireth-phone: "));
        EXPECT_EQ(end.text.find('\n'), end.text.size() - 1);
    }
}

TEST(Options, HelpIsNoError) {
    const auto end = std::get<EarlyEnd>(read({"--help"}));
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.text, HasSubstr("--dump-frames"));
}

TEST(Options, TheVersionIsOneLine) {
    const auto end = std::get<EarlyEnd>(read({"--version"}));
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.text, testing::MatchesRegex("mireth-phone [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

}  // namespace
}  // namespace mireth::phone
