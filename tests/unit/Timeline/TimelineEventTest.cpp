#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"

#include <gtest/gtest.h>

#include <locale>
#include <string>
#include <vector>

#include "PrivateSide/Collection/Timeline/EventData.hpp"
#include "PrivateSide/Collection/Timeline/SignalData.hpp"

namespace mireth {
namespace {

TEST(EventName, RawStrings) {
    const std::vector<std::pair<EventName, std::string>> names{
        {EventName::chunkEndMarker, "ChunkEndMarker"},
        {EventName::signalCaptured, "SignalCaptured"},
        {EventName::sessionStartMarker, "SessionStartMarker"},
        {EventName::windowDimensions, "WindowDimensions"},
        {EventName::userInteraction, "UserInteraction"},
        {EventName::metadataCaptured, "MetadataCaptured"},
        {EventName::screenChange, "ScreenChange"},
    };
    for (const auto& [name, text] : names) {
        EXPECT_EQ(rawValue(name), text);
        EXPECT_EQ(eventNameFromRawValue(text), name);
    }
}

TEST(EventName, AnUnknownStringYieldsNone) {
    for (const char* text : {"", "chunkEndMarker", "ChunkEndMarker ", "Other"}) {
        EXPECT_EQ(eventNameFromRawValue(text), std::nullopt) << text;
    }
}

TEST(SessionSignalType, KeysAndLogTexts) {
    EXPECT_EQ(key(SessionSignalType::deadTap), "DeadTap");
    EXPECT_EQ(key(SessionSignalType::rageTap), "RageTap");
    EXPECT_EQ(key(SessionSignalType::errorTap), "ErrorTap");
    EXPECT_EQ(debugInfo(SessionSignalType::deadTap), "Dead Click Detected");
    EXPECT_EQ(debugInfo(SessionSignalType::rageTap), "Rage Click Detected");
    EXPECT_EQ(debugInfo(SessionSignalType::errorTap), "Error Click Detected");
    EXPECT_EQ(allSessionSignalTypes.size(), 3U);
}

TEST(SessionInteractionType, KeyAndLogText) {
    EXPECT_EQ(key(SessionInteractionType::tap), "Tap");
    EXPECT_EQ(debugInfo(SessionInteractionType::tap), "Tap Click Detected");
    EXPECT_EQ(allSessionInteractionTypes.size(), 1U);
}

TEST(EventType, ItsKeyIsThatOfTheCarriedValue) {
    EXPECT_EQ(key(EventType(SessionSignalType::rageTap)), "RageTap");
    EXPECT_EQ(key(EventType(SessionInteractionType::tap)), "Tap");
}

TEST(SrMetadataType, RawStrings) {
    EXPECT_EQ(rawValue(SrMetadataType::SdkVersion), "SdkVersion");
    EXPECT_EQ(rawValue(SrMetadataType::AppVersion), "AppVersion");
    EXPECT_EQ(rawValue(SrMetadataType::DeviceId), "DeviceId");
    EXPECT_EQ(rawValue(SrMetadataType::DeviceModel), "DeviceModel");
    EXPECT_EQ(rawValue(SrMetadataType::Platform), "Platform");
    EXPECT_EQ(rawValue(SrMetadataType::OperatingSystem), "OperatingSystem");
    EXPECT_EQ(rawValue(SrMetadataType::DeviceCodename), "DeviceCodename");
}

TEST(SrScreenChange, RawStringsAndTheDefaultScreenType) {
    EXPECT_EQ(rawValue(SrScreenChangeType::appear), "appear");
    EXPECT_EQ(rawValue(SrScreenChangeType::disappear), "disappear");
    EXPECT_EQ(rawValue(SrScreenChangeDetectionType::automatic), "auto");
    EXPECT_EQ(rawValue(SrScreenChangeDetectionType::manual), "manual");
    EXPECT_EQ(SrScreenHierarchyElement{}.screenType, "Screen");
}

TEST(TimelineEvent, EqualityComparesNameTimestampAndDetails) {
    const TimelineEvent event{EventName::windowDimensions, 1, WindowDimensionsDetails{2, 3}};
    EXPECT_EQ(event, (TimelineEvent{EventName::windowDimensions, 1, WindowDimensionsDetails{2, 3}}));
    EXPECT_NE(event, (TimelineEvent{EventName::screenChange, 1, WindowDimensionsDetails{2, 3}}));
    EXPECT_NE(event, (TimelineEvent{EventName::windowDimensions, 2, WindowDimensionsDetails{2, 3}}));
    EXPECT_NE(event, (TimelineEvent{EventName::windowDimensions, 1, WindowDimensionsDetails{2, 4}}));
    EXPECT_NE(event, (TimelineEvent{EventName::windowDimensions, 1, std::nullopt}));
}

TEST(EventTarget, EqualityComparesAllFour) {
    const EventTarget target{1, 2, 3, 4};
    EXPECT_EQ(target, (EventTarget{1, 2, 3, 4}));
    EXPECT_NE(target, (EventTarget{0, 2, 3, 4}));
    EXPECT_NE(target, (EventTarget{1, 0, 3, 4}));
    EXPECT_NE(target, (EventTarget{1, 2, 0, 4}));
    EXPECT_NE(target, (EventTarget{1, 2, 3, 0}));
}

TEST(EventDetails, EqualityComparesVariantAndPayload) {
    const EventDetails signal = SignalCapturedDetails{"Tap", {}, std::nullopt};
    const EventDetails interaction = InteractionCapturedDetails{"Tap", {}};
    EXPECT_NE(signal, interaction);
    EXPECT_NE(signal, EventDetails(SignalCapturedDetails{"Tap", {}, "message"}));
}

TEST(EventDetails, DebugInfoNamesWhatTheyHold) {
    EXPECT_EQ(debugInfo(SignalCapturedDetails{"ErrorTap", {0.5, 0.25, 450, 780}, "oh"}),
              "ErrorTap (0.5, 0.25) at (450, 780) px, error: oh");
    EXPECT_EQ(debugInfo(InteractionCapturedDetails{"Tap", {0.5, 0.25, 450, 780}}),
              "Tap (0.5, 0.25) at (450, 780) px");
    EXPECT_EQ(debugInfo(WindowDimensionsDetails{1170, 2532}), "1170 x 2532 px");
    EXPECT_EQ(debugInfo(MetadataCapturedDetails{
                  {{SrMetadataType::Platform, "iOS"}, {SrMetadataType::DeviceId, "D"}}}),
              "Platform: iOS, DeviceId: D");
    EXPECT_EQ(debugInfo(ScreenChangeDetails{SrScreenChangeType::appear,
                                            SrScreenChangeDetectionType::manual,
                                            {{0, "Outer", "Screen"}, {1, "Inner", "Screen"}}}),
              "appear (manual): Outer > Inner");
}

TEST(EventDetails, DebugInfoDoesNotDependOnTheHostsLocale) {
    struct Commas : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Commas));
    const std::string text = debugInfo(WindowDimensionsDetails{1170.5, 2532});
    std::locale::global(before);
    EXPECT_EQ(text, "1170.5 x 2532 px");
}

TEST(SignalData, CarryTypeTimeAndTarget) {
    const RageTapSignalData rage(5, {1, 2});
    EXPECT_EQ(key(rage.type()), "RageTap");
    EXPECT_EQ(rage.timestamp(), 5);
    EXPECT_EQ(rage.target(), (Target{1, 2}));
    EXPECT_EQ(key(DeadTapSignalData(5, {1, 2}).type()), "DeadTap");
    EXPECT_EQ(key(TapInteractionData(5, {1, 2}).type()), "Tap");
    const ErrorTapSignalData error(5, {1, 2}, "oh");
    EXPECT_EQ(key(error.type()), "ErrorTap");
    EXPECT_EQ(error.message(), "oh");
}

}  // namespace
}  // namespace mireth
