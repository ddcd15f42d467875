#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"

#include <gmock/gmock.h>

#include "MirethVex/MirethVex.hpp"
#include "PublicSide/ViewTypeNames.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using platform::ViewClass;
using test::errorLine;
using testing::ElementsAre;

TEST(VexConfiguration, ByDefaultMasksAndTracksAndNamesNoClasses) {
    const VexConfiguration configuration;
    EXPECT_FALSE(configuration.disableMasking);
    EXPECT_TRUE(configuration.additionalViewTypesToMask.empty());
    EXPECT_TRUE(configuration.automaticNavigationTracking);
}

TEST(VexConfiguration, TakesTheTwoFlags) {
    const VexConfiguration configuration(true, false);
    EXPECT_TRUE(configuration.disableMasking);
    EXPECT_FALSE(configuration.automaticNavigationTracking);
    EXPECT_TRUE(configuration.additionalViewTypesToMask.empty());
}

TEST(VexConfiguration, AnEmptyListOfNamesNeverFails) {
    const auto configuration = VexConfiguration::create({}, false);
    ASSERT_TRUE(configuration.has_value());
    EXPECT_FALSE(configuration->disableMasking);
    EXPECT_FALSE(configuration->automaticNavigationTracking);
    EXPECT_TRUE(configuration->additionalViewTypesToMask.empty());
}

TEST(VexConfiguration, NamesBecomeClassesInTheirOrder) {
    const auto& card = ViewClass::registerClass("VexConfigurationTestCard", &ViewClass::view());
    const auto configuration = VexConfiguration::create({"VexConfigurationTestCard", "Label"}, true);
    ASSERT_TRUE(configuration.has_value());
    EXPECT_THAT(configuration->additionalViewTypesToMask, ElementsAre(&card, &ViewClass::label()));
    EXPECT_TRUE(configuration->automaticNavigationTracking);
}

/// The texts of the error lines that the process's own logger has written since this was made.
struct SharedErrors {
    SharedErrors() {
        // Unless another test has had the shared instance made: then it stands on other services by now.
        (void)MirethSR::installPlatformServices(host.phone().services());
        MirethLog::shared().addLogListener([heard = texts](LogTag, LogLevel level, const std::string& text) {
            if (level == LogLevel::error) {
                heard->push_back(text);
            }
        });
    }
    test::SessionHost host;
    std::shared_ptr<std::vector<std::string>> texts = std::make_shared<std::vector<std::string>>();
};

TEST(VexConfiguration, CannotBeMadeWithANameThatNoClassBears) {
    const SharedErrors errors;
    const auto configuration = VexConfiguration::create({"Label", "NoSuchClass"}, true);
    ASSERT_FALSE(configuration.has_value());
    EXPECT_EQ(configuration.error(), (MError{MError::Kind::customClassMaskingFailed, "NoSuchClass"}));
    EXPECT_THAT(*errors.texts,
                ElementsAre("Failed configuring masking for one of the provided classes: NoSuchClass"));
}

TEST(VexConfiguration, CannotBeMadeWithAClassThatIsNotAView) {
    const SharedErrors errors;
    const auto configuration = VexConfiguration::create({"ViewController"}, false);
    ASSERT_FALSE(configuration.has_value());
    EXPECT_EQ(configuration.error(), (MError{MError::Kind::customClassMaskingFailed, "ViewController"}));
    EXPECT_THAT(*errors.texts,
                ElementsAre("Failed configuring masking for one of the provided classes: ViewController"));
}

TEST(VexConfiguration, ANameThatNoClassBearsFailsAndIsLogged) {
    test::LogCapture capture;
    const auto classes = convertToViewTypes(capture.log(), {"Label", "NoSuchClass", "NeitherThis"});
    ASSERT_FALSE(classes.has_value());
    EXPECT_EQ(classes.error(), (MError{MError::Kind::customClassMaskingFailed, "NoSuchClass"}));
    capture.expectLines({errorLine(
        LogTag::lifecycle, "Failed configuring masking for one of the provided classes: NoSuchClass")});
}

TEST(VexConfiguration, AClassThatIsNotAViewFailsTheSameWay) {
    test::LogCapture capture;
    const auto classes = convertToViewTypes(capture.log(), {ViewClass::viewController().name()});
    ASSERT_FALSE(classes.has_value());
    EXPECT_EQ(classes.error().kind, MError::Kind::customClassMaskingFailed);
    (void)capture.take();
}

TEST(MError, HasATextForLogsAndOneForPeople) {
    using Kind = MError::Kind;
    const auto debug = [](Kind kind) { return MError{kind, ""}.debugDescription(); };
    EXPECT_EQ(debug(Kind::undefined), "Undefined");
    EXPECT_EQ(debug(Kind::permissionNotGranted), "Permission not granted.");
    EXPECT_EQ(debug(Kind::permissionNotRevoked), "Permission not revoked.");
    EXPECT_EQ(debug(Kind::recordingCanceled), "Recording canceled.");
    EXPECT_EQ((MError{Kind::customClassMaskingFailed, "C"}).debugDescription(),
              "Failed configuring masking for one of the provided classes: C");
    const auto forPeople = [](Kind kind) { return MError{kind, ""}.errorDescription(); };
    EXPECT_EQ(forPeople(Kind::undefined), "Something went wrong when attempting to initialise the VEX.");
    EXPECT_EQ(forPeople(Kind::permissionNotGranted),
              "Something went wrong when attempting to grant permission for data collection. Please retry.");
    EXPECT_EQ(forPeople(Kind::permissionNotRevoked),
              "Something went wrong when attempting to revoke permission for data collection. Please retry.");
    EXPECT_EQ(
        forPeople(Kind::recordingCanceled),
        "Action canceled. Please make sure you have obtained user permission before you try to record.");
    EXPECT_EQ((MError{Kind::customClassMaskingFailed, "C"}).errorDescription(),
              "Provided value doesn't match the expected type. Please check your configuration.");
}

}  // namespace
}  // namespace mireth
