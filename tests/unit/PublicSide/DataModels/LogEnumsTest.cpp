#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "MirethVex/PublicSide/DataModels/MError.hpp"

namespace mireth {
namespace {

TEST(LogTag, KeysAreTheCategoryTextsInDeclarationOrder) {
    std::vector<std::string> keys;
    for (const LogTag tag : allLogTags) {
        keys.emplace_back(key(tag));
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"MEMORY_USE", "LIFECYCLE", "GESTURE", "SIGNAL", "PLAYBACK",
                                              "NETWORK", "NAVIGATION"}));
}

TEST(LogTag, CanBeAMemberOfASet) {
    const std::set<LogTag> tags{LogTag::network, LogTag::network, LogTag::signal};
    EXPECT_EQ(tags.size(), 2U);
}

TEST(LogLevel, RawValues) {
    EXPECT_EQ(rawValue(LogLevel::info), "info");
    EXPECT_EQ(rawValue(LogLevel::error), "error");
}

TEST(LogLevel, IsMadeFromExactlyItsTwoTexts) {
    EXPECT_EQ(logLevelFromRawValue("info"), LogLevel::info);
    EXPECT_EQ(logLevelFromRawValue("error"), LogLevel::error);
    for (const char* text : {"", "Info", "ERROR", "debug", "info "}) {
        EXPECT_EQ(logLevelFromRawValue(text), std::nullopt) << text;
    }
}

TEST(LogLevel, DecorIsARedOrAGreenCircle) {
    EXPECT_EQ(getDecor(LogLevel::error), "\xF0\x9F\x94\xB4");
    EXPECT_EQ(getDecor(LogLevel::info), "\xF0\x9F\x9F\xA2");
}

TEST(MError, DebugDescriptions) {
    using Kind = MError::Kind;
    EXPECT_EQ((MError{Kind::undefined, ""}.debugDescription()), "Undefined");
    EXPECT_EQ((MError{Kind::permissionNotGranted, ""}.debugDescription()), "Permission not granted.");
    EXPECT_EQ((MError{Kind::permissionNotRevoked, ""}.debugDescription()), "Permission not revoked.");
    EXPECT_EQ((MError{Kind::recordingCanceled, ""}.debugDescription()), "Recording canceled.");
    EXPECT_EQ((MError{Kind::customClassMaskingFailed, "Nope"}.debugDescription()),
              "Failed configuring masking for one of the provided classes: Nope");
}

}  // namespace
}  // namespace mireth
