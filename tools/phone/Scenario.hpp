// A whole scenario file, read and checked.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "MirethVex/Headless/HeadlessDevice.hpp"
#include "MirethVex/Headless/MemoryStores.hpp"
#include "phone/Steps.hpp"
#include "phone/ViewSpec.hpp"

namespace mireth::phone {

struct ViewClassSpec {
    std::string name;
    std::string superclass;
};

struct Scenario {
    std::string name;
    std::int64_t epochMillis = 1'700'000'000'000;
    double uptimeSeconds = 1000;
    headless::DeviceValues device;

    Size windowSize{390, 844};
    double windowScale = 3;

    headless::TextByKey bundle{{"CFBundleShortVersionString", "2.3.1"}, {"VEX_VERSION", "1.0.0"}};
    headless::TextByKey userDefaults;
    platform::NetworkPath network{.satisfied = true, .usesWifi = true};

    std::string brandId = "brand";
    std::string projectId = "project";
    bool disableMasking = false;
    bool automaticNavigationTracking = true;
    std::vector<std::string> additionalViewTypesToMask;

    std::vector<ViewClassSpec> viewClasses;
    /// At least one; the first is presented at the beginning.
    std::vector<ScreenSpec> screens;
    /// In file order.
    std::vector<Step> steps;
};

/// Reads and checks `file`: every name that a step uses exists, every key is known and every value makes
/// sense. Pictures are not opened yet. Throws ScenarioError.
Scenario readScenario(const std::filesystem::path& file);

/// The same of a text; `folder` is what the paths of pictures are relative to.
Scenario parseScenario(const std::string& text, const std::filesystem::path& folder);

}  // namespace mireth::phone
