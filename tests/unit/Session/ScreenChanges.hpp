// A host whose screens come and go, and what its timeline says of them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/MirethVex.hpp"
#include "PublicSide/MirethSRAccess.hpp"
#include "support/RecordingController.hpp"
#include "support/SessionHost.hpp"

namespace mireth::test {

/// The line that refuses a screen change of either kind while no session runs.
inline constexpr const char* notStartedLine =
    "Can't record screen disappearance without starting the session first";

struct ScreenChanges : testing::Test {
    SessionHost host{{}, {LogTag::navigation, LogTag::signal}};
    MirethSR library =
        MirethSRAccess::make(std::make_unique<MirethSRCore>(host.capture.log(), host.phone().services()));
    /// What the app's controllers hear.
    std::vector<std::string> heard;

    /// Nothing that is logged is left from it.
    void start(bool automaticNavigationTracking) {
        ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
        startAgain(automaticNavigationTracking);
    }
    void startAgain(bool automaticNavigationTracking) {
        ASSERT_EQ(
            host.await(library.startRecording(VexConfiguration(false, automaticNavigationTracking))).kind,
            SessionStartResult::Kind::success);
        (void)host.capture.take();
    }
    SessionCloseResult stop() { return host.await(library.stopRecording()); }

    std::shared_ptr<platform::ViewController> controller(std::string name,
                                                         std::function<void()> inHandler = {}) {
        return std::make_shared<RecordingController>(std::move(name), heard, std::move(inHandler));
    }
    void appear(const std::shared_ptr<platform::ViewController>& screen) {
        host.phone().application().appearance().didAppear(screen, false);
    }
    void disappear(const std::shared_ptr<platform::ViewController>& screen) {
        host.phone().application().appearance().didDisappear(screen, false);
    }

    /// The screen changes that arrived so far, in a word or three each, such as "appear auto Main/Cart".
    std::vector<std::string> uploaded() {
        std::vector<std::string> result;
        for (const auto& chunk : host.service.chunks) {
            for (const auto& event : chunk.timeline) {
                if (event["type"] == "ScreenChange") {
                    result.push_back(inWords(event["eventDetails"]));
                }
            }
        }
        return result;
    }
    static std::string inWords(const nlohmann::ordered_json& details) {
        std::string names;
        for (const auto& element : details["screenHierarchy"]) {
            names += (names.empty() ? "" : "/") + element["screenName"].get<std::string>();
        }
        return details["changeType"].get<std::string>() + " " + details["detectionType"].get<std::string>() +
               " " + names;
    }
    /// Runs `reaction` once, inside the line that tells of the recording of `what`.
    void whenRecorded(std::string what, std::function<void()> reaction) {
        library.addLogListener([what = std::move(what), reaction = std::move(reaction), done = false](
                                   LogTag, LogLevel, const std::string& line) mutable {
            if (!done && line.starts_with("Recorded event") && line.find(what) != std::string::npos) {
                done = true;
                reaction();
            }
        });
    }
};

}  // namespace mireth::test
