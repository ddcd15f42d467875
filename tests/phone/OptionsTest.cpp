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
                                                                 {"a.json", "--dump-frames", ""},
                                                                 {""},
                                                                 {"a.json", "--ca-file", "/nowhere"}}) {
        const auto result = read(bad);
        ASSERT_TRUE(std::holds_alternative<EarlyEnd>(result));
        const auto& end = std::get<EarlyEnd>(result);
        EXPECT_EQ(end.status, 1);
        EXPECT_THAT(end.text, StartsWith("mireth-phone: "));
        EXPECT_EQ(end.text.find('\n'), end.text.size() - 1);
    }
}

/// The one line that `arguments` end with.
std::string complaintAbout(std::vector<const char*> arguments) {
    const auto result = read(std::move(arguments));
    const auto* end = std::get_if<EarlyEnd>(&result);
    return end == nullptr ? "" : end->text;
}

TEST(Options, AComplaintQuotesTheValueAndSaysTheRange) {
    for (const char* bad : {"fast", "0", "-1", "1e7", ""}) {
        EXPECT_EQ(
            complaintAbout({"a.json", "--speed", bad}),
            std::string("mireth-phone: --speed: must be real, max or a number above 0 and up to 1000000, "
                        "not \"") +
                bad + "\"\n");
    }
    for (const char* bad : {"-1", "x", "", "1.5", "18446744073709551616", "100000000000000000000000"}) {
        EXPECT_EQ(complaintAbout({"a.json", "--seed", bad}),
                  std::string("mireth-phone: --seed: must be a whole number from 0 to 18446744073709551615, "
                              "not \"") +
                      bad + "\"\n");
    }
    EXPECT_EQ(std::get<Options>(read({"a.json", "--seed", "18446744073709551615"})).seed, UINT64_MAX);
    EXPECT_EQ(complaintAbout({"a.json", "--allow-tags", "network,no\nthing"}),
              "mireth-phone: --allow-tags: there is no tag \"no?thing\"\n");
}

TEST(Options, AValueThatIsMissingOrTooMuchIsSaidSo) {
    EXPECT_EQ(complaintAbout({"a.json", "--speed"}), "mireth-phone: --speed: needs a value, real|max|N\n");
    EXPECT_EQ(complaintAbout({"a.json", "--caches"}), "mireth-phone: --caches: needs a value, DIR\n");
    EXPECT_EQ(complaintAbout({"a.json", "--plain=3"}), "mireth-phone: --plain: takes no value\n");
}

TEST(Options, AMisspeltOptionIsNamedBeforeAMissingScenario) {
    EXPECT_THAT(complaintAbout({"-x"}), HasSubstr("-x"));
    EXPECT_EQ(complaintAbout({}), "mireth-phone: scenario is required\n");
}

TEST(Options, AnEndpointIsABaseUrl) {
    for (const char* option : {"--sr-endpoint", "--kelda-endpoint"}) {
        EXPECT_EQ(complaintAbout({"a.json", option, "http://127.0.0.1:8080/"}),
                  std::string("mireth-phone: ") + option +
                      ": \"http://127.0.0.1:8080/\" must not end in a slash\n");
        EXPECT_THAT(complaintAbout({"a.json", option, "notaurl"}), HasSubstr("\"notaurl\" is no URL"));
        EXPECT_EQ(complaintAbout({"a.json", option, "https://sr.example.org/t/TOKEN"}), "");
        EXPECT_EQ(complaintAbout({"a.json", option, "http://sr.example.org"}), "");
        EXPECT_THAT(complaintAbout({"a.json", option, "ftp://sr.example.org"}),
                    HasSubstr("ftp://sr.example.org"));
    }
}

TEST(Options, AnAuthoritysFileIsReadAtOnce) {
    EXPECT_EQ(
        complaintAbout({"a.json", "--ca-file", "/nowhere"}),
        "mireth-phone: --ca-file: cannot read the authorities in '/nowhere': No such file or directory\n");
    EXPECT_THAT(complaintAbout({"a.json", "--ca-file", "/etc/hostname"}),
                HasSubstr("'/etc/hostname': there is no certificate in it"));
}

TEST(Options, WhenAnOptionIsGivenTwiceTheLastOneCounts) {
    const auto options = std::get<Options>(read({"a.json", "--caches", "b", "--caches", "c"}));
    EXPECT_EQ(options.caches, "c");
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
